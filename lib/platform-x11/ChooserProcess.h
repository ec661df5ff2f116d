#pragma once
// A desktop program (file chooser, question box) run as a child while the host's loop goes on:
// start() returns at once, the frame's pump watches the child, and its exit status and standard
// output reach `done` on the frame's thread. The editor closing ends the child, and `done` is
// dropped without running.
#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

#include "lib/platform-x11/X11Companion.h"

namespace Vinta::X11 {

class X11Frame;

class ChooserProcess final : public X11Companion {
public:
    // `exitedWithZero` false for a cancel, a failure or an exit code other than 0.
    using Done = std::function<void(bool exitedWithZero, const std::string& output)>;

    // The first of `names` found on PATH, else empty.
    static std::string findOnPath(const std::vector<std::string>& names);

    // Starts `arguments` (the program first). False when it cannot be started; `done` never runs then.
    static bool start(X11Frame& frame, const std::vector<std::string>& arguments, Done done);
    // Children running for `frame` now (tests watch them come and go).
    static int runningFor(const X11Frame& frame);

    bool handleEvent(XEvent&) override { return false; }
    void service() override;
    void detach() override;

private:
    ChooserProcess(X11Frame& frame, pid_t child, int outputFd, Done done);
    ~ChooserProcess() override;
    void readAvailable();

    X11Frame& frame;
    pid_t child;
    int outputFd;
    Done done;
    std::string output;
};

}  // namespace Vinta::X11
