#pragma once
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>

namespace httplib {
class Client;
}

namespace Resko {

// The one GET of the update question, through cpp-httplib. Its header stays out of every other file.
class CoreHTTPLib {
public:
    CoreHTTPLib();
    ~CoreHTTPLib();
    CoreHTTPLib(const CoreHTTPLib&) = delete;
    CoreHTTPLib& operator=(const CoreHTTPLib&) = delete;

    // True with the status and the body when a response came within `timeoutMs` (connection, each
    // read, and the whole exchange) and its body fits in `maxBody` bytes.
    bool get(const std::string& host, int port, const std::string& path, int timeoutMs, size_t maxBody, int& status,
             std::string& body);
    // Ends a running `get` from another thread, and every later one.
    void stop();

private:
    std::mutex clientLock;
    httplib::Client* client = nullptr;
    std::atomic<bool> stopping{false};
};

}  // namespace Resko
