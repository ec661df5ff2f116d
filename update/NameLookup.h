#pragma once
// Name resolution that a closing editor need not wait for. A lookup stuck on a dead name server
// would otherwise hold the update threads, and the join at close, for as long as the resolver's
// own retries last.
#include <netdb.h>

#include <atomic>
#include <string>

namespace Resko {

// The addresses of `host` for a TCP connection to `port`, or null when the name is unknown, the
// lookup takes longer than `timeoutMs`, or `stopping` becomes true meanwhile. The caller frees
// the list with freeaddrinfo.
addrinfo* lookUpName(const std::string& host, int port, int timeoutMs, const std::atomic<bool>& stopping);

// The first address of `host` as text ("127.0.0.1", "::1"); empty as lookUpName fails.
std::string lookUpNumericAddress(const std::string& host, int port, int timeoutMs, const std::atomic<bool>& stopping);

}  // namespace Resko
