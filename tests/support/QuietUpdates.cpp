// Linked into every test program: an editor a test opens asks for updates at a closed local port,
// not at the real server. The update tests name servers of their own.
#include <cstdlib>

namespace {
const bool quiet = setenv("ZONFRA_UPDATE_SERVER", "127.0.0.1:9", 0) == 0;
}
