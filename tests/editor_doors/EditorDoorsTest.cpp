#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include "CORE/files/Settings.h"
#include "editor/pages/PageLayouts.h"
#include "lib_drawing/DrawingTestSupport.h"
#include "tools/editor-host/EditorDoor.h"
#include "tools/editor-host/HostWindow.h"

namespace {

using namespace EditorHost;
using DrawingTest::BitmapPtr;
using Vinta::CRect;

constexpr int kWidth = 534, kHeight = 488;
// The panel's gain dials, 87 units square from y 221: "Input Gain" at x 15, "Output Gain" at x 426.
constexpr double kKnobLefts[] = {15.0, 426.0}, kKnobTop = 221.0, kKnob = 87.0;
constexpr int kOutputGainColumn = 1;
constexpr int kKeyUp = 12, kKeyF1 = 40;  // VST virtual key codes

int entries(const char* folder) { return int(std::distance(std::filesystem::directory_iterator(folder), {})); }

CRect knobRect(int column, double scale) {
    const double left = kKnobLefts[column];
    return {left * scale, kKnobTop * scale, (left + kKnob) * scale, (kKnobTop + kKnob) * scale};
}

int distinctColours(const BitmapPtr& shot, const CRect& area) {
    std::set<uint32_t> colours;
    for (auto y = static_cast<uint32_t>(area.top); y < area.bottom && y < shot->getPixelHeight(); ++y)
        for (auto x = static_cast<uint32_t>(area.left); x < area.right && x < shot->getPixelWidth(); ++x) {
            const Vinta::CColor c = shot->getPixel(x, y);
            colours.insert(static_cast<uint32_t>(c.red) << 16 | static_cast<uint32_t>(c.green) << 8 | c.blue);
        }
    return static_cast<int>(colours.size());
}

double differingShare(const BitmapPtr& a, const BitmapPtr& b, const CRect& area) {
    int count = 0, all = 0;
    for (auto y = static_cast<uint32_t>(area.top); y < area.bottom; ++y)
        for (auto x = static_cast<uint32_t>(area.left); x < area.right; ++x, ++all)
            count += a->getPixel(x, y) == b->getPixel(x, y) ? 0 : 1;
    return all ? static_cast<double>(count) / all : 0.0;
}

// A fresh settings folder at a GUI scale of 100 %.
class Door : public ::testing::Test {
protected:
    void SetUp() override {
        if (!std::getenv("DISPLAY") || !std::getenv("ZONFRA_PLUGIN"))
            GTEST_SKIP() << "needs an X display (xvfb-run) and ZONFRA_PLUGIN";
        char pattern[] = "/tmp/zonfra-editor-doors-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        home = pattern;
        setenv("XDG_CONFIG_HOME", home.c_str(), 1);
        setScaleSetting(100);
    }
    void TearDown() override {
        unsetenv("ZONFRA_NO_GL");
        if (!home.empty()) std::filesystem::remove_all(home);
    }
    static void setScaleSetting(int percent) {
        Core::writeSetting(Core::makeKeyName("MORVANDEL", "zonfraQT"), "GuiScale", std::to_string(percent));
    }
    static std::unique_ptr<EditorDoor> load(const char* kind) {
        auto door = makeDoor(kind);
        EXPECT_TRUE(door && door->load(std::getenv("ZONFRA_PLUGIN"))) << (door ? door->error() : "no door");
        return door;
    }
    // A screenshot of an open editor shows the panel rather than an empty window, within a few
    // seconds on a busy machine.
    static void expectPainted(HostWindow& window, EditorDoor& door, double scale) {
        int colours = 0, knobColours = 0;
        for (int tries = 0; tries < 40 && (colours <= 16 || knobColours <= 4); ++tries) {
            window.run(door, 100);
            const BitmapPtr shot(window.capture());
            ASSERT_NE(shot, nullptr);
            colours = distinctColours(shot, {0, 0, shot->getWidth(), shot->getHeight()});
            knobColours = distinctColours(shot, knobRect(kOutputGainColumn, scale));
        }
        EXPECT_GT(colours, 16);
        EXPECT_GT(knobColours, 4) << "the knob is not drawn";
    }

    std::string home;
};

class EditorDoors : public Door, public ::testing::WithParamInterface<const char*> {};

// In GL at 100 %, in the software frame at 150 %.
TEST_P(EditorDoors, OpensAtItsScaledSizePaintsAndAHostChangeMovesTheKnobOnScreen) {
    for (const auto& [percent, software] : {std::pair{100, false}, std::pair{150, true}}) {
        SCOPED_TRACE(software ? "software frame at 150 %" : "GL frame at 100 %");
        setScaleSetting(percent);
        if (software) setenv("ZONFRA_NO_GL", "1", 1);
        const double scale = percent / 100.0;
        auto door = load(GetParam());
        int width = 0, height = 0;
        ASSERT_TRUE(door->getEditorSize(width, height));
        EXPECT_EQ(std::pair(width, height), std::pair(kWidth * percent / 100, kHeight * percent / 100));
        HostWindow window(width, height);
        ASSERT_TRUE(door->openEditor(window.getWindow())) << door->error();
        window.run(*door, 400);
        int childWidth = 0, childHeight = 0;
        ASSERT_TRUE(window.childSize(childWidth, childHeight));
        EXPECT_EQ(std::pair(childWidth, childHeight), std::pair(width, height));
        expectPainted(window, *door, scale);

        const BitmapPtr before(window.capture());
        door->setParameter(door->findParameter("Output Gain"), 0.0);
        const CRect knob = knobRect(kOutputGainColumn, scale);
        BitmapPtr after;
        for (int tries = 0; tries < 40 && (!after || differingShare(before, after, knob) < 0.006); ++tries) {
            window.run(*door, 100);
            after.reset(window.capture());
        }
        EXPECT_GE(differingShare(before, after, knob), 0.006) << "the knob did not move";
        EXPECT_EQ(differingShare(before, after, knobRect(0, scale)), 0.0) << "another knob moved";
        // A HiDPI host (VST3) changes the scale of an open editor: the host is asked to follow.
        if (percent == 100 && door->setContentScale(1.5)) {
            window.run(*door, 200);
            const auto requests = door->takeResizeRequests();
            ASSERT_FALSE(requests.empty());
            EXPECT_EQ(requests.back(), std::make_pair(801, 732));
            ASSERT_TRUE(door->getEditorSize(width, height));
            EXPECT_EQ(width, 801);
        }
        door->closeEditor();
    }
}

TEST_P(EditorDoors, PointerWheelAndKeysEditTheParameterAndTheHostSeesEachGesture) {
    auto door = load(GetParam());
    const int parameter = door->findParameter("Output Gain");
    ASSERT_GE(parameter, 0);
    HostWindow window(kWidth, kHeight);
    ASSERT_TRUE(door->openEditor(window.getWindow()));
    window.run(*door, 300);
    door->takeEdits();
    const double before = door->getParameter(parameter);
    const auto centre = knobRect(kOutputGainColumn, 1.0).getCenter();
    const int x = static_cast<int>(centre.x), y = static_cast<int>(centre.y);
    window.drag(*door, x, y, x, y - 60);
    // The editor may run on its own thread: the gesture ends when it has seen the release.
    std::vector<EditEvent> edits = door->takeEdits();
    for (int tries = 0; tries < 40 && (edits.empty() || edits.back().kind != EditKind::End); ++tries) {
        window.run(*door, 100);
        for (const EditEvent& edit : door->takeEdits()) edits.push_back(edit);
    }
    EXPECT_GT(door->getParameter(parameter), before + 0.05);
    const auto kinds = [](const std::vector<EditEvent>& gesture) {
        std::string letters;  // Begin, Perform, End
        for (const EditEvent& edit : gesture) letters += "BPE"[static_cast<int>(edit.kind)];
        return letters;
    };
    for (const EditEvent& edit : edits) EXPECT_EQ(edit.parameter, parameter);
    // One gesture: a begin, one or more performs, an end.
    const std::string gesture = kinds(edits);
    EXPECT_TRUE(gesture.size() >= 3 && gesture == "B" + std::string(gesture.size() - 2, 'P') + "E") << gesture;
    // Wheel and keys that the host hands over (VST3 view, VST2 opcodes) reach the knob under the
    // pointer, which the drag gave the focus.
    window.hover(*door, x, y);
    const double dragged = door->getParameter(parameter);
    if (door->sendWheel(-1.0f) < 0) return door->closeEditor();
    EXPECT_LT(door->getParameter(parameter), dragged);
    const std::string wheel = kinds(door->takeEdits());
    EXPECT_TRUE(wheel.size() >= 2 && wheel.front() == 'B' && wheel.back() == 'E') << wheel;
    EXPECT_EQ(door->sendKey(kKeyUp, true), 1) << "the focused knob takes the arrow keys";
    EXPECT_EQ(door->sendKey(kKeyF1, true), 0) << "a key no view takes goes back to the host";
    door->closeEditor();
}

TEST_P(EditorDoors, OpeningAndClosingLeavesNoDescriptorThreadOrTimerBehind) {
    auto door = load(GetParam()), second = load(GetParam());
    HostWindow window(kWidth, kHeight), other(kWidth, kHeight, kWidth + 10);
    // The first open loads what stays for the process (GL drivers and their threads).
    ASSERT_TRUE(door->openEditor(window.getWindow()));
    window.run(*door, 100);
    door->closeEditor();
    const int fds = entries("/proc/self/fd"), threads = entries("/proc/self/task");

    for (int round = 0; round < 200; ++round) {
        ASSERT_TRUE(door->openEditor(window.getWindow())) << "round " << round;
        door->idle();
        door->closeEditor();
    }
    // Two instances' editors at once. The first paint of each uploads the panel's bitmaps, which takes
    // a software GL a while.
    const std::pair<EditorDoor*, HostWindow*> both[] = {{door.get(), &window}, {second.get(), &other}};
    for (auto [d, w] : both) ASSERT_TRUE(d->openEditor(w->getWindow()));
    for (auto [d, w] : both) w->run(*d, 600);
    for (auto [d, w] : both) expectPainted(*w, *d, 1.0);
    for (auto [d, w] : both) d->closeEditor();

    window.run(*door, 100);
    EXPECT_EQ(entries("/proc/self/fd"), fds);
    EXPECT_EQ(entries("/proc/self/task"), threads);
    EXPECT_EQ(door->hostRegistrations(), 0u) << "a handler or timer is still registered with the host";
}

INSTANTIATE_TEST_SUITE_P(Doors, EditorDoors, ::testing::Values("vst3", "vst2", "embed", "vst3-no-runloop"),
                         [](const auto& door) {
                             std::string name = door.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

// Compares a capture with its picture in ZONFRA_DOCS, or with ZONFRA_SCREENSHOTS naming a folder
// writes it there instead (how the pictures under docs/ are made).
void matchOrWrite(const BitmapPtr& shot, const std::string& name) {
    const char* written = std::getenv("ZONFRA_SCREENSHOTS");
    const char* docs = std::getenv("ZONFRA_DOCS");
    if (written) {
        EXPECT_TRUE(shot->savePNG((std::string(written) + "/" + name + ".png").c_str())) << name;
    } else if (docs) {
        const BitmapPtr recorded(new Vinta::CBitmap((std::string(docs) + "/" + name + ".png").c_str(), true));
        const bool sameSize = recorded->getPixelWidth() == shot->getPixelWidth() &&
                              recorded->getPixelHeight() == shot->getPixelHeight();
        EXPECT_TRUE(sameSize && differingShare(shot, recorded, {0, 0, shot->getWidth(), shot->getHeight()}) < 0.01)
            << "docs/" << name << ".png is missing or out of date: run this test with ZONFRA_SCREENSHOTS=<docs folder>";
    }
}

// The main panel at 100 % and 200 % and each open page are the pictures under docs/. A click on
// each page's tab changes the pixels where it slides in, and a second click takes it away again.
TEST_F(Door, ThePanelAndEachPageOnScreenAreThePicturesInDocs) {
    constexpr int kSlideMilliseconds = 900;
    auto door = load("vst3");
    HostWindow window(kWidth, kHeight);
    ASSERT_TRUE(door->openEditor(window.getWindow())) << door->error();
    window.run(*door, 500);
    matchOrWrite(BitmapPtr(window.capture()), "editor-main");
    const auto inPanel = [](const CRect& rect) {
        return CRect(rect).offset(ZonfraPages::kDisplayRect.left, ZonfraPages::kDisplayRect.top);
    };
    for (const ZonfraPages::PageRow& page : ZonfraPages::kPageRows) {
        SCOPED_TRACE(page.title);
        const CRect tab = inPanel(page.tabRect), full = inPanel(page.openRect);
        const int x = static_cast<int>(tab.getCenter().x), y = static_cast<int>(tab.getCenter().y);
        const BitmapPtr shut(window.capture());
        window.click(*door, x, y);
        window.run(*door, kSlideMilliseconds);
        const BitmapPtr open(window.capture());
        window.click(*door, x, y);
        window.run(*door, kSlideMilliseconds);
        const BitmapPtr shutAgain(window.capture());
        // The part of the page beside its tab.
        const bool tabOnTop = tab.bottom <= full.top + 16;
        const CRect below(full.left, tabOnTop ? tab.bottom : full.top, full.right, tabOnTop ? full.bottom : tab.top);
        EXPECT_GT(differingShare(shut, open, below), 0.3) << "the page did not slide in";
        EXPECT_LT(differingShare(shut, shutAgain, below), 0.05) << "the page did not slide out";
        matchOrWrite(open, std::string("editor-page-") + page.name);
    }
    door->closeEditor();
    // An editor takes the stored scale when its effect is made.
    setScaleSetting(200);
    auto sharp = load("vst3");
    HostWindow large(2 * kWidth, 2 * kHeight);
    ASSERT_TRUE(sharp->openEditor(large.getWindow())) << sharp->error();
    large.run(*sharp, 500);
    matchOrWrite(BitmapPtr(large.capture()), "editor-main-200");
    sharp->closeEditor();
}

}  // namespace
