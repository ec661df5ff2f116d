#include "lib/platform-x11/CDragContainer.h"

#include <cstdlib>
#include <sstream>

namespace Vinta {

namespace {
std::string percentDecoded(const std::string& text) {
    std::string out;
    for (size_t index = 0; index < text.size(); ++index) {
        if (text[index] == '%' && index + 2 < text.size()) {
            const std::string hex = text.substr(index + 1, 2);
            char* end = nullptr;
            const long value = std::strtol(hex.c_str(), &end, 16);
            if (end == hex.c_str() + 2) {
                out += static_cast<char>(value);
                index += 2;
                continue;
            }
        }
        out += text[index];
    }
    return out;
}
}  // namespace

CDragContainer* CDragContainer::fromUriList(const std::string& uriList) {
    auto* drag = new CDragContainer;
    std::istringstream lines(uriList);
    std::string line;
    while (std::getline(lines, line)) {
        while (!line.empty() && (line.back() == '\r' || line.back() == '\0')) line.pop_back();
        if (line.empty() || line[0] == '#') continue;
        if (line.rfind("file://", 0) == 0) {
            // file://host/path: the host part (often empty or "localhost") is dropped.
            const size_t pathStart = line.find('/', 7);
            if (pathStart != std::string::npos) {
                drag->items.push_back({percentDecoded(line.substr(pathStart)), kFile});
                continue;
            }
        }
        drag->items.push_back({line, kText});
    }
    return drag;
}

const char* CDragContainer::getItem(int32_t index, int32_t& type) const {
    if (index < 0 || index >= getCount()) {
        type = kError;
        return nullptr;
    }
    type = items[static_cast<size_t>(index)].type;
    return items[static_cast<size_t>(index)].text.c_str();
}

}  // namespace Vinta
