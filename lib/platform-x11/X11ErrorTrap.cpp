#include "lib/platform-x11/X11ErrorTrap.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <vector>

namespace Vinta::X11 {

namespace {
std::mutex trapLock;
std::vector<Display*> ourDisplays;
std::vector<Display*> lostDisplays;
XErrorHandler previousHandler = nullptr;
XIOErrorHandler previousIOHandler = nullptr;
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

int onIOError(Display* display) {
    if (isOurs(display)) return 0;  // the exit handler below marks it
    return previousIOHandler ? previousIOHandler(display) : 0;
}

void onConnectionLost(Display* display, void*) {
    std::lock_guard<std::mutex> guard(trapLock);
    lostDisplays.push_back(display);
}
}  // namespace

void trapErrorsOf(Display* display) {
    std::lock_guard<std::mutex> guard(trapLock);
    ourDisplays.push_back(display);
    XSetIOErrorExitHandler(display, onConnectionLost, nullptr);
    if (!installed) {
        previousHandler = XSetErrorHandler(onXError);
        previousIOHandler = XSetIOErrorHandler(onIOError);
        installed = true;
    }
}

void releaseErrorsOf(Display* display) {
    std::lock_guard<std::mutex> guard(trapLock);
    std::erase(ourDisplays, display);
    std::erase(lostDisplays, display);
    if (!ourDisplays.empty() || !installed) return;
    // Step back only when we are still on top; someone who came later may chain to us.
    const XErrorHandler current = XSetErrorHandler(previousHandler);
    const XIOErrorHandler currentIO = XSetIOErrorHandler(previousIOHandler);
    if (current != onXError || currentIO != onIOError) {
        XSetErrorHandler(current);
        XSetIOErrorHandler(currentIO);
        return;
    }
    installed = false;
    previousHandler = nullptr;
    previousIOHandler = nullptr;
}

unsigned long getTrappedErrorCount() { return trappedErrors.load(); }

bool isConnectionLost(Display* display) {
    std::lock_guard<std::mutex> guard(trapLock);
    return std::find(lostDisplays.begin(), lostDisplays.end(), display) != lostDisplays.end();
}

}  // namespace Vinta::X11
