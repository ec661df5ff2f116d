#include "editor/presets/CPresetBrowser.h"

#include <algorithm>
#include <cstdio>

#include "CORE/files/ShellCommands.h"
#include "editor/presets/PresetMessages.h"
#include "effect/CZonfra.h"
#include "framework/presets/CPresetFormatFXP.h"
#include "lib/controls/CMenuItem.h"
#include "lib/controls/Vinta_ContextMenu.h"
#include "lib/drawing/CBitmap.h"
#include "lib/platform-x11/CDragContainer.h"
#include "lib/platform-x11/CFileSelector.h"
#include "lib/views/CFrame.h"
#include "lib/views/KeepAlive.h"

using namespace Vinta;

namespace ZonfraPresets {

namespace {
constexpr int kMaxPerCategory = 255;
}

CPresetBrowser::CPresetBrowser(const CRect& rect, CZonfra* owner, CBitmap* left, CBitmap* right, CBitmap* down,
                               double offsetX, double offsetY, CView* box)
    : CControl(rect), plugin(owner), presets(owner), leftArrow(left), rightArrow(right), downArrow(down), nameBox(box) {
    for (CBitmap* b : {leftArrow, rightArrow, downArrow})
        if (b) b->remember();
    const double w = leftArrow ? leftArrow->getWidth() : 0, h = leftArrow ? leftArrow->getHeight() / 2 : 0;
    leftRect = CRect(rect.left + offsetX, rect.top + offsetY, rect.left + offsetX + w, rect.top + offsetY + h);
    rightRect = leftRect;
    rightRect.offset(static_cast<int>(w) + 1, 0);
    downRect = rightRect;
    downRect.offset(static_cast<int>(w) - 1, 0);
    presets.setQuestion([this](const std::string& title, const std::string& text, CPresetInterface::Answer answer) {
        // What follows an answer is the browser's own doing, names included.
        askQuestion(getFrame(), title, text, [self = keepAlive(this), answer](bool yes) {
            self->internalChange = true;
            answer(yes);
            self->internalChange = false;
            self->setDirty(true);
        });
    });
    if (plugin) {
        presets.setFolder(plugin->getPresetFolder());
        nameParameter = &plugin->getPresetNameParameter();
        nameParameter->addListener(this, false);
    }
    menu = new Vinta_ContextMenu(rect);
}

CPresetBrowser::~CPresetBrowser() {
    if (nameParameter) nameParameter->removeListener(this);
    for (CBitmap* b : {leftArrow, rightArrow, downArrow})
        if (b) b->forget();
    for (Category& category : categories) category.menu->forget();
    menu->forget();
}

void CPresetBrowser::draw(CDrawContext* context) {
    const std::pair<CBitmap*, const CRect*> arrows[] = {{leftArrow, &leftRect}, {rightArrow, &rightRect}, {downArrow, &downRect}};
    const bool pressed[] = {leftPressed, rightPressed, downPressed};
    for (int i = 0; i < 3; ++i)
        if (arrows[i].first)
            arrows[i].first->draw(context, *arrows[i].second, CPoint(0, pressed[i] ? 0 : arrows[i].second->getHeight()));
    setDirty(false);
}

bool CPresetBrowser::report(bool ok) {
    if (!ok && !presets.lastError().empty()) showMessage(getFrame(), "Preset", presets.lastError());
    return ok;
}

CPresetInterface::Done CPresetBrowser::reporter() {
    return [self = keepAlive(this)](bool ok) { self->report(ok); };
}

bool CPresetBrowser::loadAndShow(int index) {
    internalChange = true;
    const bool ok = presets.load(index);
    internalChange = false;
    setDirty(true);
    return report(ok);
}

int32_t CPresetBrowser::onMouseDown(const CPoint& where, CButtonState buttons) {
    const bool menuPress = (buttons & kRButton) || ((buttons & kLButton) && downRect.pointInside(where));
    if ((buttons & kLButton) && (leftRect.pointInside(where) || rightRect.pointInside(where))) {
        const bool left = leftRect.pointInside(where);
        (left ? leftPressed : rightPressed) = true;
        internalChange = true;
        const bool ok = presets.step(left ? -1 : +1);
        internalChange = false;
        // An empty folder leaves the arrows doing nothing, without a message.
        if (presets.count() > 0) report(ok);
        setDirty(true);
        return kMouseEventHandled;
    }
    if (!menuPress) return kMouseEventNotHandled;
    downPressed = true;
    setDirty(true);
    CFrame* owner = getFrame();
    if (!owner) return kMouseEventHandledNoCapture;
    buildMenu();
    owner->addView(menu);
    menu->remember();
    // The choice comes after the host's loop has turned; the editor closing drops it.
    const bool shown = menu->popup([self = keepAlive(this), owner](const COptionMenuResult& result) {
        owner->removeView(self->menu, true);
        self->downPressed = false;
        if (result.menu) self->choose(result.menu, result.index);
        self->setDirty(true);
    });
    if (!shown) {
        owner->removeView(menu, true);
        downPressed = false;
    }
    return kMouseEventHandledNoCapture;
}

int32_t CPresetBrowser::onMouseUp(const CPoint&, CButtonState) {
    leftPressed = rightPressed = downPressed = false;
    setDirty(true);
    return kMouseEventHandled;
}

COptionMenu* CPresetBrowser::buildMenu() {
    presets.scan();
    menu->removeAllEntry();
    for (Category& category : categories) category.menu->forget();
    categories.clear();
    mainRows.clear();
    menu->setViewSize(getViewSize());
    menu->setNbItemsPerColumn(32);
    const bool current = presets.getCurrentIndex() >= 0;
    const struct {
        const char* title;
        Action action;
        bool enabled;
    } fixed[] = {{"Save Preset", kSave, true},         {"Save Preset as..", kSaveAs, true}, {"-", kNone, true},
                 {"Delete Preset", kDelete, current}, {"Rename Preset", kRename, current}, {"-", kNone, true},
                 {"Go to Preset folder", kOpenFolder, true}, {"Restore Factory Presets", kRestore, true},
                 {"-", kNone, true}};
    for (const auto& row : fixed) {
        if (row.action == kNone)
            menu->addSeparator();
        else
            menu->addEntry(row.title, -1, row.enabled ? 0u : static_cast<uint32_t>(CMenuItem::kDisabled));
        mainRows.push_back({row.action, -1});
    }
    char title[300];
    for (int i = 0; i < presets.count(); ++i) {
        const PresetEntry* e = presets.entry(i);
        if (e->category.empty()) continue;
        auto found = std::find_if(categories.begin(), categories.end(), [&](const Category& c) { return c.name == e->category; });
        if (found == categories.end()) {
            categories.push_back({e->category, new COptionMenu(getViewSize()), {}});
            found = categories.end() - 1;
        }
        if (static_cast<int>(found->indices.size()) >= kMaxPerCategory) continue;
        std::snprintf(title, sizeof title, "%i - %s", static_cast<int>(found->indices.size()) + 1, e->name.c_str());
        CMenuItem* item = found->menu->addEntry(title);
        if (item && i == presets.getCurrentIndex()) item->setChecked(true);
        found->indices.push_back(i);
    }
    for (Category& category : categories) {
        const bool holdsCurrent = std::find(category.indices.begin(), category.indices.end(), presets.getCurrentIndex()) !=
                                  category.indices.end();
        CMenuItem* item = menu->addEntry(new CMenuItem(category.name.c_str(), -1, 0, nullptr, category.menu));
        if (item && holdsCurrent) item->setChecked(true);
        mainRows.push_back({kNone, -1});
    }
    int number = 0;
    for (int i = 0; i < presets.count(); ++i) {
        const PresetEntry* e = presets.entry(i);
        if (!e->category.empty()) continue;
        std::snprintf(title, sizeof title, "%i - %s", ++number, e->name.c_str());
        CMenuItem* item = menu->addEntry(title);
        if (item && i == presets.getCurrentIndex()) item->setChecked(true);
        mainRows.push_back({kPreset, i});
    }
    return menu;
}

void CPresetBrowser::choose(COptionMenu* chosen, int32_t row) {
    for (const Category& category : categories)
        if (category.menu == chosen) {
            if (row >= 0 && row < static_cast<int32_t>(category.indices.size()))
                loadAndShow(category.indices[static_cast<size_t>(row)]);
            return;
        }
    if (chosen != menu || row < 0 || row >= static_cast<int32_t>(mainRows.size())) return;
    const auto [action, index] = mainRows[static_cast<size_t>(row)];
    switch (action) {
        case kSave:
            presets.saveCurrent(reporter());
            break;
        case kSaveAs:
            saveAs();
            break;
        case kDelete:
            presets.remove(presets.getCurrentIndex(), reporter());
            break;
        case kRename:
            if (nameBox) {
                const CRect box = nameBox->getViewSize();
                nameBox->onMouseDown(CPoint(box.left + 2, box.top + 2), kLButton | kDoubleClick);
                renaming = true;
            }
            break;
        case kOpenFolder:
            if (!Core::openWithShell(presets.getFolder()))
                showMessage(getFrame(), "Preset", "The preset folder could not be opened:\n" + presets.getFolder());
            break;
        case kRestore:
            presets.restoreFactoryPresets([self = keepAlive(this)](int written) { self->report(written >= 0); });
            break;
        case kPreset:
            loadAndShow(index);
            break;
        case kNone:
            break;
    }
}

void CPresetBrowser::saveAs() {
    CFileSelector selector(getFrame());
    selector.setTitle("Save Preset as...");
    selector.setInitialPath(presets.getFolder().c_str());
    selector.setDefaultExtension(Ondra::presetFormatFXP().getExtension());
    selector.addFileType("Zonfra preset", "fxp");
    selector.run(CFileSelector::kSaveFile, [self = keepAlive(this)](const std::vector<std::string>& paths) {
        if (paths.empty()) return;
        self->internalChange = true;
        self->presets.saveAs(paths.front(), self->reporter());
        self->internalChange = false;
        self->setDirty(true);
    });
}

bool CPresetBrowser::onDrop(CDragContainer* drag, const CPoint&) {
    if (!drag) return false;
    for (int32_t i = 0; i < drag->getCount(); ++i) {
        int32_t type = CDragContainer::kError;
        const char* item = drag->getItem(i, type);
        if (type != CDragContainer::kFile || !item) continue;
        const std::string path = item;
        const std::string extension = Ondra::presetFormatFXP().getExtension();
        if (!path.ends_with(extension)) continue;  // other files are not ours to take
        presets.setCurrentByName(path);
        if (presets.getCurrentIndex() < 0) {
            // A file from outside the folder loads the same way, without becoming current.
            CPresetInterface outside(plugin);
            outside.setFolder(path.substr(0, path.find_last_of('/') + 1));
            outside.setCurrentByName(path);
            internalChange = true;
            const bool ok = outside.load(outside.getCurrentIndex());
            internalChange = false;
            if (!ok) showMessage(getFrame(), "Preset", outside.lastError());
            return ok;
        }
        return loadAndShow(presets.getCurrentIndex());
    }
    return false;
}

void CPresetBrowser::parameterChanged(Ondra::IPluginParameter* changed) {
    if (!changed || changed != nameParameter) {
        CControl::parameterChanged(changed);
        return;
    }
    // Any name the browser sets itself ends a rename that was never typed.
    if (internalChange) {
        renaming = false;
        return;
    }
    const int previous = presets.getCurrentIndex();
    const std::string typed = plugin ? plugin->getPresetName() : "";
    if (renaming) {
        renaming = false;
        // Rename needs the preset that was current before the edit.
        if (previous >= 0) {
            internalChange = true;
            presets.rename(typed, reporter());
            internalChange = false;
        }
        setDirty(true);
        return;
    }
    // A typed name marks the preset as edited: nothing is current any more.
    presets.setCurrentByName("");
    setDirty(true);
}

}  // namespace ZonfraPresets
