#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "CORE/strings/CString.h"
#include "CORE/strings/TextHelpers.h"
#include "support/AllocationCounter.h"

using namespace Core;

TEST(CString, AssignKeepsCapacityMinusOneAndStaysTerminated) {
    CStringBufferd<8> text;
    text.assign("1234567");
    EXPECT_STREQ(text.c_str(), "1234567");
    text.assign("12345678");
    EXPECT_STREQ(text.c_str(), "1234567");
    text.assign(nullptr);
    EXPECT_STREQ(text.c_str(), "");
}

TEST(CString, AssignCopyAndReadNeverAllocate) {
    CStringBufferd<64> text;
    char copy[64];
    TestSupport::AllocationScope scope;
    text.assign("LowPass Frequency");
    text.copyTo(copy);
    EXPECT_EQ(scope.allocations(), 0u);
    EXPECT_STREQ(copy, "LowPass Frequency");
}

TEST(CString, CaseAndReplace) {
    CStringBufferd<32> text("Zonfra QT");
    text.toUpper();
    EXPECT_STREQ(text.c_str(), "ZONFRA QT");
    text.toLower();
    EXPECT_STREQ(text.c_str(), "zonfra qt");
    text.replaceAll("a", "aa");
    EXPECT_STREQ(text.c_str(), "zonfraa qt");
    text.replaceAll("qt", "qt");
    EXPECT_STREQ(text.c_str(), "zonfraa qt");
    CStringBufferd<6> small("aaaaa");
    small.replaceAll("a", "bb");
    EXPECT_STREQ(small.c_str(), "bbbbb");  // cut at capacity, still terminated
}

TEST(TextHelpers, Utf8ToWide) {
    char16_t* empty = utf8ToWide("", nullptr);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty[0], 0);
    releaseText(empty);

    char16_t* wide = utf8ToWide("K\xC3\xA4se \xE2\x82\xAC", nullptr);  // "Käse €"
    const char16_t expected[] = {u'K', 0xE4, u's', u'e', u' ', 0x20AC, 0};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(wide[i], expected[i]) << i;
    releaseText(wide);

    char16_t partial[8];
    utf8ToWide("abcdef", partial, 3);
    EXPECT_EQ(std::u16string(partial), u"abc");

    // Beyond the first 65536 characters the upper bits are lost, with no surrogates.
    char16_t* emoji = utf8ToWide("\xF0\x9F\x98\x80", nullptr);
    EXPECT_EQ(emoji[0], static_cast<char16_t>(0x1F600 & 0xFFFF));
    EXPECT_EQ(emoji[1], 0);
    releaseText(emoji);
}

TEST(TextHelpers, WideToUtf8RoundTrip) {
    const char* source = "Gr\xC3\xBC\xC3\x9F" "e \xE2\x82\xAC";
    char16_t* wide = utf8ToWide(source, nullptr);
    char* back = wideToUtf8(wide, nullptr);
    EXPECT_STREQ(back, source);
    releaseText(back);
    releaseText(wide);
}

int natural(const std::string& a, const std::string& b) {
    return naturalCompare(a.data(), a.data() + a.size(), b.data(), b.data() + b.size());
}

TEST(TextHelpers, NaturalCompare) {
    EXPECT_LT(natural("Preset 2", "Preset 10"), 0);
    EXPECT_GT(natural("Preset 10", "Preset 2"), 0);
    EXPECT_EQ(natural("Preset 007", "Preset 7"), 0);
    EXPECT_LT(natural("Preset 007a", "Preset 7b"), 0);  // the walk goes on behind the runs
    EXPECT_EQ(natural("", ""), 0);
    EXPECT_LT(natural("", "a"), 0);
    EXPECT_GT(natural("ab", "a"), 0);
    EXPECT_LT(natural("Bass", "Lead"), 0);
    EXPECT_EQ(naturalCompareNoCase("PRESET 3", "preset 3"), 0);
    EXPECT_LT(naturalCompareNoCase("preset 9", "PRESET 12"), 0);
}

TEST(TextHelpers, ShortenDropsBlanksAndVowelsFromTheLeftUntilItFits) {
    std::string text = "LowPass Frequency";
    shorten(text, 14);
    EXPECT_EQ(text, "LwPssFrequency");  // stops as soon as the length is reached
    text = "LowPass Frequency";
    shorten(text, 8);
    EXPECT_EQ(text, "LwPssFrqency");  // never cuts: what cannot be dropped stays
    text = "Gain";
    shorten(text, 4);
    EXPECT_EQ(text, "Gain");
    text = "";
    shorten(text, 0);
    EXPECT_EQ(text, "");
}

TEST(TextHelpers, DecimalValueAndCase) {
    EXPECT_EQ(decimalValue("1234abc"), 1234);
    EXPECT_EQ(decimalValue("-12"), 0);
    EXPECT_EQ(decimalValue("abc"), 0);
    EXPECT_EQ(decimalValue(nullptr), 0);
    std::string s = "MiXeD";
    EXPECT_EQ(lowerCopy(s), "mixed");
    EXPECT_EQ(s, "mixed");
    upperInPlace(s);
    EXPECT_EQ(s, "MIXED");
    EXPECT_EQ(upperInPlace(static_cast<char*>(nullptr)), nullptr);
}
