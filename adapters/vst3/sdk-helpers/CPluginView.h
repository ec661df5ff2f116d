#pragma once
#include <atomic>

#include "adapters/vst3/sdk/Vst3View.h"

namespace Steinberg {

// The plain answers of a plug-in view: it keeps its rectangle, the parent window while attached
// and the host's frame, and handles no input. Reference counted; deletes itself at zero.
class CPluginView : public IPlugView {
public:
    explicit CPluginView(const ViewRect* rect = nullptr);
    virtual ~CPluginView();
    CPluginView(const CPluginView&) = delete;
    CPluginView& operator=(const CPluginView&) = delete;

    tresult queryInterface(const TUID interfaceId, void** object) override;
    uint32 addRef() override;
    uint32 release() override;

    tresult isPlatformTypeSupported(FIDString type) override;
    tresult attached(void* parent, FIDString type) override;
    tresult removed() override;
    tresult onWheel(float distance) override;
    tresult onKeyDown(char16 key, int16 keyCode, int16 modifiers) override;
    tresult onKeyUp(char16 key, int16 keyCode, int16 modifiers) override;
    tresult getSize(ViewRect* size) override;
    tresult onSize(ViewRect* newSize) override;
    tresult onFocus(TBool state) override;
    tresult setFrame(IPlugFrame* frame) override;
    tresult canResize() override;
    tresult checkSizeConstraint(ViewRect* rect) override;

    const ViewRect& getRect() const { return rect; }
    void setRect(const ViewRect& r) { rect = r; }
    bool isAttached() const { return systemWindow != nullptr; }
    void* getSystemWindow() const { return systemWindow; }
    IPlugFrame* getFrame() const { return plugFrame; }

protected:
    ViewRect rect{};
    void* systemWindow = nullptr;
    // Not counted: the host keeps its frame alive while the view is set to it.
    IPlugFrame* plugFrame = nullptr;

private:
    std::atomic<uint32> references{1};
};

}  // namespace Steinberg
