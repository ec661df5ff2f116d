#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <vector>

#include "core_files/TempHome.h"
#include "update/DownloadTarget.h"
#include "update/NameLookup.h"
#include "update/Sha256.h"
#include "update/UpdateReply.h"

using namespace Resko;

TEST(Sha256, MatchesTheStandardsTestVectors) {
    const std::string million(1000000, 'a');
    const struct { std::string message, digest; } cases[] = {
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {million, "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    for (const auto& c : cases) EXPECT_EQ(CSha256::hexDigest(c.message.data(), c.message.size()), c.digest);
    CSha256 pieces;  // the same digest when the data comes in odd pieces
    for (size_t at = 0; at < million.size(); at += 997) pieces.add(million.data() + at, std::min<size_t>(997, million.size() - at));
    EXPECT_EQ(pieces.finish()[0], 0xcd);
}

TEST(UpdateReply, KeysAreFirstSubstringMatchesAndValuesEndAtALineEnd) {
    const struct { std::string body, key, value; } cases[] = {
        {"UPDATE=1\nURL=a/b c.exe\r\n", "URL", "a/b c.exe"},
        {"URL = \t=x", "URL", "x"},
        {"PRODUCT_PAGE=p", "URL", ""},
        {"MYURL=first\nURL=second", "URL", "first"},
        {std::string("URL=a\0b", 7), "URL", "a"},
        {"URL=", "URL", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(replyValue(c.body, c.key), c.value) << c.body;
    EXPECT_TRUE(replyFlag("UPDATE=1\n", "UPDATE"));
    EXPECT_FALSE(replyFlag("UPDATE=10\n", "UPDATE"));
    EXPECT_EQ(queryPath("ZONFRAQT", 0x10300, "", "LINUX_64"),
              "/update_available.php?WEB_ID=ZONFRAQT&VERSION=1.3.0&INTERFACE=&PLATFORM=LINUX_64");
}

TEST(DownloadTarget, UrlsSplitAndHostileNamesBecomePlainNames) {
    const struct { std::string url; bool valid; std::string host; int port; std::string path; } urls[] = {
        {"http://h.example/a/b.exe", true, "h.example", 80, "a/b.exe"},
        {"127.0.0.1:8080/x", true, "127.0.0.1", 8080, "x"},
        {"h:0/x", false, "", 0, ""},
        {"h:99999/x", false, "", 0, ""},
        {"https://h/x", false, "", 0, ""},
        {"h/x\r\nEvil: 1", false, "", 0, ""},
        {"/x", false, "", 0, ""},
    };
    for (const auto& u : urls) {
        DownloadLocation location;
        ASSERT_EQ(splitDownloadUrl(u.url, location), u.valid) << u.url;
        if (!u.valid) continue;
        EXPECT_EQ(location.host + ":" + std::to_string(location.port) + "/" + location.path,
                  u.host + ":" + std::to_string(u.port) + "/" + u.path);
    }
    const struct { std::string url, name; } names[] = {
        {"h/dl/setup 1.exe?x=/y", "setup 1.exe"}, {"h/a/..%2F..%2F.bashrc", "bashrc"},
        {"h/a/..", "download"},                   {"h/a/%2e%2e", "download"},
        {"h/a\\..\\..\\evil.sh", "evil.sh"},      {"h/", "download"},
        {"h/a%0Ab.exe", "a_b.exe"},               {"h/" + std::string(300, 'n') + ".exe", std::string(196, 'n') + ".exe"},
    };
    for (const auto& n : names) EXPECT_EQ(plainFileName(n.url), n.name) << n.url;
}

TEST(DownloadTarget, NewFilesNeverReplaceExistingOnes) {
    TempHome home;
    const std::string folder = home.root.string() + "/";
    std::ofstream(home.root / "a.exe") << "mine";
    std::string first, second;
    const int one = createUniqueFile(folder, "a.exe", first), two = createUniqueFile(folder, "a.exe", second);
    ASSERT_TRUE(one >= 0 && two >= 0);
    close(one);
    close(two);
    EXPECT_EQ(std::pair(first, second), std::pair(folder + "a (1).exe", folder + "a (2).exe"));
    EXPECT_EQ(std::filesystem::file_size(home.root / "a.exe"), 4u);
    EXPECT_EQ(createUniqueFile(folder + "missing/", "a.exe", first), -1);
}

TEST(NameLookup, NamesResolveAndAStopOrAnUnknownNameGivesNone) {
    std::atomic<bool> running{false}, stopped{true};
    // `accepted` empty: no address.
    const struct { const char* host; const std::atomic<bool>& stop; std::vector<std::string> accepted; } cases[] = {
        {"127.0.0.1", running, {"127.0.0.1"}}, {"localhost", running, {"127.0.0.1", "::1"}}, {"localhost", stopped, {}},
        {"", running, {}}, {"no-such-host.invalid", running, {}}};
    for (const auto& c : cases) {
        const std::string address = Resko::lookUpNumericAddress(c.host, 80, 5000, c.stop);
        if (c.accepted.empty()) EXPECT_EQ(address, "") << c.host;
        else EXPECT_NE(std::find(c.accepted.begin(), c.accepted.end(), address), c.accepted.end()) << c.host << " gave " << address;
    }
}
