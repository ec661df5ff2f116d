#pragma once
// The main archive's bitmaps, loaded once for all editors of the process: the first editor loads
// them, the last one releases them. Each comes twice: as drawn for 100 %, and at double resolution
// ("@2x") for windows scaled above 100 %, measured in the same units.
#include <cstddef>

namespace Vinta {
class CBitmap;
}

namespace ZonfraEditor {

enum BitmapId : int {
    kBackground,
    kDialBig,
    kDialSmall,
    kLedOn,
    kLedOff,
    kLinkButton,
    kModeSwitch,
    kArrowDown,
    kArrowLeft,
    kArrowRight,
    kMixDial,
    kBitmapCount
};

// Archive names in loading order.
inline constexpr const char* kBitmapNames[kBitmapCount] = {
    "Background.png", "dial87px.png",     "dial54px_small.png", "ledOn.png",          "ledOff.png",
    "linkBtn.png",    "HorizontalDip.png", "ArrowDownBig.png",  "ArrowLeftBig.png", "ArrowRightBig.png",
    "MixDialFilmstrip.png"};

class SharedBitmaps {
public:
    // Use count up; the first user loads.
    static void acquire();
    // Use count down, never below 0; the last user releases.
    static void release();
    static int useCount();
    // Null before the first acquire; a bitmap missing from the archive is empty. `sharp` picks the
    // double-resolution variant where the archive has it.
    static Vinta::CBitmap* get(BitmapId id, bool sharp = false);
};

}  // namespace ZonfraEditor
