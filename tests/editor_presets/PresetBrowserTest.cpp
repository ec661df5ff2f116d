// The browser's menu over a real folder: fixed rows, categories as sub-menus, a choice in a
// sub-menu loads, a typed name leaves no preset current.
#include "editor/presets/CPresetBrowser.h"
#include "editor_presets/PresetFolderFixture.h"
#include "lib/controls/CMenuItem.h"
#include "lib/controls/COptionMenu.h"

TEST_F(PresetFolder, BrowserMenuRowsSubMenusAndChoosing) {
    saveWithCutoff((folder / "Bass/Deep").string(), 0.2f);
    saveWithCutoff("Top", 0.7f);
    effect.setPresetFolder(folder.string());
    auto* browser = new ZonfraPresets::CPresetBrowser(Vinta::CRect(0, 0, 40, 20), &effect, nullptr, nullptr, nullptr,
                                                      0, 4, nullptr);

    Vinta::COptionMenu* menu = browser->buildMenu();
    const char* rows[] = {"Save Preset", "Save Preset as..", "", "Delete Preset", "Rename Preset", "",
                          "Go to Preset folder", "Restore Factory Presets", "", "Bass", "1 - Top"};
    ASSERT_EQ(menu->getNbEntries(), 11);
    for (int i = 0; i < 11; ++i) EXPECT_STREQ(menu->getEntry(i)->getTitle(), rows[i]) << i;
    EXPECT_FALSE(menu->getEntry(3)->isEnabled() || menu->getEntry(4)->isEnabled());
    Vinta::COptionMenu* bass = menu->getEntry(9)->getSubmenu();
    ASSERT_TRUE(bass);
    EXPECT_STREQ(bass->getEntry(0)->getTitle(), "1 - Deep");

    browser->choose(bass, 0);
    EXPECT_NEAR(cutoff()->getNormalized(), 0.2f, 1e-4);
    EXPECT_STREQ(effect.getPresetName(), "Deep");
    menu = browser->buildMenu();
    EXPECT_TRUE(menu->getEntry(3)->isEnabled() && menu->getEntry(9)->isChecked());
    EXPECT_TRUE(menu->getEntry(9)->getSubmenu()->getEntry(0)->isChecked());

    browser->choose(menu, 10);
    EXPECT_NEAR(cutoff()->getNormalized(), 0.7f, 1e-4);
    effect.setProgramName("Typed");
    EXPECT_EQ(browser->getPresetInterface().getCurrentIndex(), -1);
    browser->forget();
}
