#include "CORE/strings/TextHelpers.h"

#include <cctype>
#include <cstdlib>
#include <cstring>

namespace Core {

wchar16* utf8ToWide(const char* source, wchar16* destination, int sourceLength) {
    if (!source) source = "";
    const size_t length = sourceLength < 0 ? std::strlen(source) : static_cast<size_t>(sourceLength);
    bool ascii = true;
    for (size_t i = 0; i < length; ++i)
        if (static_cast<unsigned char>(source[i]) & 0x80) ascii = false;

    if (ascii) {
        if (!destination) destination = static_cast<wchar16*>(std::malloc(length * 2 + 4));
        if (!destination) return nullptr;
        for (size_t i = 0; i < length; ++i) destination[i] = static_cast<unsigned char>(source[i]);
        destination[length] = 0;
        return destination;
    }

    if (!destination) destination = static_cast<wchar16*>(std::malloc(length * 4 + 2));
    if (!destination) return nullptr;
    size_t units = 0;
    const size_t maxUnits = length * 2;
    for (size_t i = 0; i < length && units < maxUnits;) {
        const unsigned char lead = static_cast<unsigned char>(source[i]);
        if (lead < 0x80) {
            destination[units++] = lead;
            ++i;
            continue;
        }
        if ((lead & 0xC0) == 0x80) {  // stray continuation byte
            ++i;
            continue;
        }
        int ones = 0;
        while (ones < 8 && (lead & (0x80 >> ones))) ++ones;
        unsigned value = ones < 7 ? lead & ((1u << (7 - ones)) - 1) : 0;
        ++i;
        for (int k = 1; k < ones && i < length; ++k, ++i)
            value = (value << 6) | (static_cast<unsigned char>(source[i]) & 0x3F);
        destination[units++] = static_cast<wchar16>(value & 0xFFFF);
    }
    destination[units] = 0;
    return destination;
}

namespace {
// Encodes UTF-16 (surrogate pairs joined) as UTF-8; returns the byte count without terminator.
size_t encodeUtf8(const wchar16* source, char* out) {
    size_t n = 0;
    auto put = [&](unsigned char c) {
        if (out) out[n] = static_cast<char>(c);
        ++n;
    };
    for (const wchar16* p = source; *p; ++p) {
        unsigned code = *p;
        if (code >= 0xD800 && code < 0xDC00 && p[1] >= 0xDC00 && p[1] < 0xE000) {
            code = 0x10000 + ((code - 0xD800) << 10) + (p[1] - 0xDC00);
            ++p;
        }
        if (code < 0x80) {
            put(static_cast<unsigned char>(code));
        } else if (code < 0x800) {
            put(static_cast<unsigned char>(0xC0 | (code >> 6)));
            put(static_cast<unsigned char>(0x80 | (code & 0x3F)));
        } else if (code < 0x10000) {
            put(static_cast<unsigned char>(0xE0 | (code >> 12)));
            put(static_cast<unsigned char>(0x80 | ((code >> 6) & 0x3F)));
            put(static_cast<unsigned char>(0x80 | (code & 0x3F)));
        } else {
            put(static_cast<unsigned char>(0xF0 | (code >> 18)));
            put(static_cast<unsigned char>(0x80 | ((code >> 12) & 0x3F)));
            put(static_cast<unsigned char>(0x80 | ((code >> 6) & 0x3F)));
            put(static_cast<unsigned char>(0x80 | (code & 0x3F)));
        }
    }
    return n;
}
}  // namespace

char* wideToUtf8(const wchar16* source, char* destination) {
    static const wchar16 empty[1] = {0};
    if (!source) source = empty;
    const size_t bytes = encodeUtf8(source, nullptr);
    if (!destination) destination = static_cast<char*>(std::malloc(bytes + 2));
    if (!destination) return nullptr;
    encodeUtf8(source, destination);
    destination[bytes] = 0;
    return destination;
}

void releaseText(void* text) { std::free(text); }

namespace {
bool isDigit(char c) { return c >= '0' && c <= '9'; }
}  // namespace

int naturalCompare(const char* a, const char* aEnd, const char* b, const char* bEnd) {
    while (true) {
        if (a == aEnd) return b == bEnd ? 0 : -1;
        if (b == bEnd) return 1;
        if (*a == *b) {
            ++a;
            ++b;
            continue;
        }
        if (!isDigit(*a) || !isDigit(*b))
            return static_cast<unsigned char>(*a) - static_cast<unsigned char>(*b);
        while (a != aEnd && *a == '0') ++a;
        while (b != bEnd && *b == '0') ++b;
        const char* aRun = a;
        const char* bRun = b;
        while (aRun != aEnd && isDigit(*aRun)) ++aRun;
        while (bRun != bEnd && isDigit(*bRun)) ++bRun;
        const long aDigits = aRun - a;
        const long bDigits = bRun - b;
        if (aDigits != bDigits) return static_cast<int>(aDigits - bDigits);
        for (; a != aRun; ++a, ++b)
            if (*a != *b) return *a - *b;
        b = bRun;
    }
}

int naturalCompareNoCase(const std::string& first, const std::string& second) {
    std::string a = first;
    std::string b = second;
    lowerInPlace(a);
    lowerInPlace(b);
    return naturalCompare(a.data(), a.data() + a.size(), b.data(), b.data() + b.size());
}

std::string lowerCopy(std::string& text) {
    lowerInPlace(text);
    return text;
}

void upperInPlace(std::string& text) {
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

void lowerInPlace(std::string& text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

char* upperInPlace(char* text) {
    if (text)
        for (char* p = text; *p; ++p) *p = static_cast<char>(std::toupper(static_cast<unsigned char>(*p)));
    return text;
}

char* lowerInPlace(char* text) {
    if (text)
        for (char* p = text; *p; ++p) *p = static_cast<char>(std::tolower(static_cast<unsigned char>(*p)));
    return text;
}

void shorten(std::string& text, int maxLength) {
    static const char droppable[] = {' ', 'a', 'e', 'i', 'o', 'u', '\xE4', '\xFC', '\xF6'};
    std::string work = text;
    if (work.empty()) return;
    const size_t limit = maxLength < 0 ? 0 : static_cast<size_t>(maxLength);
    for (size_t position = 0; work.size() > limit && position < work.size(); ++position) {
        for (char member : droppable) {
            if (work.size() <= limit) break;
            if (position < work.size() && work[position] == member) work.erase(position, 1);
        }
    }
    text = work;
}

long long decimalValue(const char* text) {
    long long value = 0;
    if (!text) return 0;
    for (; isDigit(*text); ++text) value = value * 10 + (*text - '0');
    return value;
}

}  // namespace Core
