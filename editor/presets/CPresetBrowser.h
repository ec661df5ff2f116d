#pragma once
// The arrows beside the preset name: left and right step through the preset folder, the down
// arrow (or a right click anywhere on it) opens the menu of file operations and all presets.
// Preset files dropped on it load; the editor sends it the drops no other view takes.
#include <string>
#include <vector>

#include "editor/presets/CPresetInterface.h"
#include "lib/views/CControl.h"

class CZonfra;

namespace Vinta {
class CBitmap;
class COptionMenu;
class Vinta_ContextMenu;
}  // namespace Vinta

namespace ZonfraPresets {

class CPresetBrowser : public Vinta::CControl {
public:
    // Arrow bitmaps have two rows, pressed above; they sit from (left + offsetX, top + offsetY).
    // `nameBox` is the preset name's text box, opened for a rename.
    CPresetBrowser(const Vinta::CRect& size, CZonfra* plugin, Vinta::CBitmap* leftArrow, Vinta::CBitmap* rightArrow,
                   Vinta::CBitmap* downArrow, double offsetX, double offsetY, Vinta::CView* nameBox);

    void draw(Vinta::CDrawContext* context) override;
    int32_t onMouseDown(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    int32_t onMouseUp(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    bool onDrop(Vinta::CDragContainer* drag, const Vinta::CPoint& where) override;
    void parameterChanged(Ondra::IPluginParameter* changed) override;

    CPresetInterface& getPresetInterface() { return presets; }
    // The menu's rows as built for the last popup, for tests and hosts.
    Vinta::COptionMenu* buildMenu();
    // Carries out the row chosen in `menu` (the main menu or one of its category sub-menus).
    void choose(Vinta::COptionMenu* menu, int32_t row);

    enum Action : int { kSave, kSaveAs, kDelete, kRename, kOpenFolder, kRestore, kPreset, kNone };

protected:
    ~CPresetBrowser() override;

private:
    bool report(bool ok);
    // A completion that shows the failure, keeping the browser alive until it runs or is dropped.
    CPresetInterface::Done reporter();
    bool loadAndShow(int index);
    void saveAs();

    CZonfra* plugin;
    CPresetInterface presets;
    Ondra::IPluginParameter* nameParameter = nullptr;
    Vinta::CBitmap* leftArrow;
    Vinta::CBitmap* rightArrow;
    Vinta::CBitmap* downArrow;
    Vinta::CRect leftRect, rightRect, downRect;
    bool leftPressed = false, rightPressed = false, downPressed = false;
    Vinta::CView* nameBox;
    bool renaming = false;
    bool internalChange = false;
    Vinta::Vinta_ContextMenu* menu = nullptr;
    // Per main-menu row: its action and, for a preset row, the preset's index.
    std::vector<std::pair<Action, int>> mainRows;
    struct Category {
        std::string name;
        Vinta::COptionMenu* menu;
        std::vector<int> indices;
    };
    std::vector<Category> categories;
};

}  // namespace ZonfraPresets
