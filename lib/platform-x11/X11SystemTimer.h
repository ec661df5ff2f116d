#pragma once
// The toolkit's one periodic timer on X11: no thread of its own; every open frame's pump asks it
// whether a period has passed, and the first to see one ticks the registry.
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
    // Ticks the registry when a period is due; answers the milliseconds until the next one (or a
    // long wait when stopped).
    uint32_t service(uint32_t now);

private:
    std::atomic<bool> running{false};
    std::atomic<uint32_t> period{0};
    std::atomic<uint32_t> nextDue{0};
};

}  // namespace Vinta::X11
