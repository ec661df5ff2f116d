#include "adapters/vst2/COndraVST2_Editor.h"

#include "lib/editor-base/CVintariaEditor.h"

using namespace Vst2;

COndraVST2_Editor::COndraVST2_Editor(Vinta::CVintariaEditor* owned) : editor(owned) {}

COndraVST2_Editor::~COndraVST2_Editor() { close(); }

bool COndraVST2_Editor::getRect(ERect** out) {
    int32_t width = 100, height = 100;
    if (editor) editor->getRect(width, height);
    rect = {0, 0, static_cast<VstInt16>(height), static_cast<VstInt16>(width)};
    *out = &rect;
    return true;
}

bool COndraVST2_Editor::open(void* parent) {
    if (!parent || !editor || parentWindow) return false;
    editor->setEventDriver(Vinta::X11::EventDriver::HostIdle);
    if (!editor->open(parent)) return false;
    parentWindow = parent;
    return true;
}

void COndraVST2_Editor::close() {
    if (editor && parentWindow) editor->close();
    parentWindow = nullptr;
}

void COndraVST2_Editor::idle() {
    if (editor && parentWindow) editor->idle();
}

namespace {
Vinta::VstKeyCode toVinta(const VstKeyCode& key) {
    Vinta::VstKeyCode copy;
    copy.character = key.character;
    copy.virt = key.virt;
    copy.modifier = key.modifier;
    return copy;
}
}  // namespace

bool COndraVST2_Editor::onKeyDown(VstKeyCode& key) {
    return editor && parentWindow && editor->onKeyDown(toVinta(key)) >= 0;
}

bool COndraVST2_Editor::onKeyUp(VstKeyCode& key) {
    return editor && parentWindow && editor->onKeyUp(toVinta(key)) >= 0;
}

bool COndraVST2_Editor::onWheel(float distance) { return editor && parentWindow && editor->onWheel(distance); }
