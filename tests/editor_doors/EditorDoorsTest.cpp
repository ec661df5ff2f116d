// The editor through each of the library's doors, in a real (virtual) X server: size and scale,
// pixels, pointer gestures reaching the host, host changes reaching the screen, the software
// frame, and many opens and closes leaving nothing behind.
#include <dirent.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include "CORE/files/Settings.h"
#include "lib/drawing/CBitmap.h"
#include "tools/editor-host/EditorDoor.h"
#include "tools/editor-host/HostWindow.h"

namespace {

using namespace EditorHost;

constexpr int kWidth = 534, kHeight = 488;
// The panel's gain dials, 87 units square from y 221: "Input Gain" at x 15, "Output Gain" at x 426.
constexpr double kKnobLefts[] = {15.0, 426.0}, kKnobTop = 221.0, kKnob = 87.0;
constexpr int kOutputGainColumn = 1;

int entries(const char* folder) {
    int count = 0;
    if (DIR* dir = opendir(folder)) {
        while (readdir(dir)) ++count;
        closedir(dir);
    }
    return count;
}

Vinta::CRect knobRect(int column, double scale) {
    const double left = kKnobLefts[column];
    return {left * scale, kKnobTop * scale, (left + kKnob) * scale, (kKnobTop + kKnob) * scale};
}

int distinctColours(Vinta::CBitmap* shot, const Vinta::CRect& area) {
    std::set<uint32_t> colours;
    for (auto y = static_cast<uint32_t>(area.top); y < area.bottom && y < shot->getPixelHeight(); ++y)
        for (auto x = static_cast<uint32_t>(area.left); x < area.right && x < shot->getPixelWidth(); ++x) {
            const Vinta::CColor c = shot->getPixel(x, y);
            colours.insert(static_cast<uint32_t>(c.red) << 16 | static_cast<uint32_t>(c.green) << 8 | c.blue);
        }
    return static_cast<int>(colours.size());
}

int differingPixels(Vinta::CBitmap* a, Vinta::CBitmap* b, const Vinta::CRect& area) {
    int count = 0;
    for (auto y = static_cast<uint32_t>(area.top); y < area.bottom; ++y)
        for (auto x = static_cast<uint32_t>(area.left); x < area.right; ++x)
            count += a->getPixel(x, y) == b->getPixel(x, y) ? 0 : 1;
    return count;
}

class EditorDoors : public ::testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no X display: run under xvfb-run";
        if (!std::getenv("ZONFRA_PLUGIN")) GTEST_SKIP() << "ZONFRA_PLUGIN names no plug-in";
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

    std::unique_ptr<EditorDoor> load() {
        auto door = makeDoor(GetParam());
        EXPECT_TRUE(door && door->load(std::getenv("ZONFRA_PLUGIN"))) << (door ? door->error() : "no door");
        return door;
    }

    // A screenshot of an open editor that shows the panel rather than an empty window.
    static void expectPainted(HostWindow& window, double scale) {
        Vinta::CBitmap* shot = window.capture();
        ASSERT_NE(shot, nullptr);
        EXPECT_GT(distinctColours(shot, {0, 0, shot->getWidth(), shot->getHeight()}), 16);
        EXPECT_GT(distinctColours(shot, knobRect(kOutputGainColumn, scale)), 4) << "the knob is not drawn";
        shot->forget();
    }

    std::string home;
};

TEST_P(EditorDoors, OpensInTheHostWindowAtItsScaledSizeAndPaints) {
    for (const int percent : {100, 150}) {
        SCOPED_TRACE(percent);
        setScaleSetting(percent);
        auto door = load();
        int width = 0, height = 0;
        ASSERT_TRUE(door->getEditorSize(width, height));
        const int wantedWidth = kWidth * percent / 100, wantedHeight = kHeight * percent / 100;
        EXPECT_EQ(width, wantedWidth);
        EXPECT_EQ(height, wantedHeight);
        HostWindow window(width, height);
        ASSERT_TRUE(door->openEditor(window.getWindow())) << door->error();
        window.run(*door, 400);
        int childWidth = 0, childHeight = 0;
        ASSERT_TRUE(window.childSize(childWidth, childHeight));
        EXPECT_EQ(childWidth, wantedWidth);
        EXPECT_EQ(childHeight, wantedHeight);
        expectPainted(window, percent / 100.0);
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

TEST_P(EditorDoors, DraggingAKnobEditsTheParameterAndTheHostSeesTheGesture) {
    auto door = load();
    const int parameter = door->findParameter("Output Gain");
    ASSERT_GE(parameter, 0);
    HostWindow window(kWidth, kHeight);
    ASSERT_TRUE(door->openEditor(window.getWindow()));
    window.run(*door, 300);
    door->takeEdits();
    const double before = door->getParameter(parameter);
    const Vinta::CPoint centre = knobRect(kOutputGainColumn, 1.0).getCenter();
    window.drag(*door, static_cast<int>(centre.x), static_cast<int>(centre.y), static_cast<int>(centre.x),
                static_cast<int>(centre.y) - 60);
    EXPECT_GT(door->getParameter(parameter), before + 0.05);

    const auto edits = door->takeEdits();
    ASSERT_GE(edits.size(), 3u);
    EXPECT_EQ(edits.front().kind, EditKind::Begin);
    EXPECT_EQ(edits.back().kind, EditKind::End);
    int performs = 0;
    for (const EditEvent& edit : edits) {
        EXPECT_EQ(edit.parameter, parameter);
        performs += edit.kind == EditKind::Perform ? 1 : 0;
    }
    EXPECT_EQ(performs, static_cast<int>(edits.size()) - 2) << "one gesture, performs between its begin and end";
    door->closeEditor();
}

TEST_P(EditorDoors, AHostChangeMovesTheKnobOnScreenInGLAndInSoftware) {
    for (const bool software : {false, true}) {
        SCOPED_TRACE(software ? "software frame" : "GL frame");
        if (software) setenv("ZONFRA_NO_GL", "1", 1);
        auto door = load();
        const int parameter = door->findParameter("Output Gain");
        HostWindow window(kWidth, kHeight);
        ASSERT_TRUE(door->openEditor(window.getWindow()));
        window.run(*door, 400);
        expectPainted(window, 1.0);
        Vinta::CBitmap* before = window.capture();
        door->setParameter(parameter, 0.0);
        window.run(*door, 600);
        Vinta::CBitmap* after = window.capture();
        EXPECT_GT(differingPixels(before, after, knobRect(kOutputGainColumn, 1.0)), 50);
        EXPECT_EQ(differingPixels(before, after, knobRect(0, 1.0)), 0) << "another knob moved";
        before->forget();
        after->forget();
        door->closeEditor();
    }
}

TEST_P(EditorDoors, OpeningAndClosingLeavesNoDescriptorThreadOrTimerBehind) {
    auto door = load();
    auto second = load();
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
    // Two instances' editors at once.
    ASSERT_TRUE(door->openEditor(window.getWindow()));
    ASSERT_TRUE(second->openEditor(other.getWindow()));
    // The first paint of each uploads the panel's bitmaps, which takes a software GL a while.
    window.run(*door, 600);
    other.run(*second, 600);
    expectPainted(window, 1.0);
    expectPainted(other, 1.0);
    door->closeEditor();
    second->closeEditor();

    window.run(*door, 100);
    EXPECT_EQ(entries("/proc/self/fd"), fds);
    EXPECT_EQ(entries("/proc/self/task"), threads);
    EXPECT_EQ(door->hostRegistrations(), 0u) << "a handler or timer is still registered with the host";
}

INSTANTIATE_TEST_SUITE_P(Doors, EditorDoors, ::testing::Values("vst3", "vst2", "embed"),
                         [](const auto& door) { return std::string(door.param); });

}  // namespace
