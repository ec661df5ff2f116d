#pragma once
#include <string>

namespace Core {

using wchar16 = char16_t;

// Both conversions allocate when no destination is given; hand the result to releaseText.
wchar16* utf8ToWide(const char* source, wchar16* destination, int sourceLength = -1);
char* wideToUtf8(const wchar16* source, char* destination);
void releaseText(void* text);

int naturalCompare(const char* begin1, const char* end1, const char* begin2, const char* end2);
int naturalCompareNoCase(const std::string& a, const std::string& b);

std::string lowerCopy(std::string& text);
void upperInPlace(std::string& text);
void lowerInPlace(std::string& text);
char* upperInPlace(char* text);
char* lowerInPlace(char* text);

// Drops blanks and lower-case vowels from the left until the text fits; never cuts.
void shorten(std::string& text, int maxLength);

// Leading ASCII digits as a number; no sign.
long long decimalValue(const char* text);

}  // namespace Core
