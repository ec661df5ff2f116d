#include "CORE/strings/CString.h"

#include <cctype>
#include <cstring>
#include <string>

namespace Core {

void CString::assign(const char* source) {
    if (capacity <= 0) return;
    if (!source) source = "";
    size_t n = 0;
    const size_t limit = static_cast<size_t>(capacity - 1);
    while (n < limit && source[n]) ++n;
    std::memmove(buffer, source, n);
    buffer[n] = 0;
}

void CString::copyTo(char* destination) const {
    if (!destination || capacity <= 0) return;
    size_t n = 0;
    const size_t limit = static_cast<size_t>(capacity - 1);
    while (n < limit && buffer[n]) ++n;
    std::memcpy(destination, buffer, n);
    destination[n] = 0;
}

void CString::toUpper() {
    for (char* p = buffer; *p; ++p) *p = static_cast<char>(std::toupper(static_cast<unsigned char>(*p)));
}

void CString::toLower() {
    for (char* p = buffer; *p; ++p) *p = static_cast<char>(std::tolower(static_cast<unsigned char>(*p)));
}

void CString::replaceAll(const char* what, const char* with) {
    if (!what || !with || !*what || std::strcmp(what, with) == 0) return;
    std::string text(buffer);
    const size_t whatLength = std::strlen(what);
    const size_t withLength = std::strlen(with);
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + withLength))
        text.replace(at, whatLength, with);
    assign(text.c_str());
}

}  // namespace Core
