#pragma once
// The panel the editor shows until its full layout exists: the product name and the knobs of the
// main parameters, tied to the effect's own parameters so that every host door can be tried.
namespace Ondra {
class OndraOS;
}
namespace Vinta {
class CFrame;
}

namespace ZonfraEditor {

// Keys of the parameters on the panel, left to right, and their captions.
inline constexpr const char* kPanelParameters[] = {"INPUTGAIN", "LOWPASSFREQ", "HIGHPASSFREQ", "kDryWetMix",
                                                   "OUTPUTGAIN"};
inline constexpr const char* kPanelCaptions[] = {"Input", "Low-pass", "High-pass", "Dry/Wet", "Output"};
inline constexpr double kPanelWidth = 534.0;
inline constexpr double kPanelHeight = 488.0;
// Top of the knob row, in editor units; the knobs share one column width.
inline constexpr double kKnobTop = 200.0;
inline constexpr double kColumnWidth = kPanelWidth / 5.0;

void buildPlaceholderPanel(Vinta::CFrame* frame, Ondra::OndraOS* plugin);

}  // namespace ZonfraEditor
