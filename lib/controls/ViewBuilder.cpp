#include "lib/controls/ViewBuilder.h"

#include "lib/controls/Vinta_ParamDisplay.h"
#include "lib/views/CFrame.h"

namespace Vinta {

namespace {
bool isDisplayKind(int32_t kind) {
    return kind == kKindParamDisplay || kind == kKindParamDisplayB ||
           (kind >= kKindParamDisplayFirst && kind <= kKindParamDisplayLast);
}

CView* buildDisplay(Vinta_ObjectConstructorInfoBase& record) {
    if (auto* text = dynamic_cast<Vinta_ParamDisplay::CInfo*>(&record)) return new Vinta_ParamDisplay(*text);
    auto* display = new Vinta_ParamDisplay(record.rect, record.parameter);
    display->setTag(record.tag);
    display->setVisibilityParameter(record.visibilityParameter);
    display->setEnableParameter(record.enableParameter);
    return display;
}
}  // namespace

CView* addViewFromRecord(Vinta_ObjectConstructorInfoBase* record, CViewContainer* container, CFrame* frame) {
    if (!record) return nullptr;
    if (!record->parentFrame) record->parentFrame = frame;
    CView* view = nullptr;
    if (isDisplayKind(record->kind))
        view = buildDisplay(*record);
    else if (record->kind == kKindTextEdit || record->kind == kKindCreateObject)
        view = record->CreateObject();
    record->object = view;
    if (!view) return nullptr;
    CViewContainer* into = container ? container : frame;
    if (!into || !into->addView(view)) {
        view->forget();
        record->object = nullptr;
        return nullptr;
    }
    return view;
}

} // namespace Vinta
