#pragma once
#include <string>
#include <string_view>

// The update server's question and reply: a GET with the product's key and version, answered by
// lines of KEY=value.
namespace Resko {

// The value behind the first occurrence of `key` anywhere in the body (keys are plain substrings):
// blanks and "=" after it are skipped, the value runs to a line end, a zero byte or the body's end.
// A missing key gives an empty text.
std::string replyValue(std::string_view body, std::string_view key);
// True only for the value "1".
bool replyFlag(std::string_view body, std::string_view key);

// 0x00MMmmpp as "M.m.p".
std::string versionText(int version);
// "/update_available.php?WEB_ID=...&VERSION=...&INTERFACE=...&PLATFORM=..."
std::string queryPath(const std::string& webId, int version, const std::string& interfaceName,
                      const char* platform);

}  // namespace Resko
