#include "ViewTestSupport.h"
#include "lib/views/CControl.h"

using namespace VintaTest;

TEST(ViewRouting, MouseDownVisitsTopmostFirstAndStopsAtTheTaker) {
    const struct { int32_t lower, upper, result; const char* log; } cases[] = {
        {1, 2, 1, "up:down2 low:down2 "},  // upper declines, the one below takes it
        {1, 1, 1, "up:down2 "},
        {2, 3, 3, "up:down2 "},
        {2, 2, 2, "up:down2 low:down2 "},
    };
    for (const auto& c : cases) {
        FrameFixture f;
        f.probe("low", CRect(0, 0, 100, 100), c.lower);
        f.probe("up", CRect(50, 50, 150, 150), c.upper);
        f.probe("off", CRect(200, 0, 300, 100));
        EXPECT_EQ(f.frame->onMouseDown(CPoint(60, 60), kLButton), c.result);
        EXPECT_EQ(f.log, c.log);
        EXPECT_EQ(f.frame->onMouseUp(CPoint(60, 60), 0), c.result == 1 ? 1 : 2);
    }
}

TEST(ViewRouting, CaptureSendsMovesAndUpToTheTakerAndControlLeftBecomesFour) {
    FrameFixture f;
    auto* inner = new CViewContainer(CRect(100, 100, 300, 300));
    f.frame->addView(inner);
    f.probe("a", CRect(10, 10, 50, 50), 1, inner);
    f.log.clear();
    EXPECT_EQ(f.frame->onMouseDown(CPoint(120, 120), kLButton | kControl | kShift), 1);
    EXPECT_EQ(f.frame->onMouseMoved(CPoint(5, 5), kLButton), 2);   // far outside, still reaches "a"
    EXPECT_EQ(f.frame->onMouseUp(CPoint(5, 5), 0), 1);
    EXPECT_EQ(f.log, "a:down4 a:move a:up ");
    EXPECT_EQ(f.frame->onMouseUp(CPoint(5, 5), 0), 2);  // nobody holds the mouse now
}

TEST(ViewRouting, EnterAndLeaveFollowThePointer) {
    FrameFixture f;
    f.probe("a", CRect(0, 0, 100, 100), 2);
    ProbeView* b = f.probe("b", CRect(100, 0, 200, 100), 2);
    for (CPoint at : {CPoint(10, 10), CPoint(150, 10), CPoint(150, 20)}) f.frame->onMouseMoved(at, 0);
    EXPECT_EQ(f.log, "a:move a:enter b:move a:exit b:enter b:move ");
    f.frame->removeView(b);  // the child under the pointer goes
    EXPECT_EQ(f.frame->getMouseOverView(), nullptr);
    f.frame->onMouseMoved(CPoint(10, 10), 0);
    f.frame->onMouseExited(CPoint(-1, -1), 0);
    EXPECT_EQ(f.frame->getMouseOverView(), nullptr);
}

TEST(ViewRouting, WheelSkipsViewsThatDoNotWantItAndModalViewTakesEverything) {
    FrameFixture f;
    f.probe("low", CRect(0, 0, 100, 100));
    f.probe("up", CRect(0, 0, 100, 100))->setWantsWheel(false);
    EXPECT_TRUE(f.frame->onWheel(CPoint(10, 10), 1.0f, 0));
    EXPECT_EQ(f.log, "low:wheel ");
    f.log.clear();
    auto* modal = new ProbeView("modal", CRect(200, 200, 300, 300), f.log);
    ASSERT_TRUE(f.frame->setModalView(modal));
    f.probe("late", CRect(0, 0, 400, 300));  // added after, still drawn below the modal view
    EXPECT_EQ(f.frame->getView(f.frame->getNbViews() - 1), modal);
    EXPECT_EQ(f.frame->onMouseDown(CPoint(10, 10), kLButton), 2);
    EXPECT_TRUE(f.frame->onWheel(CPoint(10, 10), 1.0f, 0));
    EXPECT_EQ(f.log, "modal:wheel ");  // the wheel went to the modal view alone
    EXPECT_EQ(f.frame->onMouseDown(CPoint(210, 210), kLButton), 1);
    EXPECT_TRUE(f.frame->setModalView(nullptr));
    EXPECT_EQ(f.frame->getModalView(), nullptr);
}

TEST(ViewRouting, KeysGoToFocusFirstAndTabWalksTheViewsThatWantFocus) {
    FrameFixture f;
    auto* box = new CViewContainer(CRect(0, 0, 200, 200));
    f.frame->addView(box);
    ProbeView* a = f.probe("a", CRect(0, 0, 10, 10), 1, box);
    f.probe("skip", CRect(20, 0, 30, 10), 1, box);
    ProbeView* c = f.probe("c", CRect(210, 0, 220, 10));
    const VstKeyCode tab{0, VKEY_TAB, 0}, backTab{0, VKEY_TAB, kKeyShift};
    const struct { VstKeyCode key; int32_t result; CView* focus; } steps[] = {
        {tab, -1, nullptr}, {tab, 1, a}, {tab, 1, c}, {tab, -1, c}, {backTab, 1, a}};
    for (const auto& s : steps) {
        EXPECT_EQ(f.frame->onKeyDown(s.key), s.result);
        EXPECT_EQ(f.frame->getFocusView(), s.focus);
        a->setWantsFocus(true);  // after the first step, which nothing wants
        c->setWantsFocus(true);
    }
    f.log.clear();
    a->keyAnswer = 5;
    EXPECT_EQ(f.frame->onKeyDown(VstKeyCode{'x', 0, 0}), 5);
    EXPECT_EQ(f.log, "a:key ");
    f.frame->onMouseDown(CPoint(300, 250), kLButton);  // a click beside the focus view clears it
    EXPECT_EQ(f.frame->getFocusView(), nullptr);
    EXPECT_NE(f.log.find("a:loose"), std::string::npos);
}

TEST(ViewDirtyRects, NestedViewsEnterInFrameCoordinatesAndPastSixtyFourTheWholeFrameGoesDirty) {
    FrameFixture f;
    auto* outer = new CViewContainer(CRect(100, 50, 300, 250));
    f.frame->addView(outer);
    ProbeView* p = f.probe("p", CRect(10, 20, 30, 40), 1, outer);
    RecordingContext context;
    f.frame->draw(&context);
    bool whole = false;
    CRect out[64];
    p->setDirty(true);
    f.frame->addDirtyRect(CRect(112, 72, 120, 80));  // inside the first: nothing added
    ASSERT_EQ(f.frame->copyDirtyRects(out, 64, whole), 1);
    EXPECT_EQ(out[0], CRect(110, 70, 130, 90));
    f.frame->draw(&context);  // drawing clears the list
    EXPECT_EQ(f.frame->copyDirtyRects(out, 64, whole), 0);
    // The frame fills its background, the inner container its own, each in frame coordinates.
    ASSERT_GE(context.rects.size(), 2u);
    EXPECT_EQ(context.rects.back(), CRect(100, 50, 300, 250));
    for (int i = 0; i < 64; ++i) f.frame->addDirtyRect(CRect(i * 2, 280, i * 2 + 1, 281));
    EXPECT_EQ(f.frame->copyDirtyRects(out, 64, whole), 64);
    EXPECT_FALSE(whole);
    f.frame->addDirtyRect(CRect(390, 290, 395, 295));
    EXPECT_EQ(f.frame->copyDirtyRects(out, 64, whole), 0);
    EXPECT_TRUE(whole);
    f.frame->idle();
    ASSERT_FALSE(f.platform->invalidated.empty());
    EXPECT_EQ(f.platform->invalidated.back(), CRect(0, 0, 400, 300));
}

TEST(ViewTree, ContainersAnswerTheContainerQueryAndCopiesAreDeep) {
    FrameFixture f;
    auto* box = new CViewContainer(CRect(0, 0, 50, 50));
    auto* leaf = new CView(CRect(1, 1, 2, 2));
    box->addView(leaf);
    EXPECT_FALSE(box->addView(leaf));  // already a child
    EXPECT_EQ(box->notify(nullptr, kMsgCheckIfViewContainer), 1);
    EXPECT_EQ(leaf->notify(nullptr, kMsgCheckIfViewContainer), 0);
    EXPECT_TRUE(box->isTypeOf("CView") && !box->isTypeOf("CControl"));
    auto* copy = static_cast<CViewContainer*>(box->newCopy());
    EXPECT_TRUE(copy->getNbViews() == 1 && copy->getView(0) != leaf);
    copy->forget();
    f.frame->addView(box);
    EXPECT_TRUE(leaf->isAttached() && leaf->getFrame() == f.frame);
    EXPECT_DOUBLE_EQ(leaf->getSampleRate(), 48000.0);
}

TEST(ViewTree, ThousandsOfViewsGoWithTheirFrameAndHoldTheFrameWhileAttached) {
    const int before = ProbeView::alive;
    {
        FrameFixture f;
        for (int box = 0; box < 50; ++box) {
            auto* container = new CViewContainer(CRect(box, 0, box + 100, 100));
            for (int leaf = 0; leaf < 100; ++leaf) f.probe("x", CRect(leaf, 0, leaf + 1, 1), 1, container);
            f.frame->addView(container);
        }
        EXPECT_EQ(ProbeView::alive - before, 5000);
        EXPECT_EQ(f.frame->getNbReference(), 1 + 5050);  // owner plus one per attached view
        CView* kept = f.frame->getView(3);
        kept->remember();
        f.frame->removeView(kept);  // the list lets go, our reference keeps it
        EXPECT_FALSE(kept->isAttached());
        EXPECT_EQ(ProbeView::alive - before, 5000);
        kept->forget();
        EXPECT_EQ(ProbeView::alive - before, 4900);
    }
    EXPECT_EQ(ProbeView::alive, before);
}

// A control whose value is -1, the old value's own mark for "changed", still goes dirty.
TEST(ControlBase, AValueOfMinusOneStillGoesDirty) {
    auto* control = new CControl(CRect(0, 0, 10, 10));
    control->setValue(-1.0f);
    control->setDirty(true);
    EXPECT_TRUE(control->isDirty());
    control->forget();
}

TEST(ViewRouting, DragsEnterMoveAndLeaveTheChildUnderThePointer) {
    struct DragProbe : ProbeView {
        using ProbeView::ProbeView;
        void onDragEnter(CDragContainer*, const CPoint&) override { note("in"); }
        void onDragMove(CDragContainer*, const CPoint&) override { note("over"); }
        void onDragLeave(CDragContainer*, const CPoint&) override { note("out"); }
        bool onDrop(CDragContainer*, const CPoint&) override { return note("drop"), true; }
    };
    FrameFixture f;
    f.frame->addView(new DragProbe("a", CRect(0, 0, 10, 10), f.log));
    f.frame->addView(new DragProbe("b", CRect(20, 0, 30, 10), f.log));
    f.frame->onDragEnter(nullptr, CPoint(5, 5));
    f.frame->onDragMove(nullptr, CPoint(6, 5));
    f.frame->onDragMove(nullptr, CPoint(25, 5));
    EXPECT_TRUE(f.frame->onDrop(nullptr, CPoint(25, 5)));
    EXPECT_FALSE(f.frame->onDrop(nullptr, CPoint(15, 5)));
    EXPECT_EQ(f.log, "a:in a:over a:out b:in b:drop ");
}

// A handler that empties the tree around itself (a button that closes the editor) leaves nothing
// behind that the routing still reads, and nobody holds the mouse afterwards.
TEST(ViewRouting, AHandlerThatEmptiesTheTreeIsSafe) {
    struct Closer : CView {
        explicit Closer(CViewContainer* owner) : CView(CRect(0, 0, 100, 100)), tree(owner) {}
        int32_t onMouseDown(const CPoint&, CButtonState) override {
            tree->removeAll();
            return kMouseEventHandled;
        }
        CViewContainer* tree;
    };
    FrameFixture f;
    auto* inner = new CViewContainer(CRect(0, 0, 200, 200));
    f.frame->addView(inner);
    inner->addView(new Closer(f.frame));
    EXPECT_EQ(f.frame->onMouseDown(CPoint(10, 10), kLButton), kMouseEventHandled);
    EXPECT_EQ(f.frame->onMouseUp(CPoint(10, 10), 0), kMouseEventNotHandled);
}
