#include "update/SimpleHTTPDownloader.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <strings.h>

#include "CORE/threads/ThreadEvent.h"
#include "CORE/threads/Threads.h"
#include "update/DownloadTarget.h"
#include "update/NameLookup.h"
#include "update/Sha256.h"

namespace Resko {

using Core::Threads::ThreadEvent;

struct CSimpleHTTPDownloader::Job {
    std::string host;
    int port = 80;
    std::string path;
    int idleTimeoutMs = 10000;
    int connectTimeoutMs = 10000;

    std::atomic<int> status{LIVE_INIT};
    std::atomic<bool> stopping{false};
    std::atomic<bool> confirmed{false};
    std::atomic<bool> declined{false};
    std::atomic<uint64_t> received{0};
    std::atomic<uint64_t> total{0};
    std::vector<char> body;  // the worker's until it reports LIVE_READY
    int socket = -1;

    ThreadEvent changed;   // the worker has news for the driver
    ThreadEvent answered;  // the driver has confirmed or declined
    ThreadEvent finished;  // the worker has ended

    void report(Status next) {
        status.store(next, std::memory_order_release);
        changed.signal();
    }
};

namespace {
using Job = CSimpleHTTPDownloader::Job;
constexpr int kSliceMs = 50;

// Waits in short slices for the socket to be ready, giving up on stop or after `timeoutMs`.
bool waitReady(Job& job, short events, int timeoutMs) {
    for (int waited = 0; waited < timeoutMs && !job.stopping; waited += kSliceMs) {
        pollfd entry{job.socket, events, 0};
        const int ready = ::poll(&entry, 1, kSliceMs);
        if (ready > 0) return true;
        if (ready < 0 && errno != EINTR) return false;
    }
    return false;
}

// Bytes read, 0 when the peer has closed, -1 on error, silence or stop.
ssize_t receiveSome(Job& job, char* buffer, size_t size) {
    if (!waitReady(job, POLLIN, job.idleTimeoutMs)) return -1;
    const ssize_t got = ::recv(job.socket, buffer, size, 0);
    return got < 0 ? -1 : got;
}

bool sendAll(Job& job, const std::string& text) {
    size_t sent = 0;
    while (sent < text.size()) {
        if (!waitReady(job, POLLOUT, job.idleTimeoutMs)) return false;
        const ssize_t put = ::send(job.socket, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (put < 0 && errno != EAGAIN && errno != EINTR) return false;
        if (put > 0) sent += size_t(put);
    }
    return true;
}

bool connectTo(Job& job) {
    addrinfo* found = lookUpName(job.host, job.port, job.connectTimeoutMs, job.stopping);
    if (!found) return false;
    job.report(CSimpleHTTPDownloader::LIVE_CONNECTING);
    bool connected = false;
    for (addrinfo* address = found; address && !connected && !job.stopping; address = address->ai_next) {
        job.socket = ::socket(address->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        if (job.socket < 0) continue;
        if (::connect(job.socket, address->ai_addr, address->ai_addrlen) == 0) {
            connected = true;
        } else if (errno == EINPROGRESS && waitReady(job, POLLOUT, job.connectTimeoutMs)) {
            int error = 0;
            socklen_t length = sizeof error;
            connected = getsockopt(job.socket, SOL_SOCKET, SO_ERROR, &error, &length) == 0 && error == 0;
        }
        if (!connected) {
            ::close(job.socket);
            job.socket = -1;
        }
    }
    freeaddrinfo(found);
    return connected;
}

std::string requestText(const Job& job) {
    std::string text = "GET /";
    for (char c : job.path) text += c == ' ' ? std::string("%20") : std::string(1, c);
    return text + " HTTP/1.1\r\nHost: " + job.host + "\r\nConnection: close\r\n\r\n";
}

std::string word(const std::string& line, size_t index) {
    size_t at = 0;
    for (size_t i = 0;; ++i) {
        at = line.find_first_not_of(" \t", at);
        if (at == std::string::npos) return "";
        const size_t end = line.find_first_of(" \t", at);
        if (i == index) return line.substr(at, end == std::string::npos ? std::string::npos : end - at);
        if (end == std::string::npos) return "";
        at = end;
    }
}

bool parseCount(const std::string& text, uint64_t& value) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos || text.size() > 18) return false;
    value = std::strtoull(text.c_str(), nullptr, 10);
    return true;
}

// Reads the header; leaves any body bytes that came with it in `rest`. Returns the state to go on
// with, or an end state.
CSimpleHTTPDownloader::Status readHeader(Job& job, std::string& rest, bool& lengthKnown) {
    std::string line;
    bool statusSeen = false;
    char chunk[1024];
    for (;;) {
        const ssize_t got = receiveSome(job, chunk, sizeof chunk);
        if (got <= 0) return CSimpleHTTPDownloader::LIVE_NOT_CONNECTED;  // a peer that closes inside the header fails
        for (ssize_t i = 0; i < got; ++i) {
            line += chunk[i];
            if (line.size() > CSimpleHTTPDownloader::kMaxHeaderLine) return CSimpleHTTPDownloader::LIVE_NOT_CONNECTED;
            if (chunk[i] != '\n') continue;
            while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
            if (line.empty()) {
                rest.assign(chunk + i + 1, size_t(got - i - 1));
                return statusSeen ? CSimpleHTTPDownloader::LIVE_WAITING_FOR_CONFIRMATION
                                  : CSimpleHTTPDownloader::LIVE_NOT_CONNECTED;
            }
            const std::string first = word(line, 0);
            if (!statusSeen && first.compare(0, 4, "HTTP") == 0) {
                const int code = std::atoi(word(line, 1).c_str());
                if (code == 204) return CSimpleHTTPDownloader::LIVE_NO_UPDATE_NEEDED;
                if (code < 200 || code > 299) return CSimpleHTTPDownloader::LIVE_NOT_CONNECTED;
                statusSeen = true;
            } else if (strcasecmp(first.c_str(), "Content-Length:") == 0) {
                uint64_t length = 0;
                if (!parseCount(word(line, 1), length) || length > CSimpleHTTPDownloader::kMaxBodyBytes)
                    return CSimpleHTTPDownloader::LIVE_NOT_CONNECTED;
                job.total = length;
                lengthKnown = true;
            } else if (strcasecmp(first.c_str(), "Transfer-Encoding:") == 0 &&
                       strcasecmp(word(line, 1).c_str(), "identity") != 0) {
                return CSimpleHTTPDownloader::LIVE_NOT_CONNECTED;  // a chunked body would be saved with its framing
            }
            line.clear();
        }
    }
}

bool append(Job& job, const char* data, size_t size, bool lengthKnown) {
    const uint64_t limit = lengthKnown ? job.total.load() : CSimpleHTTPDownloader::kMaxBodyBytes;
    if (job.body.size() + size > limit) {
        if (!lengthKnown) return false;
        size = size_t(limit - job.body.size());  // whatever follows the declared body isn't ours
    }
    job.body.insert(job.body.end(), data, data + size);
    job.received = job.body.size();
    job.changed.signal();
    return true;
}

CSimpleHTTPDownloader::Status transfer(Job& job) {
    job.report(CSimpleHTTPDownloader::LIVE_RESOLVING_HOST);
    if (!connectTo(job)) return CSimpleHTTPDownloader::LIVE_NOT_CONNECTED;
    job.report(CSimpleHTTPDownloader::LIVE_CONNECTED);
    if (!sendAll(job, requestText(job))) return CSimpleHTTPDownloader::LIVE_NOT_CONNECTED;
    job.report(CSimpleHTTPDownloader::LIVE_RECEIVING_HEADER);
    std::string rest;
    bool lengthKnown = false;
    const auto afterHeader = readHeader(job, rest, lengthKnown);
    if (afterHeader != CSimpleHTTPDownloader::LIVE_WAITING_FOR_CONFIRMATION) return afterHeader;
    if (!job.confirmed) {
        job.report(CSimpleHTTPDownloader::LIVE_WAITING_FOR_CONFIRMATION);
        while (!job.confirmed && !job.declined && !job.stopping) job.answered.waitFor(100);
        if (!job.confirmed) return CSimpleHTTPDownloader::LIVE_NOT_CONNECTED;
    }
    job.report(CSimpleHTTPDownloader::LIVE_RECEIVING_DATA);
    if (lengthKnown) job.body.reserve(size_t(job.total.load()));
    if (!append(job, rest.data(), rest.size(), lengthKnown)) return CSimpleHTTPDownloader::LIVE_NOT_CONNECTED;
    std::vector<char> chunk(64 * 1024);
    while (!lengthKnown || job.body.size() < job.total) {
        const ssize_t got = receiveSome(job, chunk.data(), chunk.size());
        if (got < 0) return CSimpleHTTPDownloader::LIVE_NOT_CONNECTED;
        // A close before the declared length is a cut-off file, not a finished one.
        if (got == 0) return lengthKnown ? CSimpleHTTPDownloader::LIVE_NOT_CONNECTED : CSimpleHTTPDownloader::LIVE_READY;
        if (!append(job, chunk.data(), size_t(got), lengthKnown)) return CSimpleHTTPDownloader::LIVE_NOT_CONNECTED;
    }
    return CSimpleHTTPDownloader::LIVE_READY;
}

void socketWorker(void* raw) {
    auto* owned = static_cast<std::shared_ptr<Job>*>(raw);
    std::shared_ptr<Job> job = std::move(*owned);
    delete owned;
    const auto end = transfer(*job);
    if (job->socket >= 0) ::close(job->socket);
    job->socket = -1;
    job->report(job->stopping ? CSimpleHTTPDownloader::LIVE_NOT_CONNECTED : end);
    job->finished.signal();
}
}  // namespace

CSimpleHTTPDownloader::~CSimpleHTTPDownloader() { stop(); }

void CSimpleHTTPDownloader::setTimeouts(int idleMilliseconds, int connectMilliseconds) {
    idleTimeoutMs = idleMilliseconds > 0 ? idleMilliseconds : 1;
    connectTimeoutMs = connectMilliseconds > 0 ? connectMilliseconds : 1;
}

void CSimpleHTTPDownloader::stop() {
    stopping = true;
    std::lock_guard<std::mutex> guard(jobLock);
    if (!current) return;
    current->stopping = true;
    current->changed.signal();
    current->answered.signal();
}

void CSimpleHTTPDownloader::reset() { stopping = false; }

int CSimpleHTTPDownloader::fetch(const std::string& host, int port, const std::string& path, std::vector<char>& data,
                                 Callback callback, void* context) {
    data.clear();
    auto job = std::make_shared<Job>();
    job->host = host;
    job->port = port;
    job->path = path;
    job->idleTimeoutMs = idleTimeoutMs;
    job->connectTimeoutMs = connectTimeoutMs;
    job->changed.setAutoReset(true);
    job->confirmed = callback == nullptr;
    {
        std::lock_guard<std::mutex> guard(jobLock);
        current = job;
    }
    auto* handed = new std::shared_ptr<Job>(job);
    Core::Threads::ThreadHandle* worker = stopping ? nullptr : Core::Threads::startThread(socketWorker, handed, -2);
    if (!worker) delete handed;

    int result = 1;
    bool ended = worker == nullptr;
    const uint32_t started = Core::Threads::getTicks();
    uint64_t reported = ~uint64_t(0);
    while (!ended) {
        const int status = job->status.load(std::memory_order_acquire);
        if (job->stopping || stopping) break;
        switch (status) {
            case LIVE_NOT_CONNECTED:
            case LIVE_NO_UPDATE_NEEDED: ended = true; break;
            case LIVE_RESOLVING_HOST:
            case LIVE_CONNECTING:
                ended = Core::Threads::getTicks() - started > uint32_t(connectTimeoutMs) + 1000u;
                break;
            case LIVE_WAITING_FOR_CONFIRMATION:
                if (!job->confirmed && !job->declined) {
                    (callback(context, kHeaderArrived, 0, 0.0f) == 1 ? job->confirmed : job->declined) = true;
                    job->answered.signal();
                }
                break;
            case LIVE_RECEIVING_DATA:
                if (callback && job->total > 0 && job->received != reported) {
                    reported = job->received;
                    callback(context, kProgress, 0, float(double(reported) / double(job->total)));
                }
                break;
            case LIVE_READY:
                data = std::move(job->body);
                result = 0;
                ended = true;
                break;
            default: break;
        }
        if (!ended) job->changed.waitFor(100);
    }
    job->stopping = true;
    job->answered.signal();
    // The worker keeps its own share of the job: one still inside name resolution when the transfer
    // is given up ends on its own later, without touching this object.
    if (worker && job->finished.waitFor(1000)) Core::Threads::joinThread(worker);
    else Core::Threads::closeThreadHandle(worker);
    {
        std::lock_guard<std::mutex> guard(jobLock);
        current.reset();
    }
    if (callback) callback(context, result == 0 ? kFinished : kFailed, 0, result == 0 ? 1.0f : 0.0f);
    return result;
}

int CSimpleHTTPDownloader::fetchToFile(const std::string& host, int port, const std::string& path,
                                       const std::string& folder, const std::string& name,
                                       const std::string& expectedSha256, Callback callback, void* context,
                                       std::string* writtenPath) {
    std::vector<char> data;
    if (fetch(host, port, path, data, callback, context) != 0 || data.empty()) return 1;
    if (!expectedSha256.empty() && strcasecmp(CSha256::hexDigest(data.data(), data.size()).c_str(),
                                              expectedSha256.c_str()) != 0)
        return 1;
    std::string destination;
    const int file = createUniqueFile(folder, name, destination);
    if (file < 0) return 2;
    size_t written = 0;
    while (written < data.size()) {
        const ssize_t put = ::write(file, data.data() + written, data.size() - written);
        if (put <= 0 && errno != EINTR) break;
        if (put > 0) written += size_t(put);
    }
    const bool complete = written == data.size() && ::fsync(file) == 0;
    ::close(file);
    if (!complete) {
        ::unlink(destination.c_str());
        return 2;
    }
    if (writtenPath) *writtenPath = destination;
    return 0;
}

}  // namespace Resko
