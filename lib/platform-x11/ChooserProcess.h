#pragma once
// A desktop program (the file chooser) run as a child: its standard output is collected while the
// caller keeps its own window alive through `whileWaiting`; cancel() ends it early.
#include <atomic>
#include <functional>
#include <string>
#include <vector>

namespace Vinta::X11 {

class ChooserProcess {
public:
    // The first of `names` found on PATH, else empty.
    static std::string findOnPath(const std::vector<std::string>& names);

    // Runs `arguments` (the program first) until it exits. `whileWaiting` gets the milliseconds it
    // may take and answers false to give up. True with the output when the program exited with 0.
    bool run(const std::vector<std::string>& arguments, const std::function<bool(int)>& whileWaiting,
             std::string& output);
    // From any thread: the running program is ended and run() answers false.
    void cancel() { cancelled = true; }

private:
    std::atomic<bool> cancelled{false};
};

}  // namespace Vinta::X11
