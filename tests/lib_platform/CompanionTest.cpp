#include "lib_platform/PlatformTestSupport.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <signal.h>

#include <atomic>
#include <cerrno>

#include "lib/controls/CMenuItem.h"
#include "lib/controls/COptionMenu.h"
#include "lib/controls/Vinta_TextEdit.h"
#include "lib/platform-x11/CFileSelector.h"
#include "lib/platform-x11/CMessageBox.h"
#include "lib/platform-x11/ChooserProcess.h"

namespace PlatformTest {
namespace {

using namespace Vinta;

Vinta_TextEdit* addEdit(const Panel& panel, const CRect& rect) {
    Vinta_TextEdit::CInfo info;
    info.rect = rect;
    info.dragEditable = false;
    auto* edit = new Vinta_TextEdit(info);
    panel.frame->addView(edit);
    return edit;
}

struct EditCase {
    const char* typed;
    unsigned long extraKeysym;  // a symbol the keyboard lacks, put on a spare key first (0: none)
    const char* endKey;         // null: a click elsewhere
    const char* expected;
};

class TextEditTest : public WithPanel<EventDriver::OwnThread, 150>,
                     public ::testing::WithParamInterface<EditCase> {};

TEST_P(TextEditTest, ReturnTabOrAClickElsewhereTakesTheTextAndEscapeGivesTheOldOneBack) {
    const EditCase& c = GetParam();
    Vinta_TextEdit* edits[] = {addEdit(panel, CRect(20, 120, 200, 150)), addEdit(panel, CRect(20, 160, 200, 190))};
    edits[0]->setText("start");
    // The new layout reaches the editor ahead of the clicks that open the field.
    if (KeySym extra = c.extraKeysym) {
        int low = 0, high = 0, perCode = 0;
        XDisplayKeycodes(display, &low, &high);
        KeySym* map = XGetKeyboardMapping(display, static_cast<KeyCode>(low), high - low + 1, &perCode);
        int spare = high;
        while (spare > low && map[(spare - low) * perCode] != NoSymbol) --spare;
        XFree(map);
        ASSERT_GT(spare, low);
        XChangeKeyboardMapping(display, spare, 1, &extra, 1);
        XSync(display, False);
    }
    send(Kind::DoubleClick, 150, 200);  // a double click opens the field
    ASSERT_TRUE(waitFor([&] { return edits[0]->isEditing(); }));
    type(c.typed);
    if (c.extraKeysym) key(XKeysymToString(c.extraKeysym));
    c.endKey ? key(c.endKey) : send(Kind::Click, 375, 30);
    ASSERT_TRUE(waitFor([&] { return !edits[0]->isEditing(); }));
    EXPECT_STREQ(edits[0]->getText(), c.expected);
    if (c.endKey && std::string(c.endKey) == "Tab") {  // on to the next field, taken by a click elsewhere
        ASSERT_TRUE(waitFor([&] { return edits[1]->isEditing(); }));
        send(Kind::Click, 375, 30);
        EXPECT_TRUE(waitFor([&] { return !edits[1]->isEditing(); }));
    }
}

INSTANTIATE_TEST_SUITE_P(Ends, TextEditTest,
                         ::testing::Values(EditCase{"abc", 0, "Return", "abc"}, EditCase{"zz", 0, "Escape", "start"},
                                           EditCase{"ab", XK_udiaeresis, "Return", "ab\xc3\xbc"},
                                           EditCase{"k9", 0, "Tab", "k9"}, EditCase{"7", 0, nullptr, "7"}));

TEST_F(OwnThreadPanel, OptionMenuNavigatesIntoASubMenuAndPicks) {
    auto* menu = new COptionMenu(CRect(200, 20, 280, 40));
    auto* sub = new COptionMenu(CRect(0, 0, 10, 10));
    sub->addEntry("Sub A");
    sub->addEntry("Sub B");
    menu->addEntry("One");
    menu->addSeparator();
    menu->addEntry("Disabled", -1, CMenuItem::kDisabled);
    menu->addEntry(new CMenuItem("More", -1, 0, nullptr, sub));
    sub->forget();
    panel.frame->addView(menu);
    send(Kind::Click, 240, 30);
    ASSERT_TRUE(waitFor([&] { return popups(display).size() == 1; }));
    for (const char* step : {"Down", "Down", "Right"}) key(step);  // separator and disabled row are skipped
    ASSERT_TRUE(waitFor([&] { return popups(display).size() == 2; }));
    key("Down");
    key("Return");
    ASSERT_TRUE(waitFor([&] { return popups(display).empty(); }));
    EXPECT_TRUE(waitFor([&] { return sub->getCurrent() == 1; }));
}

TEST_F(OwnThreadPanel, OptionMenuTallerThanTheScreenScrollsToTheRowTheKeysReach) {
    auto* menu = new COptionMenu(CRect(200, 20, 280, 40));
    for (int row = 0; row < 80; ++row) menu->addEntry(("Row " + std::to_string(row)).c_str());
    panel.frame->addView(menu);
    send(Kind::Click, 240, 30);
    std::vector<Popup> shown;
    ASSERT_TRUE(waitFor([&] { return (shown = popups(display)).size() == 1; }));
    const int height = shown[0].shape.height;
    EXPECT_EQ(height, DisplayHeight(display, DefaultScreen(display)));
    key("Up");  // from no row, up reaches the last one, below the screen's edge: the menu scrolls
    EXPECT_TRUE(waitFor([&] {
        XImage* bottom = XGetImage(display, shown[0].window, 0, height - 10, 20, 1, AllPlanes, ZPixmap);
        const bool highlighted = bottom && XGetPixel(bottom, 10, 0) == 0x466eaa;
        if (bottom) XDestroyImage(bottom);
        return highlighted;
    }));
    key("Return");
    ASSERT_TRUE(waitFor([&] { return popups(display).empty(); }));
    EXPECT_TRUE(waitFor([&] { return menu->getCurrent() == 79; }));
}

TEST_F(HostWindowTest, AnOpenMenuLeavesTheHostsLoopFreeAndGoesWithTheEditor) {
    for (const bool closeWhileUp : {false, true}) {
        Panel panel = open(1.0, EventDriver::HostIdle);
        ASSERT_NE(panel.frame, nullptr);
        auto* menu = new COptionMenu(CRect(200, 20, 280, 40));
        menu->addEntry("One");
        menu->addEntry("Two");
        panel.frame->addView(menu);
        // Should the click's handler wait for the menu, an Escape ends the wait, and the checks fail.
        std::atomic<bool> over{false};
        std::thread watchdog([&over] {
            if (waitFor([&] { return over.load(); }, 3000)) return;
            EditorHost::InputScript(0).send({Kind::Key, 0, 0, "Escape"});
        });
        send(Kind::Click, 240, 30);
        EXPECT_TRUE(pumpUntil(panel, [&] { return popups(display).size() == 1; }));  // each turn comes back
        if (closeWhileUp) {
            close(panel);  // the menu goes with the editor, and no choice is delivered
            EXPECT_TRUE(waitFor([&] { return popups(display).empty(); }));
        } else {
            key("Down");
            key("Return");
            EXPECT_TRUE(pumpUntil(panel, [&] { return menu->getCurrent() == 0; }));
            close(panel);
        }
        over = true;
        watchdog.join();
    }
}

TEST_F(OwnThreadPanel, FilesDroppedFromAnotherClientReachTheViewUnderThePointer) {
    double left = 0.0, top = 0.0;
    panel.platform->getScreenPosition(left, top);
    EXPECT_TRUE(dropFiles(display, panel.platform->getWindow(), static_cast<int>(left) + 140,
                          static_cast<int>(top) + 60, "file:///tmp/a%20b.wav\r\nfile://localhost/tmp/c.fxp\r\n"));
    EXPECT_EQ(recordedDrops, (std::vector<std::string>{"/tmp/a b.wav", "/tmp/c.fxp"}));
}

struct ChooserTest : HostIdlePanel {
    ChooserStub stub;
};

struct ChooserCase {
    int32_t mode;
    const char* answer;  // empty: the user cancels; null: the editor closes while the chooser is up
    const char* expectedArgument;
    bool reapedBySystem;  // a host that ignores its children
};

class FileChooserTest : public ChooserTest, public ::testing::WithParamInterface<ChooserCase> {};

TEST_P(FileChooserTest, ReturnsAtOnceAndTheAnswerArrivesThroughTheHostsLoop) {
    const ChooserCase& c = GetParam();
    const auto before = signal(SIGCHLD, c.reapedBySystem ? SIG_IGN : SIG_DFL);
    std::vector<std::string> paths;
    int calls = 0;
    {
        CFileSelector selector(panel.frame);
        selector.setTitle("Load");
        selector.setInitialPath("/tmp");
        selector.addFileType("Presets", "fxp;zonfraPreset");
        ASSERT_TRUE(selector.run(c.mode, [&](const std::vector<std::string>& chosen) {
            paths = chosen;
            ++calls;
        }));
    }
    // The chooser is up and the host's loop turns: the editor repaints as its knob moves.
    ASSERT_TRUE(pumpUntil(panel, [&] { return stub.pid() > 0; }));
    const uint64_t paintsBefore = panel.platform->getPaintCount();
    panel.knob->setValue(0.5f);
    panel.knob->setDirty(true);
    EXPECT_TRUE(pumpUntil(panel, [&] { return panel.platform->getPaintCount() > paintsBefore; }));
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(X11::ChooserProcess::runningFor(*panel.platform), 1);
    const std::string arguments = stub.read(".args");
    for (const char* expected : {"--file-selection\n--title=Load\n", c.expectedArgument})
        EXPECT_NE(arguments.find(expected), std::string::npos) << arguments;
    const pid_t child = stub.pid();
    if (!c.answer) {
        close(panel);  // the chooser goes with the editor, and nothing is called back
        EXPECT_TRUE(kill(child, 0) != 0 && errno == ESRCH);
        EXPECT_EQ(calls, 0);
    } else {
        stub.answer(*c.answer ? std::string(c.answer) + "\n" : "");
        ASSERT_TRUE(pumpUntil(panel, [&] { return calls > 0; }));
        EXPECT_EQ(paths, *c.answer ? std::vector<std::string>{c.answer} : std::vector<std::string>{});
        EXPECT_EQ(X11::ChooserProcess::runningFor(*panel.platform), 0);
        close(panel);
        EXPECT_EQ(calls, 1);
    }
    signal(SIGCHLD, before);
}

INSTANTIATE_TEST_SUITE_P(
    Modes, FileChooserTest,
    ::testing::Values(
        ChooserCase{CFileSelector::kOpenFile, "/tmp/x.fxp", "--file-filter=Presets | *.fxp *.zonfraPreset\n", false},
        ChooserCase{CFileSelector::kSaveFile, "/tmp/new.fxp", "--save\n", false},
        ChooserCase{CFileSelector::kChooseFolder, "", "--directory\n", false},
        ChooserCase{CFileSelector::kSaveFile, nullptr, "--save\n", false},
        ChooserCase{CFileSelector::kOpenFile, "/tmp/y.fxp", "--file-selection\n", true}));

TEST_F(ChooserTest, WithoutAChooserProgramAPathFieldInTheEditorTakesTheAnswer) {
    setenv("PATH", "/nonexistent", 1);
    std::vector<std::string> paths{"untouched"};
    CFileSelector selector(panel.frame);
    selector.setInitialPath("/tmp/");
    ASSERT_TRUE(selector.run(CFileSelector::kSaveFile, [&](const auto& chosen) { paths = chosen; }));
    ASSERT_TRUE(pumpUntil(panel, [&] {
        const Window focus = inputFocus(display);
        return focus != panel.platform->getWindow() && focus > PointerRoot;
    }));
    EXPECT_NE(panel.frame->getModalView(), nullptr) << "the field stands over a prompt";
    key("End");
    type("p");
    key("Return");
    EXPECT_TRUE(pumpUntil(panel, [&] { return paths.size() != 1 || paths[0] != "untouched"; }));
    EXPECT_EQ(paths, std::vector<std::string>{"/tmp/p"});
    EXPECT_EQ(panel.frame->getModalView(), nullptr) << "the prompt goes with the field";
}

struct MessageCase {
    const char* key;  // null clicks the second button instead
    int32_t expected;
};

class MessageBoxTest : public WithPanel<EventDriver::HostIdle, 150>,
                       public ::testing::WithParamInterface<MessageCase> {};

TEST_P(MessageBoxTest, TheModalLayerAnswersTheChosenButton) {
    int32_t chosen = -2;
    ASSERT_TRUE(CMessageBox::show(panel.frame, "Error", "Error: Cannot create GL context", {"OK", "Cancel"},
                                  [&](int32_t button) { chosen = button; }));
    EXPECT_FALSE(CMessageBox::show(panel.frame, "Second", "", {}, nullptr));  // one layer at a time
    const CPoint target = static_cast<CMessageBox*>(panel.frame->getModalView())->getButtonRect(1).getCenter();
    send(Kind::Click, static_cast<int>(target.x * 1.5), static_cast<int>((GetParam().key ? 20 : target.y) * 1.5));
    if (GetParam().key) {
        ASSERT_TRUE(pumpUntil(panel, [&] { return hasFocus(panel); }));
        EXPECT_EQ(chosen, -2);  // a click beside the buttons chooses nothing
        key(GetParam().key);
    }
    EXPECT_TRUE(pumpUntil(panel, [&] { return chosen != -2; }));
    EXPECT_EQ(chosen, GetParam().expected);
    EXPECT_EQ(panel.frame->getModalView(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Answers, MessageBoxTest,
                         ::testing::Values(MessageCase{nullptr, 1}, MessageCase{"Return", 0},
                                           MessageCase{"Escape", 1}));

}  // namespace
}  // namespace PlatformTest
