#include "adapters/vst3/sdk-helpers/CPluginView.h"

namespace Steinberg {

CPluginView::CPluginView(const ViewRect* initial) {
    if (initial) rect = *initial;
}

CPluginView::~CPluginView() = default;

tresult CPluginView::queryInterface(const TUID interfaceId, void** object) {
    if (!object) return kInvalidArgument;
    *object = nullptr;
    if (!sameUid(interfaceId, FUnknown::iid) && !sameUid(interfaceId, IPlugView::iid)) return kNoInterface;
    *object = static_cast<IPlugView*>(this);
    addRef();
    return kResultOk;
}

uint32 CPluginView::addRef() { return references.fetch_add(1) + 1; }

uint32 CPluginView::release() {
    const uint32 left = references.fetch_sub(1) - 1;
    if (left == 0) delete this;
    return left;
}

tresult CPluginView::isPlatformTypeSupported(FIDString) { return kNotImplemented; }

tresult CPluginView::attached(void* parent, FIDString) {
    systemWindow = parent;
    return kResultOk;
}

tresult CPluginView::removed() {
    systemWindow = nullptr;
    return kResultOk;
}

tresult CPluginView::onWheel(float) { return kResultFalse; }
tresult CPluginView::onKeyDown(char16, int16, int16) { return kResultFalse; }
tresult CPluginView::onKeyUp(char16, int16, int16) { return kResultFalse; }

tresult CPluginView::getSize(ViewRect* size) {
    if (!size) return kInvalidArgument;
    *size = rect;
    return kResultTrue;
}

tresult CPluginView::onSize(ViewRect* newSize) {
    if (!newSize) return kInvalidArgument;
    rect = *newSize;
    return kResultTrue;
}

tresult CPluginView::onFocus(TBool) { return kResultFalse; }

tresult CPluginView::setFrame(IPlugFrame* frame) {
    plugFrame = frame;
    return kResultTrue;
}

tresult CPluginView::canResize() { return kResultFalse; }
tresult CPluginView::checkSizeConstraint(ViewRect*) { return kResultFalse; }

}  // namespace Steinberg
