#include "update/NameLookup.h"

#include <time.h>

#include <memory>

namespace Resko {

namespace {
constexpr int kSliceMs = 20;

// glibc's resolver thread writes into the request until it ends, so the request lives on the heap
// and is left to it when it cannot be called off (a few hundred bytes, once per abandoned lookup).
struct Request {
    std::string host, service;
    addrinfo hints{};
    gaicb block{};
};
}  // namespace

addrinfo* lookUpName(const std::string& host, int port, int timeoutMs, const std::atomic<bool>& stopping) {
    if (host.empty() || stopping) return nullptr;
    // An address written as numbers needs no resolver (nor the resolver's helper thread).
    addrinfo numeric{};
    numeric.ai_flags = AI_NUMERICHOST;
    numeric.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), &numeric, &found) == 0) return found;
    auto request = std::make_unique<Request>();
    request->host = host;
    request->service = std::to_string(port);
    request->hints.ai_family = AF_UNSPEC;
    request->hints.ai_socktype = SOCK_STREAM;
    request->block.ar_name = request->host.c_str();
    request->block.ar_service = request->service.c_str();
    request->block.ar_request = &request->hints;
    gaicb* list[] = {&request->block};
    if (getaddrinfo_a(GAI_NOWAIT, list, 1, nullptr) != 0) return nullptr;
    const timespec slice{0, kSliceMs * 1000000L};
    for (int waited = 0; gai_error(&request->block) == EAI_INPROGRESS; waited += kSliceMs) {
        if (stopping || waited >= timeoutMs) {
            if (gai_cancel(&request->block) != EAI_CANCELED) request.release();
            return nullptr;
        }
        const gaicb* waiting[] = {&request->block};
        gai_suspend(waiting, 1, &slice);
    }
    return gai_error(&request->block) == 0 ? request->block.ar_result : nullptr;
}

std::string lookUpNumericAddress(const std::string& host, int port, int timeoutMs, const std::atomic<bool>& stopping) {
    addrinfo* found = lookUpName(host, port, timeoutMs, stopping);
    if (!found) return "";
    char text[NI_MAXHOST] = {0};
    const bool named = getnameinfo(found->ai_addr, found->ai_addrlen, text, sizeof text, nullptr, 0, NI_NUMERICHOST) == 0;
    freeaddrinfo(found);
    return named ? text : "";
}

}  // namespace Resko
