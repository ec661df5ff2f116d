#pragma once
// A modulator value that may follow the filter. While its link amount is not 0 the main dial shows
// the value in force (a proxy parameter the audio tap feeds) and ignores the mouse, and the "root"
// dial edits the stored value; otherwise the main dial edits it and the root dial rests.
#include <atomic>

#include "editor/pages/MiniDial.h"
#include "framework/parameters/ParameterProperty.h"

namespace ZonfraPages {

struct ModLink {
    Ondra::IPluginParameter* stored = nullptr;
    Ondra::IPluginParameter* amount = nullptr;
    Ondra::ParameterProperty* proxy = nullptr;
    Vinta_MiniDial* shown = nullptr;
    Vinta_MiniDial* root = nullptr;
    std::atomic<float> inForce{0.0f};

    // The proxy takes the stored parameter's name, unit, range and text.
    void makeProxy(Ondra::ParameterProperty& own);
    bool isLinked() const { return amount && amount->getValue() != 0.0f; }
    // On the window's thread: the dials as the link says, the proxy at the value in force.
    void apply();
};

// The chain mark beside a linked dial.
void drawLinkMark(Vinta::CDrawContext* context, double left, double top);

}  // namespace ZonfraPages
