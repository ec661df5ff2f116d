#include "update/CoreHTTPLib.h"

#include <httplib.h>

#include <chrono>

#include "update/NameLookup.h"

namespace Resko {

CoreHTTPLib::CoreHTTPLib() = default;

CoreHTTPLib::~CoreHTTPLib() { stop(); }

void CoreHTTPLib::stop() {
    stopping = true;
    std::lock_guard<std::mutex> guard(clientLock);
    if (client) client->stop();
}

bool CoreHTTPLib::get(const std::string& host, int port, const std::string& path, int timeoutMs, size_t maxBody,
                      int& status, std::string& body) {
    status = 0;
    body.clear();
    if (stopping) return false;
    // The name is looked up by us, so that a stop ends a stuck lookup too; the server still sees its name.
    const std::string address = lookUpNumericAddress(host, port, timeoutMs, stopping);
    if (address.empty()) return false;
    httplib::Client connection(address, port);
    const auto limit = std::chrono::milliseconds(timeoutMs);
    connection.set_connection_timeout(limit);
    connection.set_read_timeout(limit);
    connection.set_write_timeout(limit);
    connection.set_keep_alive(false);
    connection.set_follow_location(false);
    connection.set_decompress(false);  // the question asks for plain text, and gets no encoded body
    {
        std::lock_guard<std::mutex> guard(clientLock);
        if (stopping) return false;
        client = &connection;
    }
    // A server that trickles bytes must not hold the question past its time-out either.
    const auto deadline = std::chrono::steady_clock::now() + limit;
    auto goOn = [&] { return !stopping && std::chrono::steady_clock::now() < deadline; };
    bool tooLong = false;
    const auto result = connection.Get(
        path, httplib::Headers{{"Host", port == 80 ? host : host + ":" + std::to_string(port)}},
        [&](const httplib::Response&) { return goOn(); },
        [&](const char* data, size_t size) {
            if (body.size() + size > maxBody) tooLong = true;
            else body.append(data, size);
            return !tooLong && goOn();
        },
        [&](uint64_t, uint64_t) { return goOn(); });
    {
        std::lock_guard<std::mutex> guard(clientLock);
        client = nullptr;
    }
    if (!result || tooLong || stopping) return false;
    status = result->status;
    return true;
}

}  // namespace Resko
