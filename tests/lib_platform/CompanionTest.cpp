#include "lib_platform/PlatformTestSupport.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

#include "lib/controls/CMenuItem.h"
#include "lib/controls/COptionMenu.h"
#include "lib/controls/Vinta_TextEdit.h"
#include "lib/platform-x11/CFileSelector.h"
#include "lib/platform-x11/CMessageBox.h"
#include "lib/platform-x11/ChooserProcess.h"

namespace PlatformTest {
namespace {

using namespace Vinta;

int overrideRedirectWindows(Display* display) {
    Window root = 0, parent = 0, *children = nullptr;
    unsigned int count = 0, shown = 0;
    XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
    for (unsigned int index = 0; index < count; ++index) {
        XWindowAttributes attributes{};
        if (XGetWindowAttributes(display, children[index], &attributes) && attributes.override_redirect &&
            attributes.map_state == IsViewable)
            ++shown;
    }
    if (children) XFree(children);
    return static_cast<int>(shown);
}

struct EditCase {
    const char* typed;
    unsigned long extraKeysym;  // a symbol the keyboard lacks, put on a spare key first (0: none)
    unsigned long endKey;
    const char* expected;
};

class TextEditTest : public HostWindowTest, public ::testing::WithParamInterface<EditCase> {};

TEST_P(TextEditTest, ReturnTakesTheTextAndEscapeGivesTheOldOneBack) {
    Panel panel = open(1.5, EventDriver::OwnThread);
    ASSERT_NE(panel.frame, nullptr);
    Vinta_TextEdit::CInfo info;
    info.rect = CRect(20, 120, 200, 150);
    info.dragEditable = false;
    auto* edit = new Vinta_TextEdit(info);
    edit->setText("start");
    panel.frame->addView(edit);
    // The new layout reaches the editor ahead of the clicks that open the field.
    if (KeySym extra = GetParam().extraKeysym) {
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
    doubleClick(panel, 150, 200);  // a double click opens the field
    ASSERT_TRUE(waitFor([&] { return edit->isEditing(); }));
    type(GetParam().typed);
    if (KeySym extra = GetParam().extraKeysym) key(extra);
    key(GetParam().endKey);
    ASSERT_TRUE(waitFor([&] { return !edit->isEditing(); }));
    EXPECT_STREQ(edit->getText(), GetParam().expected);
    close(panel);
}

INSTANTIATE_TEST_SUITE_P(Ends, TextEditTest,
                         ::testing::Values(EditCase{"abc", 0, XK_Return, "abc"}, EditCase{"zz", 0, XK_Escape, "start"},
                                           EditCase{"ab", XK_udiaeresis, XK_Return, "ab\xc3\xbc"}));

TEST_F(HostWindowTest, TextEditTakesTheTextOnAClickElsewhereOrATabToTheNextField) {
    Panel panel = open(1.0, EventDriver::OwnThread);
    ASSERT_NE(panel.frame, nullptr);
    Vinta_TextEdit* edits[2];
    for (int index = 0; index < 2; ++index) {
        Vinta_TextEdit::CInfo info;
        info.rect = CRect(20, 120 + index * 40, 200, 150 + index * 40);
        info.dragEditable = false;
        panel.frame->addView(edits[index] = new Vinta_TextEdit(info));
    }
    doubleClick(panel, 100, 135);
    ASSERT_TRUE(waitFor([&] { return edits[0]->isEditing(); }));
    type("k9");
    key(XK_Tab);
    ASSERT_TRUE(waitFor([&] { return edits[1]->isEditing(); }));
    EXPECT_STREQ(edits[0]->getText(), "k9");
    type("7");
    click(panel, 250, 20);
    ASSERT_TRUE(waitFor([&] { return !edits[1]->isEditing(); }));
    EXPECT_STREQ(edits[1]->getText(), "7");
    close(panel);
}

TEST_F(HostWindowTest, OptionMenuNavigatesIntoASubMenuAndPicks) {
    Panel panel = open(1.0, EventDriver::OwnThread);
    ASSERT_NE(panel.frame, nullptr);
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
    click(panel, 240, 30);
    ASSERT_TRUE(waitFor([&] { return overrideRedirectWindows(display) == 1; }));
    for (unsigned long step : {XK_Down, XK_Down, XK_Right}) key(step);  // separator and disabled row are skipped
    ASSERT_TRUE(waitFor([&] { return overrideRedirectWindows(display) == 2; }));
    key(XK_Down);
    key(XK_Return);
    ASSERT_TRUE(waitFor([&] { return overrideRedirectWindows(display) == 0; }));
    EXPECT_TRUE(waitFor([&] { return sub->getCurrent() == 1; }));
    close(panel);
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
            Display* own = XOpenDisplay(nullptr);
            XTestFakeKeyEvent(own, XKeysymToKeycode(own, XK_Escape), True, CurrentTime);
            XTestFakeKeyEvent(own, XKeysymToKeycode(own, XK_Escape), False, CurrentTime);
            XCloseDisplay(own);
        });
        click(panel, 240, 30);
        const bool up = waitFor([&] {
            panel.platform->pump();  // the host's loop: each turn comes back
            return overrideRedirectWindows(display) == 1;
        });
        EXPECT_TRUE(up);
        if (closeWhileUp) {
            close(panel);  // the menu goes with the editor, and no choice is delivered
            EXPECT_TRUE(waitFor([&] { return overrideRedirectWindows(display) == 0; }));
        } else {
            key(XK_Down);
            key(XK_Return);
            EXPECT_TRUE(waitFor([&] {
                panel.platform->pump();
                return menu->getCurrent() == 0;
            }));
            close(panel);
        }
        over = true;
        watchdog.join();
    }
}

TEST_F(HostWindowTest, FilesDroppedFromAnotherClientReachTheViewUnderThePointer) {
    Panel panel = open(1.0, EventDriver::OwnThread);
    ASSERT_NE(panel.frame, nullptr);
    const auto atom = [&](const char* name) { return XInternAtom(display, name, False); };
    const Window source = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 10, 10, 0, 0, 0);
    XSetSelectionOwner(display, atom("XdndSelection"), source, CurrentTime);
    const Window target = panel.platform->getWindow();
    const auto send = [&](const char* type, long l1, long l2, long l3) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = target;
        event.xclient.message_type = atom(type);
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(source);
        event.xclient.data.l[1] = l1;
        event.xclient.data.l[2] = l2;
        event.xclient.data.l[3] = l3;
        XSendEvent(display, target, False, NoEventMask, &event);
        XFlush(display);
    };
    double left = 0.0, top = 0.0;
    panel.platform->getScreenPosition(left, top);
    send("XdndEnter", 5L << 24, static_cast<long>(atom("text/uri-list")), 0);
    send("XdndPosition", 0, (static_cast<long>(left + 140) << 16) | static_cast<long>(top + 60), CurrentTime);
    send("XdndDrop", 0, CurrentTime, 0);
    const std::string list = "file:///tmp/a%20b.wav\r\nfile://localhost/tmp/c.fxp\r\n";
    bool finished = false, accepted = false;
    waitFor([&] {
        while (XPending(display)) {
            XEvent event;
            XNextEvent(display, &event);
            if (event.type == SelectionRequest) {
                const XSelectionRequestEvent& request = event.xselectionrequest;
                XChangeProperty(display, request.requestor, request.property, request.target, 8, PropModeReplace,
                                reinterpret_cast<const unsigned char*>(list.data()), static_cast<int>(list.size()));
                XEvent reply{};
                reply.xselection = {SelectionNotify, 0, True, display, request.requestor, request.selection,
                                    request.target, request.property, request.time};
                XSendEvent(display, request.requestor, False, NoEventMask, &reply);
                XFlush(display);
            } else if (event.type == ClientMessage && event.xclient.message_type == atom("XdndFinished")) {
                finished = true;
                accepted = event.xclient.data.l[1] & 1;
            }
        }
        return finished;
    });
    EXPECT_TRUE(accepted);
    EXPECT_EQ(recordedDrops(), (std::vector<std::string>{"/tmp/a b.wav", "/tmp/c.fxp"}));
    XDestroyWindow(display, source);
    close(panel);
}

// A stub zenity on PATH that records its arguments and pid, then waits until the test leaves its
// answer: a path, or an empty file for a cancel.
class ChooserStub : public HostWindowTest {
protected:
    void SetUp() override {
        HostWindowTest::SetUp();
        ASSERT_NE(mkdtemp(folder), nullptr);
        stub = std::string(folder) + "/zenity";
        std::ofstream(stub) << "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$0.args\"\necho $$ > \"$0.pid\"\n"
                            << "while [ ! -e \"$0.answer\" ]; do sleep 0.02; done\ncat \"$0.answer\"\n"
                            << "[ -s \"$0.answer\" ]\n";
        chmod(stub.c_str(), 0755);
        oldPath = std::getenv("PATH");
        setenv("PATH", (std::string(folder) + ":/usr/bin:/bin").c_str(), 1);
        unsetenv("KDE_FULL_SESSION");
        setenv("XDG_CURRENT_DESKTOP", "GNOME", 1);
    }
    void TearDown() override {
        setenv("PATH", oldPath.c_str(), 1);
        std::system((std::string("rm -rf ") + folder).c_str());
        HostWindowTest::TearDown();
    }
    void answer(const std::string& text) {
        std::ofstream(stub + ".part") << text;
        std::rename((stub + ".part").c_str(), (stub + ".answer").c_str());
    }
    std::string read(const char* suffix) {
        std::stringstream content;
        content << std::ifstream(stub + suffix).rdbuf();
        return content.str();
    }
    // The host's loop: pumps the frame until `done`; false after five seconds.
    bool pumpUntil(Panel& panel, const std::function<bool()>& done) {
        return waitFor([&] {
            panel.platform->pump();
            return done();
        });
    }

    char folder[32] = "/tmp/zonfra-chooser-XXXXXX";
    std::string stub, oldPath;
};

struct ChooserCase {
    int32_t mode;
    const char* answer;  // empty: the user cancels; null: the editor closes while the chooser is up
    const char* expectedArgument;
};

class FileChooserTest : public ChooserStub, public ::testing::WithParamInterface<ChooserCase> {};

TEST_P(FileChooserTest, ReturnsAtOnceAndTheAnswerArrivesThroughTheHostsLoop) {
    const ChooserCase& c = GetParam();
    Panel panel = open(1.0, EventDriver::HostIdle);
    ASSERT_NE(panel.frame, nullptr);
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
    ASSERT_TRUE(pumpUntil(panel, [&] { return !read(".pid").empty(); }));
    const uint64_t paintsBefore = panel.platform->getPaintCount();
    for (int turn = 0; turn < 10; ++turn) {
        panel.knob->setValue((turn + 1) / 10.0f);
        panel.knob->setDirty(true);
        pumpUntil(panel, [&] { return panel.platform->getPaintCount() > paintsBefore + turn; });
    }
    EXPECT_GE(panel.platform->getPaintCount(), paintsBefore + 10);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(Vinta::X11::ChooserProcess::runningFor(*panel.platform), 1);
    EXPECT_NE(read(".args").find("--file-selection\n--title=Load\n"), std::string::npos) << read(".args");
    EXPECT_NE(read(".args").find(c.expectedArgument), std::string::npos) << read(".args");
    const pid_t child = std::stoi(read(".pid"));
    if (!c.answer) {
        close(panel);  // the chooser goes with the editor, and nothing is called back
        EXPECT_TRUE(kill(child, 0) != 0 && errno == ESRCH);
        EXPECT_EQ(calls, 0);
        return;
    }
    answer(*c.answer ? std::string(c.answer) + "\n" : "");
    ASSERT_TRUE(pumpUntil(panel, [&] { return calls > 0; }));
    EXPECT_EQ(paths, *c.answer ? std::vector<std::string>{c.answer} : std::vector<std::string>{});
    EXPECT_EQ(Vinta::X11::ChooserProcess::runningFor(*panel.platform), 0);
    close(panel);
    EXPECT_EQ(calls, 1);
}

TEST_F(ChooserStub, AHostThatIgnoresItsChildrenStillGetsTheAnswer) {
    Panel panel = open(1.0, EventDriver::HostIdle);
    ASSERT_NE(panel.frame, nullptr);
    const auto before = signal(SIGCHLD, SIG_IGN);  // children are reaped by the system
    std::vector<std::string> paths;
    CFileSelector selector(panel.frame);
    ASSERT_TRUE(selector.run(CFileSelector::kOpenFile, [&](const std::vector<std::string>& chosen) { paths = chosen; }));
    answer("/tmp/y.fxp\n");
    EXPECT_TRUE(pumpUntil(panel, [&] { return !paths.empty(); }));
    EXPECT_EQ(paths, std::vector<std::string>{"/tmp/y.fxp"});
    signal(SIGCHLD, before);
    close(panel);
}

TEST_F(ChooserStub, WithoutAChooserProgramAPathFieldInTheEditorTakesTheAnswer) {
    setenv("PATH", "/nonexistent", 1);
    Panel panel = open(1.0, EventDriver::HostIdle);
    ASSERT_NE(panel.frame, nullptr);
    std::vector<std::string> paths{"untouched"};
    CFileSelector selector(panel.frame);
    selector.setInitialPath("/tmp/");
    ASSERT_TRUE(selector.run(CFileSelector::kSaveFile, [&](const std::vector<std::string>& chosen) { paths = chosen; }));
    ASSERT_TRUE(pumpUntil(panel, [&] {
        Window focus = 0;
        int revert = 0;
        XGetInputFocus(display, &focus, &revert);
        return focus != panel.platform->getWindow() && focus > PointerRoot;
    }));
    key(XK_End);
    type("p");
    key(XK_Return);
    EXPECT_TRUE(pumpUntil(panel, [&] { return paths.size() != 1 || paths[0] != "untouched"; }));
    EXPECT_EQ(paths, std::vector<std::string>{"/tmp/p"});
    close(panel);
}

INSTANTIATE_TEST_SUITE_P(
    Modes, FileChooserTest,
    ::testing::Values(ChooserCase{CFileSelector::kOpenFile, "/tmp/x.fxp", "--file-filter=Presets | *.fxp *.zonfraPreset\n"},
                      ChooserCase{CFileSelector::kSaveFile, "/tmp/new.fxp", "--save\n"},
                      ChooserCase{CFileSelector::kChooseFolder, "", "--directory\n"},
                      ChooserCase{CFileSelector::kSaveFile, nullptr, "--save\n"}));

}  // namespace
}  // namespace PlatformTest

namespace PlatformTest {
namespace {

TEST_F(HostWindowTest, OptionMenuTallerThanTheScreenScrollsToTheRowTheKeysReach) {
    Panel panel = open(1.0, EventDriver::OwnThread);
    ASSERT_NE(panel.frame, nullptr);
    auto* menu = new Vinta::COptionMenu(Vinta::CRect(200, 20, 280, 40));
    for (int row = 0; row < 80; ++row) menu->addEntry(("Row " + std::to_string(row)).c_str());
    panel.frame->addView(menu);
    click(panel, 240, 30);
    ASSERT_TRUE(waitFor([&] { return overrideRedirectWindows(display) == 1; }));
    Window root = 0, parent = 0, *children = nullptr;
    unsigned int count = 0;
    XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
    XWindowAttributes shown{};
    Window popup = 0;
    for (unsigned int index = 0; index < count && !popup; ++index)
        if (XGetWindowAttributes(display, children[index], &shown) && shown.override_redirect &&
            shown.map_state == IsViewable)
            popup = children[index];
    if (children) XFree(children);
    EXPECT_EQ(shown.height, DisplayHeight(display, DefaultScreen(display)));
    key(XK_Up);  // from no row, up reaches the last one, below the screen's edge: the menu scrolls
    EXPECT_TRUE(waitFor([&] {
        XImage* bottom = XGetImage(display, popup, 0, shown.height - 10, 20, 1, AllPlanes, ZPixmap);
        const bool highlighted = bottom && XGetPixel(bottom, 10, 0) == 0x466eaa;
        if (bottom) XDestroyImage(bottom);
        return highlighted;
    }));
    key(XK_Return);
    ASSERT_TRUE(waitFor([&] { return overrideRedirectWindows(display) == 0; }));
    EXPECT_TRUE(waitFor([&] { return menu->getCurrent() == 79; }));
    close(panel);
}

}  // namespace
}  // namespace PlatformTest

namespace PlatformTest {
namespace {

struct MessageCase {
    unsigned long keysym;  // zero clicks the second button instead
    int32_t expected;
};

class MessageBoxTest : public HostWindowTest, public ::testing::WithParamInterface<MessageCase> {};

TEST_P(MessageBoxTest, TheModalLayerAnswersTheChosenButton) {
    Panel panel = open(1.5, EventDriver::HostIdle);
    ASSERT_NE(panel.frame, nullptr);
    int32_t chosen = -2;
    ASSERT_TRUE(Vinta::CMessageBox::show(panel.frame, "Error", "Error: Cannot create GL context", {"OK", "Cancel"},
                                         [&](int32_t button) { chosen = button; }));
    EXPECT_FALSE(Vinta::CMessageBox::show(panel.frame, "Second", "", {}, nullptr));  // one layer at a time
    const auto pumpUntil = [&](const std::function<bool()>& done) {
        return waitFor([&] {
            panel.platform->pump();
            return done();
        });
    };
    const Vinta::CRect second = static_cast<Vinta::CMessageBox*>(panel.frame->getModalView())->getButtonRect(1);
    const Vinta::CPoint target = second.getCenter();
    click(panel, static_cast<int>(target.x * 1.5), static_cast<int>((GetParam().keysym ? 20 : target.y) * 1.5));
    if (GetParam().keysym) {
        ASSERT_TRUE(pumpUntil([&] {
            Window focus = 0;
            int revert = 0;
            XGetInputFocus(display, &focus, &revert);
            return focus == panel.platform->getWindow();
        }));
        EXPECT_EQ(chosen, -2);  // a click beside the buttons chooses nothing
        key(GetParam().keysym);
    }
    EXPECT_TRUE(pumpUntil([&] { return chosen != -2; }));
    EXPECT_EQ(chosen, GetParam().expected);
    EXPECT_EQ(panel.frame->getModalView(), nullptr);
    close(panel);
}

INSTANTIATE_TEST_SUITE_P(Answers, MessageBoxTest,
                         ::testing::Values(MessageCase{0, 1}, MessageCase{XK_Return, 0}, MessageCase{XK_Escape, 1}));

}  // namespace
}  // namespace PlatformTest
