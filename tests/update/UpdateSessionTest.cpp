#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <thread>

#include "CORE/files/Settings.h"
#include "LocalServer.h"
#include "core_files/TempHome.h"
#include "update/ReskoSession.h"
#include "update/UpdateReply.h"
#include "update/Sha256.h"

using namespace Resko;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {
const std::string kInstaller = "INSTALLER-BYTES";
const std::string kKey = "MORVANDEL/MMK zonfraQT";

std::string readAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

int threadCount() { return int(std::distance(fs::directory_iterator("/proc/self/task"), fs::directory_iterator())); }

void serveFile(const std::string& path, httplib::Response& response) {
    auto partly = [&](size_t declared, bool trickle) {
        response.set_content_provider(declared, "application/octet-stream", [trickle](size_t, size_t, httplib::DataSink& sink) {
            const std::string piece(trickle ? 4096 : 100, 'x');
            for (auto end = std::chrono::steady_clock::now() + 5s; trickle && sink.is_writable() && std::chrono::steady_clock::now() < end;
                 std::this_thread::sleep_for(20ms))
                sink.write(piece.data(), piece.size());
            if (!trickle) sink.write(piece.data(), piece.size());
            return false;  // the connection ends before the declared length
        });
    };
    if (path.find("/ok/") != std::string::npos) response.set_content(kInstaller, "application/octet-stream");
    else if (path.ends_with("missing.exe")) response.status = 404;
    else if (path.ends_with("nothing.exe")) response.status = 204;
    else if (path.ends_with("empty.exe")) response.set_content("", "application/octet-stream");
    else if (path.ends_with("longline.exe")) response.set_header("X-Long", std::string(600, 'l')), response.set_content(kInstaller, "a/b");
    else if (path.ends_with("slow.exe")) std::this_thread::sleep_for(1500ms), response.set_content(kInstaller, "a/b");
    else if (path.ends_with("cut.exe")) partly(1000, false);
    else if (path.ends_with("huge.exe")) partly(size_t(1) << 30, false);
    else if (path.ends_with("stream.exe")) partly(size_t(10) << 20, true);
}

// A temporary home with a desktop that already holds two files, and a local update server.
struct Stage {
    Stage() {
        fs::create_directories(desktop);
        setenv("XDG_DESKTOP_DIR", desktop.c_str(), 1);
        setenv("ZONFRA_UPDATE_SERVER", server.address().c_str(), 1);
        std::ofstream(desktop / "keep.txt") << "keep";
        std::ofstream(desktop / "setup.exe") << "older";
        server.answer([this](const httplib::Request& request, httplib::Response& response) {
            if (request.path != "/update_available.php") return serveFile(request.path, response);
            questionWellFormed = request.target == "/update_available.php?WEB_ID=ZONFRAQT&VERSION=1.3.0&INTERFACE=&PLATFORM=LINUX_64";
            std::this_thread::sleep_for(std::chrono::milliseconds(questionDelayMs));
            response.status = questionStatus;
            if (questionStatus != 204) response.set_content(question, "text/plain");
        });
        offer("ok/setup.exe");
    }
    void offer(const std::string& file, const std::string& extra = "") {
        question = "PRODUCT_PAGE=http://p.example/zq\nUPDATE=1\nVERSION=1.4.0\nURL=http://" + server.address() + "/files/" +
                   file + "\n" + extra;
    }
    std::unique_ptr<CReskoSession> session() {
        auto made = std::make_unique<CReskoSession>(1);
        made->init("MMK zonfraQT", "ZONFRAQT", 0x10300);
        made->setTimings({0, 800, 600, 2000});
        return made;
    }
    // Ticks like the editor's timer until `done` holds; false after 5 seconds.
    template <class Done> static bool tickUntil(CReskoSession& s, Done done) {
        for (int i = 0; i < 1000; ++i, std::this_thread::sleep_for(5ms))
            if (s.tick(), done()) return true;
        return false;
    }
    static bool settle(CReskoSession& s) {
        return tickUntil(s, [&] { return s.isFinished() || s.phase() == ReskoPhase::UpdateAvailable; });
    }
    static bool download(CReskoSession& s) {
        return s.acceptDownload() && tickUntil(s, [&] { return s.phase() != ReskoPhase::Downloading; });
    }
    std::string setting(const char* name) {
        std::string value;
        Core::readSetting(kKey, name, value, nullptr);
        return value;
    }
    // Every file of the temporary home but the settings and the cache, and what the desktop held before.
    std::set<std::string> files() {
        EXPECT_EQ(readAll(desktop / "keep.txt"), "keep");
        EXPECT_EQ(readAll(desktop / "setup.exe"), "older");
        std::set<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(home.root)) {
            const std::string path = fs::relative(entry.path(), home.root).string();
            if (entry.is_regular_file() && !path.starts_with("config/MORVANDEL/") && path != "data/Morvandel/MMK zonfraQT/0.cache")
                found.insert(path);
        }
        return found;
    }

    TempHome home;
    fs::path desktop = home.root / "Desktop";
    std::string question;
    int questionStatus = 200, questionDelayMs = 0;
    std::atomic<bool> questionWellFormed{false};
    const std::set<std::string> before = {"Desktop/keep.txt", "Desktop/setup.exe"};
    LocalServer server;  // last: it ends, with its handlers, before what they read
};
}  // namespace

TEST(UpdateSession, AnswersOfTheServer) {
    const std::string page = "PRODUCT_PAGE=http://p.example/zq\n";
    const struct { const char* name; int status; std::string body; int delayMs; bool offered; } cases[] = {
        {"update offered", 200, "", 0, true},
        {"nothing offered", 200, page + "UPDATE=0\n", 0, false},
        {"204", 204, "", 0, false},
        {"404", 404, page + "UPDATE=1\n", 0, false},
        {"empty body", 200, "", 0, false},
        {"garbage body", 200, "\x01\xfe<html>UPDATE 1 URL</html>", 0, false},
        {"600-byte line", 200, "PRODUCT_PAGE=" + std::string(600, 'p') + "\nUPDATE=1\nURL=h.example/a.exe\n", 0, true},
        {"slow server", 200, page + "UPDATE=1\nURL=h.example/a.exe\n", 1500, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Stage stage;
        if (std::string(c.name) != "update offered") stage.question = c.body;
        stage.questionStatus = c.status;
        stage.questionDelayMs = c.delayMs;
        auto session = stage.session();
        ASSERT_TRUE(Stage::settle(*session));
        EXPECT_EQ(session->phase(), c.offered ? ReskoPhase::UpdateAvailable : ReskoPhase::Idle);
        EXPECT_EQ(session->offeredVersion(), c.offered && c.name[0] == 'u' ? "1.4.0" : "");
        EXPECT_EQ(stage.server.requests, 1);
        EXPECT_TRUE(stage.questionWellFormed);
        EXPECT_EQ(stage.setting("LastUpdateCheck"), "0");  // only a finished download counts
        EXPECT_EQ(stage.files(), stage.before);
        if (c.status == 200 && c.delayMs == 0 && c.body != "") {  // the product page is cached for the next editor
            session.reset();
            EXPECT_EQ(stage.session()->getProductPage(), replyValue(stage.question, "PRODUCT_PAGE"));
        }
    }
}

TEST(UpdateSession, DownloadsLandOnTheDesktopOnlyWhenWholeAndChecked) {
    const std::string digest = "SHA256=" + CSha256::hexDigest(kInstaller.data(), kInstaller.size()) + "\n";
    const struct { const char* file; std::string extra; const char* landed; } cases[] = {
        {"ok/setup.exe", digest, "setup (1).exe"},  {"ok/tool.bin", "", "tool.bin"},
        {"ok/..%2F..%2F.evil%20name.sh", "", "evil name.sh"},
        {"missing.exe", "", nullptr}, {"nothing.exe", "", nullptr}, {"empty.exe", "", nullptr},
        {"longline.exe", "", nullptr}, {"slow.exe", "", nullptr}, {"cut.exe", "", nullptr},
        {"huge.exe", "", nullptr},  {"ok/setup.exe", "SHA256=" + std::string(64, '0') + "\n", nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.file) + " " + c.extra);
        Stage stage;
        stage.offer(c.file, c.extra);
        auto session = stage.session();
        ASSERT_TRUE(Stage::settle(*session));
        ASSERT_TRUE(Stage::download(*session));
        EXPECT_EQ(session->phase(), c.landed ? ReskoPhase::DownloadFinished : ReskoPhase::DownloadFailed);
        std::set<std::string> expected = stage.before;
        if (c.landed) expected.insert(std::string("Desktop/") + c.landed);
        EXPECT_EQ(stage.files(), expected);
        if (!c.landed) {
            EXPECT_EQ(stage.setting("LastUpdateCheck"), "0");
            continue;
        }
        EXPECT_EQ(readAll(stage.desktop / c.landed), kInstaller);
        EXPECT_EQ(session->downloadedFile(), (stage.desktop / c.landed).string());
        EXPECT_NEAR(std::stod(stage.setting("LastUpdateCheck")), double(std::time(nullptr)), 60.0);
    }
}

TEST(UpdateSession, AsksOnlyWhenTheLastDownloadIs22HoursOldAndChecksAreOn) {
    const long long now = std::time(nullptr);
    const struct { std::string last, enabled; bool asks; } cases[] = {
        {std::to_string(now - 79210), "", true}, {std::to_string(now - 79190), "", false},
        {"", "", true},  {std::to_string(now + 100000), "", true},  {"0", "0", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.last + "/" + c.enabled);
        Stage stage;
        stage.question = "UPDATE=0\n";
        if (!c.last.empty()) Core::writeSetting(kKey, "LastUpdateCheck", c.last);
        if (!c.enabled.empty()) Core::writeSetting(kKey, "UpdateCheck", c.enabled);
        auto session = stage.session();
        ASSERT_TRUE(Stage::settle(*session));
        EXPECT_EQ(stage.server.requests, c.asks ? 1 : 0);
        EXPECT_EQ(stage.setting("LastUpdateCheck"), c.last.empty() ? "0" : c.last);
    }
}

TEST(UpdateSession, TheServerSettingServesWhenTheEnvironmentNamesNone) {
    Stage stage;
    unsetenv("ZONFRA_UPDATE_SERVER");
    Core::writeSetting(kKey, "UpdateServer", stage.server.address());
    auto session = stage.session();
    ASSERT_TRUE(Stage::settle(*session));
    EXPECT_EQ(session->phase(), ReskoPhase::UpdateAvailable);
}

TEST(UpdateSession, OneSessionAsksAndEveryEditorSeesTheOffer) {
    Stage stage;
    auto first = stage.session(), second = stage.session();
    ASSERT_TRUE(Stage::tickUntil(*first, [&] { return second->tick(), first->phase() == ReskoPhase::UpdateAvailable; }));
    EXPECT_EQ(second->phase(), ReskoPhase::UpdateAvailable);
    first.reset();  // the owner's editor closes: the other neither asks again nor loses the offer
    for (int i = 0; i < 50; ++i) second->tick();
    EXPECT_EQ(stage.server.requests, 1);
    ASSERT_TRUE(Stage::download(*second));
    EXPECT_EQ(second->phase(), ReskoPhase::DownloadFinished);
    second.reset();
    auto next = stage.session();  // all editors closed: a new one starts afresh and, after a download, waits 22 hours
    ASSERT_TRUE(Stage::settle(*next));
    EXPECT_EQ(next->phase(), ReskoPhase::Idle);
    EXPECT_EQ(stage.server.requests, 2);
}

TEST(UpdateSession, CancelAndClosingStopARunningDownloadPromptly) {
    Stage stage;
    stage.offer("stream.exe");
    auto session = stage.session();
    ASSERT_TRUE(Stage::settle(*session));
    const int threadsBefore = threadCount();  // the server's pool stands by now, the question has ended
    auto downloading = [&] { return session->acceptDownload() && Stage::tickUntil(*session, [&] { return session->progress() > 0.0f; }); };
    ASSERT_TRUE(downloading());
    session->cancel();
    ASSERT_TRUE(Stage::tickUntil(*session, [&] { return session->phase() == ReskoPhase::UpdateAvailable; }));
    ASSERT_TRUE(downloading());
    const auto closing = std::chrono::steady_clock::now();
    session.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - closing, 3s);  // a hang guard, not a speed measure
    EXPECT_EQ(stage.files(), stage.before);
    EXPECT_EQ(stage.setting("LastUpdateCheck"), "0");
    for (int i = 0; i < 100 && threadCount() > threadsBefore; ++i) std::this_thread::sleep_for(10ms);
    EXPECT_LE(threadCount(), threadsBefore);  // nothing of the client outlives its sessions
}

TEST(SimpleHTTPDownloader, BadHeadersEndTheTransferBeforeAnyBody) {
    Stage stage;
    const struct { const char* file; bool headerAccepted; int result; } cases[] = {
        {"huge.exe", false, 1},  {"longline.exe", false, 1}, {"missing.exe", false, 1},
        {"nothing.exe", false, 1}, {"cut.exe", true, 1},     {"ok/a.exe", true, 0},
    };
    for (const auto& c : cases) {
        std::vector<int> codes;
        CSimpleHTTPDownloader downloader;
        std::vector<char> data;
        auto record = [](void* seen, int code, int, float) { return static_cast<std::vector<int>*>(seen)->push_back(code), 1; };
        EXPECT_EQ(downloader.fetch("127.0.0.1", stage.server.port, std::string("files/") + c.file, data, record, &codes), c.result) << c.file;
        EXPECT_EQ(std::count(codes.begin(), codes.end(), int(CSimpleHTTPDownloader::kHeaderArrived)), c.headerAccepted ? 1 : 0) << c.file;
        EXPECT_EQ(codes.back(), c.result ? CSimpleHTTPDownloader::kFailed : CSimpleHTTPDownloader::kFinished) << c.file;
        EXPECT_EQ(std::string(data.begin(), data.end()), c.result ? "" : kInstaller);
    }
}
