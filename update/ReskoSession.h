#pragma once
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "CORE/threads/CCriticalSection.h"
#include "update/CoreHTTPLib.h"
#include "update/SimpleHTTPDownloader.h"

namespace Core::Threads {
class CThread;
struct ThreadHandle;
}  // namespace Core::Threads

namespace Resko {

// Told of the session's progress. Operations may come on a transfer thread: set values, mark dirty.
class IReskoSessionListener {
public:
    virtual ~IReskoSessionListener() = default;
    virtual bool usesOwnUserInterface() = 0;
    virtual void* getWindowHandle() = 0;
    virtual void onUpdateAvailable() = 0;
    virtual void onDownloadProgress(float fraction) = 0;
    virtual void onDownloadFinished() = 0;
    virtual void onDownloadFailed() = 0;
};

// What the update views show. Shared by all sessions of the process: one asks, all see the answer.
enum class ReskoPhase { Idle, Checking, UpdateAvailable, Downloading, DownloadFinished, DownloadFailed };

struct ReskoTimings {
    int startDelayMs = 1001;        // the check waits this long after the first tick
    int questionTimeoutMs = 10000;  // the whole update question
    int transferIdleMs = 10000;     // longest silence of the download's peer
    int connectMs = 10000;          // name resolution and connection of the download
};

// The update check and installer download of one editor. Nothing runs until the editor's timer
// ticks it; nothing runs once it is destroyed.
class CReskoSession {
public:
    static constexpr const char* kPlatform = "LINUX_64";
    static constexpr const char* kDefaultServer = "updates.morvandel.example";
    static constexpr int64_t kRecheckSeconds = 79200;  // 22 hours after the last download
    static constexpr size_t kMaxReplyBytes = 64 * 1024;

    explicit CReskoSession(int updateMode = 1);
    ~CReskoSession();
    CReskoSession(const CReskoSession&) = delete;
    CReskoSession& operator=(const CReskoSession&) = delete;

    void init(const char* productName, const char* webId, int version);

    // One step of the check; for each tick of the listener's timer.
    void handleAutoUpdate(IReskoSessionListener* listener);
    // With `yes` and a listener that asks the user itself, starts the download.
    void startDownload(bool yes, IReskoSessionListener* listener);
    void detachListener();
    bool isFinished() const { return autoUpdateState == -1; }
    void restart() { autoUpdateState = 0; }

    // For views that poll: `tick` from the editor's 15 ms timer, then read the rest.
    void tick();
    ReskoPhase phase() const;
    float progress() const;  // 0 to 1 while downloading
    std::string offeredVersion() const;  // the reply's VERSION, may be empty
    std::string downloadedFile() const;  // full path once the download has finished
    std::string getProductPage() const { return productPage; }
    std::string getUrl() const;
    int getUpdateMode() const { return updateMode; }
    // The user said yes: false when no update is on offer or a download already runs.
    bool acceptDownload();
    // Stops this session's download; the offer stays and can be taken up again.
    void cancel();

    void setTimings(const ReskoTimings& chosen) { timings = chosen; }
    // Where the question goes: $ZONFRA_UPDATE_SERVER, else the setting UpdateServer; "host[:port]".
    void serverAddress(std::string& host, int& port) const;
    std::string settingsKey() const;
    std::string cacheFile() const;

private:
    class PollListener;
    bool checkIsDue() const;
    bool queryUpdate();
    bool beginDownload();
    void runDownload();
    static void downloadRoutine(void* session);
    static int transferCallback(void* context, int code, int reserved, float value);
    void tellListener(void (IReskoSessionListener::*operation)());

    int id;
    std::string productName = "";
    std::string webId = "";
    int version = 0;
    std::string interfaceName;
    std::string productPage;
    int updateMode;
    std::atomic<int> autoUpdateState{0};
    uint32_t startTicks = 0;
    Core::Threads::CThread* queryThread = nullptr;
    Core::Threads::ThreadHandle* downloadThread = nullptr;
    CSimpleHTTPDownloader downloader;
    CoreHTTPLib question;
    IReskoSessionListener* listener = nullptr;
    Core::Threads::CCriticalSection listenerLock;
    std::unique_ptr<PollListener> pollListener;
    std::atomic<bool> cancelled{false};
    ReskoTimings timings;
};

}  // namespace Resko
