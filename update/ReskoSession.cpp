#include "update/ReskoSession.h"

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <mutex>

#include "CORE/files/Paths.h"
#include "CORE/files/Settings.h"
#include "CORE/threads/Threads.h"
#include "update/DownloadTarget.h"
#include "update/UpdateReply.h"

namespace Resko {

namespace {
// What all sessions of the process share: who asks the server, and what it answered.
struct Board {
    std::mutex lock;
    int sessionCount = 0;
    int lastId = 0;
    int ownerSession = -1;
    ReskoPhase phase = ReskoPhase::Idle;
    bool downloadRunning = false;
    std::atomic<float> progress{0.0f};
    std::string offeredVersion, url, sha256, downloadedFile;
};

Board& board() {
    static Board shared;
    return shared;
}

void setPhase(ReskoPhase phase) {
    std::lock_guard<std::mutex> guard(board().lock);
    board().phase = phase;
}

bool isHexDigest(const std::string& text) {
    return text.size() == 64 && text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
}
}  // namespace

// The listener behind `tick`: the views read the board instead of being called.
class CReskoSession::PollListener : public IReskoSessionListener {
public:
    bool usesOwnUserInterface() override { return true; }
    void* getWindowHandle() override { return nullptr; }
    void onUpdateAvailable() override {}
    void onDownloadProgress(float) override {}
    void onDownloadFinished() override {}
    void onDownloadFailed() override {}
};

CReskoSession::CReskoSession(int mode) : updateMode(mode), pollListener(std::make_unique<PollListener>()) {
    // Ids are never reused, so a late session can't pass for an owner that has gone.
    std::lock_guard<std::mutex> guard(board().lock);
    ++board().sessionCount;
    id = ++board().lastId;
}

CReskoSession::~CReskoSession() {
    detachListener();
    cancelled = true;
    question.stop();
    downloader.stop();
    if (queryThread) {
        queryThread->join();
        delete queryThread;
    }
    Core::Threads::joinThread(downloadThread);
    std::lock_guard<std::mutex> guard(board().lock);
    Board& shared = board();
    if (--shared.sessionCount == 0) {
        shared.ownerSession = -1;
        shared.phase = ReskoPhase::Idle;
        shared.progress = 0.0f;
        shared.offeredVersion.clear();
        shared.url.clear();
        shared.sha256.clear();
        shared.downloadedFile.clear();
    }
}

void CReskoSession::init(const char* product, const char* web, int runningVersion) {
    productName = std::string(product ? product : "").substr(0, 128);
    webId = std::string(web ? web : "").substr(0, 128);
    version = runningVersion;
    std::ifstream cache(cacheFile(), std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(cache)), std::istreambuf_iterator<char>());
    const std::string prefix = "PRODUCT_PAGE=";
    if (text.rfind(prefix, 0) == 0) productPage = text.substr(prefix.size(), 4096);
}

std::string CReskoSession::settingsKey() const { return Core::makeKeyName("MORVANDEL", productName.c_str()); }

std::string CReskoSession::cacheFile() const {
    const std::string folder = Core::getSpecialFolder(Core::kSharedDataFolder, "Morvandel/");
    return folder.empty() ? "" : folder + productName + "/0.cache";
}

void CReskoSession::serverAddress(std::string& host, int& port) const {
    std::string address;
    if (const char* fromEnvironment = std::getenv("ZONFRA_UPDATE_SERVER"); fromEnvironment && *fromEnvironment)
        address = fromEnvironment;
    else
        Core::readSetting(settingsKey(), "UpdateServer", address, kDefaultServer);
    port = 80;
    host = address;
    if (const size_t colon = address.rfind(':'); colon != std::string::npos) {
        const int value = std::atoi(address.c_str() + colon + 1);
        if (value > 0 && value < 65536) port = value;
        host = address.substr(0, colon);
    }
}

bool CReskoSession::checkIsDue() const {
    std::string enabled;
    Core::readSetting(settingsKey(), "UpdateCheck", enabled, "1");
    if (enabled == "0") return false;
    std::string last;
    Core::readSetting(settingsKey(), "LastUpdateCheck", last, "0");
    const double since = std::difftime(std::time(nullptr), std::time_t(std::strtoll(last.c_str(), nullptr, 10)));
    // A time in the future (a clock that was wrong) must not hold the check off for good.
    return since > double(kRecheckSeconds) || since < 0.0;
}

void CReskoSession::handleAutoUpdate(IReskoSessionListener* caller) {
    if (autoUpdateState == -1) return;
    {
        std::lock_guard<std::mutex> guard(board().lock);
        if (board().ownerSession >= 0 && board().ownerSession != id) return;
        board().ownerSession = id;
    }
    const uint32_t now = Core::Threads::getTicks();
    if (startTicks == 0) startTicks = now ? now : 1;
    if (now - startTicks < uint32_t(timings.startDelayMs)) return;
    switch (autoUpdateState.load()) {
        case 0: autoUpdateState = checkIsDue() ? 1 : -1; break;
        case 1:
            autoUpdateState = 3;
            setPhase(ReskoPhase::Checking);
            queryThread = new Core::Threads::CThread(
                [this] {
                    const bool offered = queryUpdate();
                    setPhase(offered ? ReskoPhase::UpdateAvailable : ReskoPhase::Idle);
                    autoUpdateState = offered ? 2 : -1;
                },
                Core::Threads::CThread::kKeepObject);
            break;
        case 2:
            autoUpdateState = 3;
            if (!caller) return;
            // Without a view of its own the listener can't be asked; the offer stays on the board.
            if (caller->usesOwnUserInterface()) caller->onUpdateAvailable();
            else autoUpdateState = -1;
            break;
        default: break;
    }
}

bool CReskoSession::queryUpdate() {
    std::string host, body;
    int port = 80, status = 0;
    serverAddress(host, port);
    if (!question.get(host, port, queryPath(webId, version, interfaceName, kPlatform), timings.questionTimeoutMs,
                      kMaxReplyBytes, status, body) ||
        status != 200 || body.empty())
        return false;
    productPage = replyValue(body, "PRODUCT_PAGE").substr(0, 4096);
    if (const std::string cache = cacheFile(); !cache.empty()) {
        Core::createDirectoryPath(cache.substr(0, cache.rfind('/')));
        std::ofstream(cache, std::ios::trunc) << "PRODUCT_PAGE=" << productPage;
    }
    if (!replyFlag(body, "UPDATE")) return false;
    std::string offeredUrl = replyValue(body, "URL");
    if (offeredUrl.rfind("http://", 0) == 0) offeredUrl.erase(0, 7);
    const std::string digest = replyValue(body, "SHA256");
    DownloadLocation location;
    // An offer that can't be fetched or checked is no offer.
    if (!splitDownloadUrl(offeredUrl, location) || (!digest.empty() && !isHexDigest(digest))) return false;
    std::lock_guard<std::mutex> guard(board().lock);
    board().url = offeredUrl;
    board().sha256 = digest;
    board().offeredVersion = replyValue(body, "VERSION").substr(0, 64);
    return true;
}

void CReskoSession::tick() { handleAutoUpdate(pollListener.get()); }

ReskoPhase CReskoSession::phase() const {
    std::lock_guard<std::mutex> guard(board().lock);
    return board().phase;
}

float CReskoSession::progress() const { return board().progress; }

std::string CReskoSession::offeredVersion() const {
    std::lock_guard<std::mutex> guard(board().lock);
    return board().offeredVersion;
}

std::string CReskoSession::downloadedFile() const {
    std::lock_guard<std::mutex> guard(board().lock);
    return board().downloadedFile;
}

std::string CReskoSession::getUrl() const {
    std::lock_guard<std::mutex> guard(board().lock);
    return board().url;
}

void CReskoSession::startDownload(bool yes, IReskoSessionListener* caller) {
    if (!yes || !caller || !caller->usesOwnUserInterface()) return;
    listenerLock.enter();
    listener = caller == pollListener.get() ? nullptr : caller;
    listenerLock.leave();
    beginDownload();
}

bool CReskoSession::acceptDownload() { return beginDownload(); }

bool CReskoSession::beginDownload() {
    {
        std::lock_guard<std::mutex> guard(board().lock);
        Board& shared = board();
        const bool offered = shared.phase == ReskoPhase::UpdateAvailable || shared.phase == ReskoPhase::DownloadFailed;
        if (!offered || shared.downloadRunning) return false;
        shared.downloadRunning = true;
        shared.phase = ReskoPhase::Downloading;
        shared.progress = 0.0f;
    }
    Core::Threads::joinThread(downloadThread);  // an earlier, ended download
    cancelled = false;
    downloader.reset();
    downloader.setTimeouts(timings.transferIdleMs, timings.connectMs);
    autoUpdateState = -1;
    downloadThread = Core::Threads::startThread(downloadRoutine, this, -1);
    if (downloadThread) return true;
    std::lock_guard<std::mutex> guard(board().lock);
    board().downloadRunning = false;
    board().phase = ReskoPhase::DownloadFailed;
    return false;
}

void CReskoSession::cancel() {
    cancelled = true;
    downloader.stop();
}

void CReskoSession::downloadRoutine(void* session) { static_cast<CReskoSession*>(session)->runDownload(); }

void CReskoSession::runDownload() {
    std::string url, digest;
    {
        std::lock_guard<std::mutex> guard(board().lock);
        url = board().url;
        digest = board().sha256;
    }
    DownloadLocation location;
    const std::string desktop = Core::getSpecialFolder(Core::kDesktopFolder);
    std::string written;
    int result = 1;
    if (splitDownloadUrl(url, location) && !desktop.empty() && Core::createDirectoryPath(desktop))
        result = downloader.fetchToFile(location.host, location.port, location.path, desktop, plainFileName(url), digest,
                                        transferCallback, this, &written);
    if (result == 0)
        Core::writeSetting(settingsKey(), "LastUpdateCheck", std::to_string(static_cast<long long>(std::time(nullptr))));
    {
        std::lock_guard<std::mutex> guard(board().lock);
        Board& shared = board();
        // A download stopped by the user or by a closing editor leaves the offer standing.
        if (result == 0) shared.phase = ReskoPhase::DownloadFinished;
        else shared.phase = cancelled ? ReskoPhase::UpdateAvailable : ReskoPhase::DownloadFailed;
        if (result == 0) shared.downloadedFile = written;
        shared.downloadRunning = false;
    }
    if (result == 0) tellListener(&IReskoSessionListener::onDownloadFinished);
    else if (!cancelled) tellListener(&IReskoSessionListener::onDownloadFailed);
}

int CReskoSession::transferCallback(void* context, int code, int, float value) {
    auto* session = static_cast<CReskoSession*>(context);
    if (code != CSimpleHTTPDownloader::kProgress) return 1;
    board().progress = value < 0.0f ? 0.0f : value > 1.0f ? 1.0f : value;
    if (!session->listenerLock.tryEnter()) return 1;
    if (session->listener) session->listener->onDownloadProgress(value);
    session->listenerLock.leave();
    return 1;
}

void CReskoSession::tellListener(void (IReskoSessionListener::*operation)()) {
    if (!listenerLock.tryEnter()) return;
    if (listener) (listener->*operation)();
    listenerLock.leave();
}

void CReskoSession::detachListener() {
    listenerLock.enter();
    listener = nullptr;
    listenerLock.leave();
}

}  // namespace Resko
