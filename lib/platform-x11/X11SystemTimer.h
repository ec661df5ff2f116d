#pragma once
// The toolkit's one periodic timer on X11: no thread of its own; every open frame's pump asks it
// whether a period of that frame has passed, and then ticks the registry for that frame's views.
#include <atomic>
#include <cstdint>

#include "lib/views/CTimerObject.h"

namespace Vinta::X11 {

class X11SystemTimer final : public ISystemTimer {
public:
    // The frames that pump it: the first registers it with the toolkit, the last takes it out.
    static void addUser();
    static void removeUser();
    static X11SystemTimer& instance();

    void start(uint32_t periodMilliseconds) override;
    void stop() override;
    // When the next period of one frame is due; each frame's pump keeps its own.
    struct Schedule {
        uint32_t period = 0;
        uint32_t due = 0;
    };
    // Ticks the registry for `frame` when its period is due; answers the milliseconds until the
    // next one (or a long wait when stopped).
    uint32_t service(uint32_t now, Schedule& schedule, const CFrame* frame);

private:
    std::atomic<bool> running{false};
    std::atomic<uint32_t> period{0};
};

}  // namespace Vinta::X11
