#include "framework/parameters/UnitType.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace Ondra {

const char* unitLabelOf(int unitType) {
    switch (unitType) {
        case kUnitTime: return "ms";
        case kUnitFraction:
        case kUnitPercent: return "%";
        case kUnitGain:
        case kUnitDecibel: return "dB";
        case kUnitFrequency: return "Hz";
        default: return "";
    }
}

namespace {
constexpr size_t kOut = kParameterTextSize;

int truncatedWhole(float v) { return static_cast<int>(v < 0 ? v - 0.02f : v + 0.02f); }

void plainOrPrecise(float v, bool precise, char* out) {
    std::snprintf(out, kOut, precise ? "%.1f" : "%.0f", static_cast<double>(v));
}
}  // namespace

void formatUnitValue(int unitType, float v, float minimum, float maximum, bool precise, char* out) {
    const double d = v;
    switch (unitType) {
        case kUnitFraction:
            if (v < 0)
                std::snprintf(out, kOut, precise ? "-%.2f" : "-%.0f", d / minimum * 100.0);
            else if (minimum >= 0)
                std::snprintf(out, kOut, precise ? "%.2f" : "%.0f", d / maximum * 100.0);
            else
                std::snprintf(out, kOut, precise ? "+%.2f" : "+%.0f", d / maximum * 100.0);
            return;
        case kUnitGain: {
            const double db = 20.0 * std::log10(d);
            if (db < -99.0 || std::isnan(db))
                std::snprintf(out, kOut, "-oo");
            else if (db < 0)
                std::snprintf(out, kOut, precise ? "%2.2f" : "%2.0f", db);
            else
                std::snprintf(out, kOut, precise ? "+%2.2f" : "+%2.0f", db);
            return;
        }
        case kUnitBipolar:
            if (v <= 0) {
                const double percent = minimum == 0 ? 0.0 : d / minimum * -100.0;
                std::snprintf(out, kOut, precise ? "%2.2f%%" : "%.0f%%", percent);
            } else {
                std::snprintf(out, kOut, precise ? "+%2.2f%%" : "+%2.0f%%", d / maximum * 100.0);
            }
            return;
        case kUnitSemitones:
            if (v <= 0) {
                const int whole = static_cast<int>(std::ceil(v));
                std::snprintf(out, kOut, "%i %i cent", whole, static_cast<int>((v - whole) * 100.0f));
            } else {
                const int whole = static_cast<int>(std::floor(v));
                std::snprintf(out, kOut, "+%i +%i cent", whole, static_cast<int>((v - whole) * 100.0f));
            }
            return;
        case kUnitSwitch:
            std::snprintf(out, kOut, "%s", v >= 0.5f ? "On" : "Off");
            return;
        case kUnitBalance:
            if (v > 0)
                std::snprintf(out, kOut, "Right %2.0f", d / maximum * 100.0);
            else if (v == 0)
                std::snprintf(out, kOut, "Center");
            else
                std::snprintf(out, kOut, "Left %2.0f", d / maximum * -100.0);
            return;
        case kUnitNote: {
            static const char* const names[12] = {"C ", "C#", "D ", "D#", "E ", "F ",
                                                  "F#", "G ", "G#", "A ", "A#", "B "};
            const int note = static_cast<int>(std::floor(v));
            const int octave = static_cast<int>(std::floor(note / 12.0)) - 2;
            const int semitone = ((note % 12) + 12) % 12;
            std::snprintf(out, kOut, "%s%i", names[semitone], octave);
            return;
        }
        case kUnitWhole:
            std::snprintf(out, kOut, "%i", truncatedWhole(v));
            return;
        case kUnitRatio:
            if (v >= 10)
                std::snprintf(out, kOut, " 1 : inf");
            else
                std::snprintf(out, kOut, " 1 : %.2f", d);
            return;
        default:
            plainOrPrecise(v, precise, out);
            return;
    }
}

namespace {
float noteFromText(const char* text) {
    static const int semitoneOfLetter[7] = {9, 11, 0, 2, 4, 5, 7};  // A B C D E F G
    while (*text == ' ') ++text;
    const char letter = static_cast<char>(*text & ~0x20);
    if (letter < 'A' || letter > 'G') return static_cast<float>(std::strtod(text, nullptr));
    int semitone = semitoneOfLetter[letter - 'A'];
    ++text;
    if (*text == '#') {
        ++semitone;
        ++text;
    }
    while (*text == ' ') ++text;
    const long octave = std::strtol(text, nullptr, 10);
    return static_cast<float>((octave + 2) * 12 + semitone) + 0.02f;
}

float ratioFromText(const char* text, float minimum, float maximum) {
    const char* behind = std::strchr(text, ':');
    const char* number = behind ? behind + 1 : text;
    while (*number == ' ') ++number;
    if (std::strncmp(number, "-inf", 4) == 0) return minimum;
    if (std::strncmp(number, "inf", 3) == 0) return maximum;
    return static_cast<float>(std::strtod(number, nullptr));
}
}  // namespace

float valueFromUnitText(int unitType, const char* text, float minimum, float maximum) {
    const float number = static_cast<float>(std::strtod(text, nullptr));
    switch (unitType) {
        case kUnitFraction:
        case kUnitBalance: return number / 100.0f;
        case kUnitGain: return std::pow(10.0f, number / 20.0f);
        case kUnitBipolar: {
            const float fraction = number / 100.0f;
            return fraction > 0 ? fraction * maximum : fraction * -minimum;
        }
        case kUnitNote: return noteFromText(text);
        case kUnitRatio: return ratioFromText(text, minimum, maximum);
        default: return number;
    }
}

}  // namespace Ondra
