#include "lib/controls/Vinta_Label.h"

#include <cstring>

#include "framework/parameters/IPluginParameter.h"

namespace Vinta {

CView* Vinta_Label::CInfo::CreateObject() { return object = new Vinta_Label(*this); }

Vinta_Label::Vinta_Label(const CInfo& info) : CTextLabel(info.rect, info.text, nullptr, info.style) {
    takeTextRecord(info);
}

Vinta_Label::~Vinta_Label() { stopListeningToParameter(); }

bool Vinta_Label::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "Vinta_Label") == 0) || CTextLabel::isTypeOf(name);
}

void Vinta_Label::parameterChanged(Ondra::IPluginParameter* changed) {
    if (changed && changed == parameter) {
        nameChanged = true;
        setDirty(true);
        return;
    }
    CTextLabel::parameterChanged(changed);
}

void Vinta_Label::draw(CDrawContext* context) {
    if (parameter && nameChanged.exchange(false)) setText(parameter->getName());
    CTextLabel::draw(context);
}

} // namespace Vinta
