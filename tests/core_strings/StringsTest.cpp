#include <gtest/gtest.h>
#include <string>

#include "CORE/strings/CString.h"
#include "CORE/strings/TextHelpers.h"
#include "support/AllocationCounter.h"

using namespace Core;

TEST(CString, AssignKeepsCapacityMinusOneStaysTerminatedAndNeverAllocates) {
    CStringBufferd<8> text;
    char copy[8];
    TestSupport::AllocationScope scope;
    for (auto [given, kept] : {std::pair{"1234567", "1234567"}, {"12345678", "1234567"}, {nullptr, ""}}) {
        text.assign(given);
        text.copyTo(copy);
        EXPECT_STREQ(copy, kept);
    }
    EXPECT_EQ(scope.allocations(), 0u);
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

TEST(TextHelpers, Utf8ToWideAndBack) {
    char16_t* empty = utf8ToWide("", nullptr);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty[0], 0);
    releaseText(empty);

    const char* source = "K\xC3\xA4se \xE2\x82\xAC";  // "Käse €"
    char16_t* wide = utf8ToWide(source, nullptr);
    EXPECT_EQ(std::u16string(wide), (std::u16string{u'K', 0xE4, u's', u'e', u' ', 0x20AC}));
    char* back = wideToUtf8(wide, nullptr);
    EXPECT_STREQ(back, source);
    releaseText(back);
    releaseText(wide);

    char16_t partial[8];
    utf8ToWide("abcdef", partial, 3);
    EXPECT_EQ(std::u16string(partial), u"abc");

    // Beyond the first 65536 characters the upper bits are lost, with no surrogates.
    char16_t* emoji = utf8ToWide("\xF0\x9F\x98\x80", nullptr);
    EXPECT_EQ(std::u16string(emoji), std::u16string(1, static_cast<char16_t>(0x1F600 & 0xFFFF)));
    releaseText(emoji);
}

TEST(TextHelpers, NaturalCompare) {
    const struct {
        const char *a, *b;
        int sign;
    } rows[] = {{"Preset 2", "Preset 10", -1}, {"Preset 10", "Preset 2", 1}, {"Preset 007", "Preset 7", 0},
                {"Preset 007a", "Preset 7b", -1},  // the walk goes on behind the runs
                {"", "", 0},                       {"", "a", -1},              {"ab", "a", 1},
                {"Bass", "Lead", -1}};
    for (const auto& r : rows) {
        const std::string a = r.a, b = r.b;
        const int order = naturalCompare(a.data(), a.data() + a.size(), b.data(), b.data() + b.size());
        EXPECT_EQ((order > 0) - (order < 0), r.sign) << r.a << " " << r.b;
    }
    EXPECT_EQ(naturalCompareNoCase("PRESET 3", "preset 3"), 0);
    EXPECT_LT(naturalCompareNoCase("preset 9", "PRESET 12"), 0);
}

TEST(TextHelpers, ShortenDropsBlanksAndVowelsFromTheLeftUntilItFits) {
    const struct {
        const char *given, *shortened;
        int length;
    } rows[] = {{"LowPass Frequency", "LwPssFrequency", 14},  // stops as soon as the length is reached
                {"LowPass Frequency", "LwPssFrqency", 8},     // never cuts: what cannot be dropped stays
                {"Gain", "Gain", 4},
                {"", "", 0}};
    for (const auto& r : rows) {
        std::string text = r.given;
        shorten(text, r.length);
        EXPECT_EQ(text, r.shortened);
    }
}

TEST(TextHelpers, DecimalValueAndCase) {
    for (auto [text, value] : {std::pair{"1234abc", 1234}, {"-12", 0}, {"abc", 0}, {nullptr, 0}})
        EXPECT_EQ(decimalValue(text), value) << (text ? text : "null");
    std::string s = "MiXeD";
    EXPECT_EQ(lowerCopy(s), "mixed");
    EXPECT_EQ(s, "mixed");
    upperInPlace(s);
    EXPECT_EQ(s, "MIXED");
    EXPECT_EQ(upperInPlace(static_cast<char*>(nullptr)), nullptr);
}
