#include "lib/platform-x11/X11SoftwareSurface.h"

#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>
#include <sys/ipc.h>
#include <sys/shm.h>

#include <cstdlib>
#include <cstring>

#include "lib/platform-x11/X11ErrorTrap.h"

namespace Vinta::X11 {

struct X11SoftwareSurface::SharedSegment {
    XShmSegmentInfo info{};
};

X11SoftwareSurface::X11SoftwareSurface(Display* connection, Visual* windowVisual, int windowDepth)
    : display(connection), visual(windowVisual), depth(windowDepth) {}

X11SoftwareSurface::~X11SoftwareSurface() { release(); }

void X11SoftwareSurface::release() {
    if (!image) return;
    if (segment) {
        XShmDetach(display, &segment->info);
        XSync(display, False);
        shmdt(segment->info.shmaddr);
        delete segment;
        segment = nullptr;
        image->data = nullptr;
    }
    XDestroyImage(image);
    image = nullptr;
    shared = false;
}

bool X11SoftwareSurface::allocate(uint32_t width, uint32_t height) {
    release();
    if (!sharedRefused && XShmQueryExtension(display)) {
        auto* candidate = new SharedSegment;
        image = XShmCreateImage(display, visual, static_cast<unsigned>(depth), ZPixmap, nullptr, &candidate->info,
                                width, height);
        if (image) {
            const size_t bytes = static_cast<size_t>(image->bytes_per_line) * height;
            candidate->info.shmid = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
            if (candidate->info.shmid >= 0) {
                candidate->info.shmaddr = image->data = static_cast<char*>(shmat(candidate->info.shmid, nullptr, 0));
                candidate->info.readOnly = False;
                const unsigned long errorsBefore = getTrappedErrorCount();
                const bool attached = candidate->info.shmaddr != reinterpret_cast<char*>(-1) &&
                                      XShmAttach(display, &candidate->info);
                XSync(display, False);
                // Marked for removal now: it goes when both sides have let go.
                shmctl(candidate->info.shmid, IPC_RMID, nullptr);
                if (attached && getTrappedErrorCount() == errorsBefore) {
                    segment = candidate;
                    shared = true;
                    return true;
                }
                if (candidate->info.shmaddr != reinterpret_cast<char*>(-1)) shmdt(candidate->info.shmaddr);
            }
            image->data = nullptr;
            XDestroyImage(image);
            image = nullptr;
        }
        delete candidate;
        sharedRefused = true;  // a remote server: plain images from now on
    }
    const int bytesPerLine = static_cast<int>(width) * 4;
    auto* pixels = static_cast<char*>(std::calloc(static_cast<size_t>(bytesPerLine) * height, 1));
    if (!pixels) return false;
    image = XCreateImage(display, visual, static_cast<unsigned>(depth), ZPixmap, 0, pixels, width, height, 32,
                         bytesPerLine);
    if (!image) std::free(pixels);
    return image != nullptr;
}

void X11SoftwareSurface::present(Window window, GC gc, const uint8_t* source, uint32_t sourceWidth,
                                 uint32_t sourceHeight, int32_t sourceStride, uint32_t windowWidth,
                                 uint32_t windowHeight) {
    if (!source || sourceWidth == 0 || sourceHeight == 0 || windowWidth == 0 || windowHeight == 0) return;
    if (!image || static_cast<uint32_t>(image->width) != windowWidth ||
        static_cast<uint32_t>(image->height) != windowHeight) {
        if (!allocate(windowWidth, windowHeight)) return;
    }
    const bool exact = sourceWidth == windowWidth && sourceHeight == windowHeight;
    for (uint32_t y = 0; y < windowHeight; ++y) {
        const uint32_t sy = exact ? y : static_cast<uint32_t>(static_cast<uint64_t>(y) * sourceHeight / windowHeight);
        const uint8_t* row = source + static_cast<ptrdiff_t>(sy) * sourceStride;
        auto* out = reinterpret_cast<uint32_t*>(image->data + static_cast<ptrdiff_t>(y) * image->bytes_per_line);
        for (uint32_t x = 0; x < windowWidth; ++x) {
            const uint32_t sx = exact ? x : static_cast<uint32_t>(static_cast<uint64_t>(x) * sourceWidth / windowWidth);
            const uint8_t* pixel = row + sx * 4;
            // Premultiplied over black is the colour as it stands; the visual is 24-bit true colour.
            out[x] = (static_cast<uint32_t>(pixel[0]) << 16) | (static_cast<uint32_t>(pixel[1]) << 8) | pixel[2];
        }
    }
    if (shared)
        XShmPutImage(display, window, gc, image, 0, 0, 0, 0, windowWidth, windowHeight, False);
    else
        XPutImage(display, window, gc, image, 0, 0, 0, 0, windowWidth, windowHeight);
}

}  // namespace Vinta::X11
