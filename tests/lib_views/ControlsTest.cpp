#include <thread>
#include <tuple>

#include "ViewTestSupport.h"
#include "lib/controls/Vinta_AnimKnob.h"
#include "lib/drawing/CBitmap.h"

using namespace VintaTest;

namespace {
// A knob of 40 x 40 at (100, 100) drawn from an 11-frame strip, tied to "Cutoff".
struct KnobFixture : ParameterFixture {
    explicit KnobFixture(float start = 0.2f, bool snap = false, bool smoothing = false, int steps = 0)
        : ParameterFixture("Cutoff", start) {
        Vinta_AnimKnob::CInfo info;
        info.rect = CRect(100, 100, 140, 140);
        info.bitmap = new CBitmap(40, 440);
        info.frameCount = 11;
        info.frameHeight = 40;
        info.snapEnabled = snap;
        info.smoothing = smoothing;
        info.stepped = steps > 0;
        info.stepCount = steps;
        knob = static_cast<Vinta_AnimKnob*>(build(info));
        info.bitmap->forget();
    }
    // Press at the centre, move by (dx, dy) in `steps` moves, release.
    void drag(double dx, double dy, CButtonState buttons, int steps = 4) {
        frame->onMouseDown(centre, buttons);
        for (int i = 1; i <= steps; ++i)
            frame->onMouseMoved(CPoint(centre.x + dx * i / steps, centre.y + dy * i / steps), buttons);
        frame->onMouseUp(CPoint(centre.x + dx, centre.y + dy), 0);
    }
    Vinta_AnimKnob* knob;
    CPoint centre{120, 120};
};
}  // namespace

// A drag covers the range over two hundred pixels, or ten times that when fine; the wheel steps;
// a control-click, middle click or double click resets to the default.
TEST(KnobGestures, DragsWheelAndResets) {
    enum Gesture { Drag, Wheel, Press };
    const struct { Gesture gesture; float start; bool snap; double dx, dy; CButtonState buttons; float expected; }
        cases[] = {
        {Drag, 0.2f, false, 0, -100, kLButton, 0.7f},
        {Drag, 0.2f, false, 0, -100, kLButton | kShift, 0.25f},
        {Drag, 0.2f, false, 0, -100, kRButton, 0.25f},         // the right button drags fine as well
        {Drag, 0.2f, false, 0, 100, kLButton, 0.0f},           // clamped at the bottom
        {Drag, 0.2f, false, 100, 0, kLButton, 0.2f},           // sideways does nothing
        {Drag, 0.5f, true, 0, -2, kLButton, 0.5f},             // inside the flat spot
        {Drag, 0.5f, true, 0, -10, kLButton, 0.53f},           // past it: 0.55 less the band
        {Drag, 0.6f, true, 0, 0, kLButton, 0.6f},              // starting off-centre does not jump
        {Drag, 0.6f, true, 0, -20, kLButton, 0.7f},
        {Wheel, 0.2f, false, 0, 0, 0, 0.3f},
        {Wheel, 0.2f, false, 0, 0, kShift, 0.21f},
        {Press, 0.2f, false, 0, 0, kLButton | kControl, 0.5f},  // arrives as 4: reset, no capture
        {Press, 0.2f, false, 0, 0, kMButton, 0.5f},
        {Press, 0.2f, false, 0, 0, kLButton | kDoubleClick, 0.5f},
        {Press, 0.2f, false, 0, 0, kLButton, 0.2f},
    };
    for (const auto& c : cases) {
        KnobFixture f(c.start, c.snap, true);
        const bool reset = c.gesture == Press && c.expected != c.start;
        if (c.gesture == Drag)
            f.drag(c.dx, c.dy, c.buttons);
        else if (c.gesture == Wheel)
            EXPECT_TRUE(f.frame->onWheel(f.centre, 1.0f, c.buttons));
        else
            EXPECT_EQ(f.frame->onMouseDown(f.centre, c.buttons), reset ? 3 : 1);
        EXPECT_NEAR(f.knob->getValue(), c.expected, 1e-5) << c.gesture << " " << c.dy << " " << c.buttons;
        EXPECT_NEAR(f.parameter.getNormalized(), c.expected, 1e-5);
        if (reset) {
            EXPECT_FLOAT_EQ(f.knob->getShownValue(), f.knob->getValue());  // no glide after a reset
            EXPECT_EQ(f.editor.log, (std::vector<std::string>{"begin Cutoff", "perform Cutoff", "end Cutoff"}));
        }
    }
}

TEST(KnobDrag, ShiftPressedHalfwayGoesOnFinerWithoutAJump) {
    KnobFixture f;
    f.frame->onMouseDown(f.centre, kLButton);
    // Shift arrives with the pixel at 69; from there the drag is ten times finer.
    const std::tuple<int, CButtonState, float> moves[] = {
        {70, kLButton, 0.45f}, {69, kLButton | kShift, 0.455f}, {19, kLButton | kShift, 0.48f}};
    for (auto [y, buttons, expected] : moves) {
        f.frame->onMouseMoved(CPoint(120, y), buttons);
        EXPECT_NEAR(f.knob->getValue(), expected, 1e-5) << y;
    }
    f.frame->onMouseUp(CPoint(120, 19), 0);
}

TEST(KnobParameter, ChangesFromAnotherThreadAreOnlyStoredAndDrawnByTheWindowThread) {
    KnobFixture f(0.2f, false, true);
    RecordingContext context;
    f.frame->draw(&context);
    EXPECT_FALSE(f.knob->isDirty());
    std::thread([&] { f.parameter.setNormalized(0.9f); }).join();  // the host's thread
    EXPECT_FLOAT_EQ(f.knob->getValue(), 0.9f);
    EXPECT_TRUE(f.knob->isDirty());
    EXPECT_TRUE(f.editor.log.empty());  // nothing is sent back
    f.frame->idle();
    ASSERT_FALSE(f.platform->invalidated.empty());
    EXPECT_EQ(f.platform->invalidated.back(), CRect(100, 100, 140, 140));
    // The shown value glides 0.4 of the way per frame and the knob stays dirty until it arrives.
    f.frame->draw(&context);
    EXPECT_NEAR(f.knob->getShownValue(), 0.2f + 0.4f * 0.7f, 1e-5);
    int frames = 1;
    for (; f.knob->isDirty() && frames < 50; ++frames) f.frame->draw(&context);
    EXPECT_FLOAT_EQ(f.knob->getShownValue(), 0.9f);
    EXPECT_TRUE(frames > 5 && frames < 20) << frames;
}

TEST(KnobParameter, SteppedKnobGivesOnlyItsStepsAndSetsThePlainValue) {
    KnobFixture f(0.0f, false, false, 2);
    f.parameter.setMaximum(5.0f);
    f.parameter.setMinimum(2.0f);
    f.parameter.setValue(2.0f);
    f.drag(0, -60, kLButton);  // 0.3 rounds to step 0
    EXPECT_FLOAT_EQ(f.knob->getValue(), 0.0f);
    f.drag(0, -120, kLButton);  // 0.6 rounds to step 1
    EXPECT_FLOAT_EQ(f.knob->getValue(), 1.0f);
    EXPECT_FLOAT_EQ(f.parameter.getValue(), 3.0f);
}

TEST(KnobDrawing, DisabledKnobDrawsDimAndCrossFadesOnlyOnANewFrameKey) {
    KnobFixture f(0.25f);
    RecordingContext context;
    f.frame->draw(&context);
    ASSERT_FALSE(context.bitmaps.empty());
    EXPECT_EQ(context.bitmaps.back().alpha, 255);
    f.knob->setEnabled(false);
    f.frame->draw(&context);
    EXPECT_EQ(context.bitmaps.back().alpha, 60);
    f.knob->setValue(0.25001f);  // same frame key to one in ten thousand: clean
    EXPECT_FALSE(f.knob->isDirty());
    f.knob->setValue(0.3f);
    EXPECT_TRUE(f.knob->isDirty());
}

TEST(KnobHover, PointerOverAKnobShowsItsParameterTextAndLeavingClearsIt) {
    KnobFixture f(0.25f);
    f.frame->onMouseMoved(f.centre, 0);
    char expected[256];
    f.parameter.getDisplayText(f.parameter.getValue(), expected, Ondra::kDisplayWithName | Ondra::kDisplayWithUnit);
    EXPECT_EQ(f.frame->hover, expected);
    f.frame->onMouseMoved(CPoint(10, 10), 0);
    EXPECT_EQ(f.frame->hover, "");
}
