#pragma once
#include <atomic>

#include "adapters/vst3/sdk-helpers/CPluginView.h"

class Ondra_VST3;

namespace Vinta {
class CVintariaEditor;
}

// The effect's editor as a VST 3 view inside the host's X11 window. It watches the editor's X
// connection and runs its timer through the host's IRunLoop; a host without one leaves the frame
// to run a thread of its own.
class Ondra_VST3_EditorView : public Steinberg::CPluginView, public Steinberg::IPlugViewContentScaleSupport {
public:
    Ondra_VST3_EditorView(Ondra_VST3* controller, const Steinberg::ViewRect& size);
    ~Ondra_VST3_EditorView() override;

    Steinberg::tresult queryInterface(const Steinberg::TUID interfaceId, void** object) override;
    Steinberg::uint32 addRef() override { return CPluginView::addRef(); }
    Steinberg::uint32 release() override { return CPluginView::release(); }

    Steinberg::tresult isPlatformTypeSupported(Steinberg::FIDString type) override;
    Steinberg::tresult attached(void* parent, Steinberg::FIDString type) override;
    Steinberg::tresult removed() override;
    Steinberg::tresult onWheel(float distance) override;
    Steinberg::tresult onKeyDown(Steinberg::char16 key, Steinberg::int16 keyCode, Steinberg::int16 modifiers) override;
    Steinberg::tresult onKeyUp(Steinberg::char16 key, Steinberg::int16 keyCode, Steinberg::int16 modifiers) override;
    Steinberg::tresult getSize(Steinberg::ViewRect* size) override;
    Steinberg::tresult checkSizeConstraint(Steinberg::ViewRect* rect) override;

    // IPlugViewContentScaleSupport: the host's screen scale becomes the editor's GUI scale.
    Steinberg::tresult setContentScaleFactor(ScaleFactor factor) override;

    // The editor asked for a new size (its GUI scale changed): the host's frame is told.
    void requestSize(int width, int height);
    // The effect is about to go: its editor closes and the host's run loop forgets this view.
    void closeEditor();

private:
    class RunLoopLink;
    friend class RunLoopLink;

    Vinta::CVintariaEditor* editor() const;
    Steinberg::tresult forwardKey(bool down, Steinberg::char16 key, Steinberg::int16 keyCode,
                                  Steinberg::int16 modifiers);
    void joinRunLoop();
    void leaveRunLoop();

    Ondra_VST3* controller;
    Steinberg::Linux::IRunLoop* runLoop = nullptr;
    RunLoopLink* link = nullptr;
};
