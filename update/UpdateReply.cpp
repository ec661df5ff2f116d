#include "update/UpdateReply.h"

#include <cstdio>

namespace Resko {

std::string replyValue(std::string_view body, std::string_view key) {
    if (key.empty()) return "";
    size_t at = body.find(key);
    if (at == std::string_view::npos) return "";
    at += key.size();
    while (at < body.size() && (body[at] == ' ' || body[at] == '\t' || body[at] == '=')) ++at;
    size_t end = at;
    while (end < body.size() && body[end] != '\n' && body[end] != '\r' && body[end] != '\0') ++end;
    return std::string(body.substr(at, end - at));
}

bool replyFlag(std::string_view body, std::string_view key) { return replyValue(body, key) == "1"; }

std::string versionText(int version) {
    char text[32];
    std::snprintf(text, sizeof text, "%i.%i.%i", (version >> 16) & 0xff, (version >> 8) & 0xff, version & 0xff);
    return text;
}

std::string queryPath(const std::string& webId, int version, const std::string& interfaceName,
                      const char* platform) {
    return "/update_available.php?WEB_ID=" + webId + "&VERSION=" + versionText(version) +
           "&INTERFACE=" + interfaceName + "&PLATFORM=" + (platform ? platform : "");
}

}  // namespace Resko
