#pragma once
// The seven slide-out pages above the response plot and their close cross. The display that holds
// them calls addPages once, after its plot and meters, and keeps the returned set to feed the pages
// from the audio tap; the pages reach the effect only through the host below.
#include <array>
#include <memory>
#include <string>

namespace Ondra {
class IPluginParameter;
}
namespace Vinta {
class CFrame;
class CViewContainer;
class CXButton;
}  // namespace Vinta

namespace ZonfraPages {

class CEnvelopeWindow;
class CLFOWindow;
class CRingModWin;
class CFreqModWindow;
class CDistWindow;
class CLimiterWindow;
class CSyspageWindow;
class Vinta_AttachedWindow;

// What the pages need from the editor. The folder, support and version calls are the system
// page's actions; the editor decides how they are carried out on this platform.
class PageHost {
public:
    virtual ~PageHost() = default;
    virtual Ondra::IPluginParameter* findParameter(const char* key) = 0;
    // The effect's global limiter switch, shown on the limiter page; may be null.
    virtual Ondra::IPluginParameter* getGlobalLimiterParameter() = 0;
    virtual std::string getPresetFolder() = 0;
    // Shows the folder in the desktop's file manager.
    virtual void openPresetFolder() = 0;
    // Lets the user pick a new folder (a folder chooser over `frame`) and stores it.
    virtual void changePresetFolder(Vinta::CFrame* frame) = 0;
    // Writes the support report to the desktop and tells the user in the editor.
    virtual void writeSupportReport(Vinta::CFrame* frame) = 0;
    // The product's version ("1.0.0") and the door the editor was opened through: 0 none, 1 VST2,
    // 2 VST3, 5 AAX.
    virtual std::string getVersion() = 0;
    virtual int getWrapperIndex() = 0;
};

inline constexpr int kPageCount = 7;

// The pages as added, in their order; none is owned by the set (the display's child list holds
// them). All pointers stay valid while the display lives.
struct PageSet {
    CEnvelopeWindow* envelope = nullptr;
    CLFOWindow* lfo = nullptr;
    CRingModWin* ringMod = nullptr;
    CFreqModWindow* freqMod = nullptr;
    CDistWindow* distortion = nullptr;
    CLimiterWindow* limiter = nullptr;
    CSyspageWindow* system = nullptr;
    Vinta::CXButton* closeButton = nullptr;

    std::array<Vinta_AttachedWindow*, kPageCount> pages() const;

    // Feeds from the audio tap: they only store numbers and mark the pages dirty.
    void pushEnvelope(float low, float high);
    void setGainReduction(float gain);
    void setRingModFrequency(float hertz);
    void setFreqModValues(float frequency, float mix);
    void clearDisplays();
};

// Adds the seven pages in their order and then the close cross (left 480, top 1, right 492,
// bottom 13) to `display`, whose size is the plot area (496 by 156 units). Each page opens by a
// click on its tab; the cross shuts all of them.
PageSet addPages(Vinta::CViewContainer& display, PageHost& host);
// The same with a host the pages keep for as long as any of them lives.
PageSet addPages(Vinta::CViewContainer& display, std::unique_ptr<PageHost> host);

}  // namespace ZonfraPages
