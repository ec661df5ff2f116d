#include "lib/platform-x11/X11ErrorTrap.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <vector>

namespace Vinta::X11 {

namespace {
std::mutex trapLock;
std::vector<Display*> ourDisplays;
XErrorHandler previousHandler = nullptr;
bool installed = false;
std::atomic<unsigned long> trappedErrors{0};

bool isOurs(Display* display) {
    std::lock_guard<std::mutex> guard(trapLock);
    return std::find(ourDisplays.begin(), ourDisplays.end(), display) != ourDisplays.end();
}

int onXError(Display* display, XErrorEvent* error) {
    if (isOurs(display)) {
        trappedErrors.fetch_add(1);
        return 0;
    }
    // Xlib's default handler (what a null previous handler means) would end the process: leave
    // that decision to the connection's owner only when it had installed one.
    return previousHandler ? previousHandler(display, error) : 0;
}
}  // namespace

void trapErrorsOf(Display* display) {
    std::lock_guard<std::mutex> guard(trapLock);
    ourDisplays.push_back(display);
    if (!installed) {
        previousHandler = XSetErrorHandler(onXError);
        installed = true;
    }
}

void releaseErrorsOf(Display* display) {
    std::lock_guard<std::mutex> guard(trapLock);
    std::erase(ourDisplays, display);
    if (!ourDisplays.empty() || !installed) return;
    // Step back only when we are still on top; someone who came later may chain to us.
    XErrorHandler current = XSetErrorHandler(previousHandler);
    if (current != onXError) {
        XSetErrorHandler(current);
        return;
    }
    installed = false;
    previousHandler = nullptr;
}

unsigned long getTrappedErrorCount() { return trappedErrors.load(); }

}  // namespace Vinta::X11
