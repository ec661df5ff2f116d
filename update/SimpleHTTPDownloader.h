#pragma once
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace Resko {

// Plain HTTP/1.1 GET of one file over a socket, for the installer download. The calling thread
// drives the transfer and sleeps on an event between the socket worker's reports; the worker uses
// non-blocking sockets in short slices, so `stop` ends a transfer within a fraction of a second.
class CSimpleHTTPDownloader {
public:
    enum Status {
        LIVE_NOT_CONNECTED = 0,
        LIVE_INIT = 1,
        LIVE_RESOLVING_HOST = 2,
        LIVE_CONNECTING = 3,
        LIVE_CONNECTED = 4,
        LIVE_RECEIVING_HEADER = 5,
        LIVE_NO_UPDATE_NEEDED = 6,
        LIVE_WAITING_FOR_CONFIRMATION = 7,
        LIVE_RECEIVING_DATA = 8,
        LIVE_READY = 9,
    };
    // Callback codes; for kHeaderArrived an answer of 1 lets the body come.
    enum Code { kProgress = 1, kFinished = 2, kHeaderArrived = 3, kFailed = 4 };
    using Callback = int (*)(void* context, int code, int reserved, float value);

    static constexpr uint64_t kMaxBodyBytes = uint64_t(256) << 20;
    static constexpr size_t kMaxHeaderLine = 512;

    CSimpleHTTPDownloader() = default;
    ~CSimpleHTTPDownloader();
    CSimpleHTTPDownloader(const CSimpleHTTPDownloader&) = delete;
    CSimpleHTTPDownloader& operator=(const CSimpleHTTPDownloader&) = delete;

    // Longest silence of the peer, and longest wait for name resolution plus connection.
    void setTimeouts(int idleMilliseconds, int connectMilliseconds);

    // One transfer; blocks its caller until it has ended. 0 success (the whole body is in `data`),
    // 1 failure: no connection, a status outside 200 to 299 (204 included), a header line over 512
    // bytes, a body over 256 MiB or shorter than its Content-Length, silence past the time-out, stop.
    int fetch(const std::string& host, int port, const std::string& path, std::vector<char>& data, Callback callback,
              void* context);

    // fetch, then, when `expectedSha256` is empty or matches, writes the body as a new file named
    // `name` in `folder` (never over an existing file; see createUniqueFile). 0 written, 1 transfer
    // failed or digest mismatch (nothing is written), 2 the file couldn't be written (nothing is left).
    int fetchToFile(const std::string& host, int port, const std::string& path, const std::string& folder,
                    const std::string& name, const std::string& expectedSha256, Callback callback, void* context,
                    std::string* writtenPath = nullptr);

    // Ends a running transfer and refuses new ones until `reset`. Safe from any thread; doesn't wait.
    void stop();
    void reset();

    struct Job;  // shared with the socket worker, which may outlive a stopped transfer briefly

private:
    std::mutex jobLock;
    std::shared_ptr<Job> current;
    std::atomic<bool> stopping{false};
    int idleTimeoutMs = 10000;
    int connectTimeoutMs = 10000;
};

}  // namespace Resko
