#include "ParameterValue.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "framework/parameters/UnitType.h"

namespace {
std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    const size_t last = text.find_last_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

// For rows with few whole-number steps, the shown texts name the values.
bool matchShownText(Ondra::IPluginParameter& p, const std::string& wanted) {
    const float low = std::min(p.getMinimum(), p.getMaximum());
    const float high = std::max(p.getMinimum(), p.getMaximum());
    if (high - low > 300) return false;
    for (float v = std::ceil(low); v <= high; v += 1.0f) {
        char text[Ondra::kParameterTextSize];
        for (int flags : {0, static_cast<int>(Ondra::kDisplayWithUnit)}) {
            p.getDisplayText(v, text, flags);
            if (lower(trimmed(text)) == wanted) {
                p.setValue(v);
                return true;
            }
        }
    }
    return false;
}
}  // namespace

std::string setParameterFromUser(Ondra::IPluginParameter& p, const std::string& raw) {
    const std::string value = trimmed(raw);
    if (value.empty()) return "an empty value";
    char* end = nullptr;
    const double plain = std::strtod(value.c_str(), &end);
    const bool bareNumber = end != value.c_str() && *end == 0;
    const float low = std::min(p.getMinimum(), p.getMaximum());
    const float high = std::max(p.getMinimum(), p.getMaximum());
    if (bareNumber) {
        if (!std::isfinite(plain) || plain < low - 1e-6 * std::fabs(low) || plain > high + 1e-6 * std::fabs(high))
            return "'" + value + "' lies outside " + std::to_string(low) + " .. " + std::to_string(high);
        p.setValue(static_cast<float>(plain));
        return "";
    }
    if (matchShownText(p, lower(value))) return "";
    const bool readable = end != value.c_str() || (p.getUnitType() == Ondra::kUnitNote && std::isalpha(static_cast<unsigned char>(value[0]))) ||
                          (p.getUnitType() == Ondra::kUnitRatio && value.find(':') != std::string::npos);
    if (!readable) return "'" + value + "' is neither a number nor a text of this parameter";
    p.setFromText(value.c_str());
    return "";
}
