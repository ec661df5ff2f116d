#include "editor/CZonfraEditor.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "CORE/files/Settings.h"
#include "editor/PlaceholderPanel.h"
#include "effect/CZonfra.h"

namespace {

const char* const kGuiScaleName = "GuiScale";

std::string settingsKey() { return Core::makeKeyName("MORVANDEL", "zonfraQT"); }

}  // namespace

CZonfraEditor::CZonfraEditor(CZonfra* effect) : CVintariaEditor(effect) {
    setEditorSize(ZonfraEditor::kPanelWidth, ZonfraEditor::kPanelHeight);
    loadGuiScale();
}

void CZonfraEditor::openHook(Vinta::CFrame* newFrame) { ZonfraEditor::buildPlaceholderPanel(newFrame, getPlugin()); }

void CZonfraEditor::saveGuiScale() {
    char text[16];
    std::snprintf(text, sizeof text, "%d", static_cast<int>(getGuiScale() * 100.0 + 0.02));
    Core::writeSetting(settingsKey(), kGuiScaleName, text);
}

void CZonfraEditor::loadGuiScale() {
    std::string stored;
    Core::readSetting(settingsKey(), kGuiScaleName, stored, "100");
    setGuiScale(std::atof(stored.c_str()) / 100.0);
}

void CZonfraEditor::getEditorRect(EditorRect& out) {
    const Vinta::CRect& scaled = getRectPointer();
    out = {scaled.left, scaled.top, scaled.right, scaled.bottom};
}

void CZonfraEditor::openEditor(void* parent) {
    if (!parent || isOpen()) return;
    setEventDriver(Vinta::X11::EventDriver::OwnThread);
    open(parent);
}

void CZonfraEditor::closeEditor() { close(); }
