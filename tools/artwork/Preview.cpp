#include "tools/artwork/Preview.h"

#include <map>
#include <string>

#include "lib/drawing/CBitmap.h"
#include "tools/artwork/Layout.h"

namespace Artwork {

using namespace Layout;
using Vinta::CBitmap;
using Vinta::CPoint;
using Vinta::CRect;

namespace {

class Images {
public:
    Images(const std::filesystem::path& folder, int scale) : root(folder), s(scale) {}
    ~Images() {
        for (auto& entry : loaded) entry.second->forget();
    }
    CBitmap& get(const std::string& name) {
        CBitmap*& bitmap = loaded[name];
        if (bitmap == nullptr) {
            const std::string file = s == 1 ? name : name.substr(0, name.size() - 4) + "@2x.png";
            bitmap = new CBitmap((root / file).string().c_str(), true);
        }
        return *bitmap;
    }

private:
    std::filesystem::path root;
    int s;
    std::map<std::string, CBitmap*> loaded;
};

}  // namespace

bool writePreview(const std::filesystem::path& folder, int scale, const std::filesystem::path& file) {
    Images images(folder, scale);
    auto* panel = new CBitmap(kPanelWidth * scale, kPanelHeight * scale);
    Vinta::CDrawContext& context = *panel->getDrawContext();
    // One frame (or row) of an image at a panel position.
    auto place = [&](const char* name, const CPoint& at, double frameHeight, int frame) {
        CBitmap& bitmap = images.get(name);
        const CRect target(at.x * scale, at.y * scale, at.x * scale + bitmap.getWidth(),
                           (at.y + frameHeight) * scale);
        context.drawBitmap(bitmap, target, CPoint(0, frame * frameHeight * scale), 255, true);
    };
    auto knob = [&](const char* name, const CPoint& at, double size, double value) {
        place(name, at, size, static_cast<int>(value * (kKnobFrames - 1) + 0.5));
    };
    place("Background.png", CPoint(0, 0), kPanelHeight, 0);
    knob("MixDialFilmstrip.png", kMixKnob, kMixDial, 1.0);
    knob("dial87px.png", kInputKnob, kBigDial, 0.5);
    knob("dial87px.png", kOutputKnob, kBigDial, 0.62);
    knob("dial87px.png", kLowCutoffKnob, kBigDial, 0.8);
    knob("dial87px.png", kLowWidthKnob, kBigDial, 0.3);
    knob("dial54px_small.png", CPoint(kLowWidthKnob.x + 17, kLowWidthKnob.y + 18), kSmallDial, 0.45);
    knob("dial87px.png", kHighWidthKnob, kBigDial, 0.0);
    knob("dial54px_small.png", CPoint(kHighWidthKnob.x + 17, kHighWidthKnob.y + 18), kSmallDial, 1.0);
    knob("dial87px.png", kHighCutoffKnob, kBigDial, 0.15);
    for (int i = 0; i < 4; ++i) {
        place(i == 1 ? "ledOn.png" : "ledOff.png", CPoint(kLowSlopeLeds.x, kLowSlopeLeds.y + i * kLedStep), kLed, 0);
        place(i == 3 ? "ledOn.png" : "ledOff.png", CPoint(kHighSlopeLeds.x, kHighSlopeLeds.y + i * kLedStep), kLed, 0);
    }
    place("linkBtn.png", kLinkButton, kLinkRow, 0);
    place("HorizontalDip.png", kModeSwitch, kDipRow, 1);
    place("ArrowLeftBig.png", kArrows, kArrowRow, 1);
    place("ArrowRightBig.png", CPoint(kArrows.x + kArrowWidth + 1, kArrows.y), kArrowRow, 0);
    place("ArrowDownBig.png", CPoint(kArrows.x + 2 * kArrowWidth, kArrows.y), kArrowRow, 1);
    const bool saved = panel->savePNG(file.string().c_str());
    panel->forget();
    return saved;
}

}  // namespace Artwork
