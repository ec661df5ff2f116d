#include "EditorFixture.h"

#include "framework/parameters/IPluginParameter.h"
#include "editor/EditorBitmaps.h"
#include "lib/views/VintaEvents.h"

namespace {

using Vinta::CControl;
using Vinta::CPoint;

enum class Gesture { DragUp, ClickLastItem, Click };

struct ControlRow { const char* key; const char* type; Gesture gesture; };

// Every control of the main panel and how a user moves it.
const ControlRow kControls[] = {
    {"kDryWetMix", "Vinta_AnimKnob", Gesture::DragUp},     {"INPUTGAIN", "Vinta_AnimKnob", Gesture::DragUp},
    {"LOWPASSFREQ", "Vinta_AnimKnob", Gesture::DragUp},    {"LOWPASSQWIDTH", "Vinta_AnimKnob", Gesture::DragUp},
    {"LOWPASSQ", "Vinta_AnimKnob", Gesture::DragUp},       {"HIGHPASSQWIDTH", "Vinta_AnimKnob", Gesture::DragUp},
    {"HIGHPASSQ", "Vinta_AnimKnob", Gesture::DragUp},      {"HIGHPASSFREQ", "Vinta_AnimKnob", Gesture::DragUp},
    {"OUTPUTGAIN", "Vinta_AnimKnob", Gesture::DragUp},     {"LOWPASSSLOPE", "Vinta_RadioGroup", Gesture::ClickLastItem},
    {"HIGHPASSSLOPE", "Vinta_RadioGroup", Gesture::ClickLastItem}, {"LINKFILTERS", "Vinta_ActionButton", Gesture::Click},
    {"FILTERMODE", "Vinta_ActionButton", Gesture::Click},
};

void move(CControl* c, Gesture gesture) {
    const Vinta::CRect& r = c->getViewSize();
    CPoint at = r.getCenter();
    if (gesture == Gesture::ClickLastItem) at = CPoint(r.left + 7, r.top + 3 * 15 + 7);
    if (gesture == Gesture::DragUp) {
        // A knob at its top cannot go up; start it low.
        c->getParameter()->setNormalized(0.1f);
        c->onMouseDown(at, Vinta::kLButton);
        c->onMouseMoved(CPoint(at.x, at.y - 20), Vinta::kLButton);
        c->onMouseMoved(CPoint(at.x, at.y - 60), Vinta::kLButton);
        c->onMouseUp(CPoint(at.x, at.y - 60), Vinta::kLButton);
        return;
    }
    c->onMouseDown(at, Vinta::kLButton);
    c->onMouseUp(at, Vinta::kLButton);
}

}  // namespace

class PanelControls : public OpenEditor, public ::testing::WithParamInterface<ControlRow> {};

TEST_P(PanelControls, MovingTheControlSetsItsParameterAndSettingTheParameterMovesIt) {
    const ControlRow& row = GetParam();
    CControl* c = control(row.key, row.type);
    ASSERT_NE(c, nullptr) << row.key << " has no " << row.type;
    Ondra::IPluginParameter* p = c->getParameter();
    p->resetToDefault();
    const float before = p->getNormalized();
    move(c, row.gesture);
    EXPECT_NE(p->getNormalized(), before) << "the gesture did not reach the parameter";
    EXPECT_NEAR(p->getNormalized(), c->getValue(), 1e-4) << "parameter and control disagree";
    EXPECT_NEAR(p->getValue(), p->toValue(c->getValue()), 1e-3 * (p->getMaximum() - p->getMinimum()));
    if (row.gesture == Gesture::ClickLastItem) {
        EXPECT_EQ(p->getInt(), 4) << "the last LED is 96 dB";
    }

    for (float normalized : {0.0f, 1.0f, p->getDefaultNormalized()}) {
        p->setNormalized(normalized);
        EXPECT_NEAR(c->getValue(), p->getNormalized(), 1e-4) << "the control does not follow";
    }
}

INSTANTIATE_TEST_SUITE_P(MainPanel, PanelControls, ::testing::ValuesIn(kControls),
                         [](const auto& test) { return std::string(test.param.key); });

TEST_F(OpenEditor, LinkedFiltersMoveTogetherAndTheModeSwitchSwapsTheFilterControls) {
    CControl *lowKnob = control("LOWPASSFREQ", "Vinta_AnimKnob"), *highKnob = control("HIGHPASSFREQ", "Vinta_AnimKnob");
    parameter("LOWPASSFREQ")->setValue(4000);
    parameter("HIGHPASSFREQ")->setValue(400);
    move(control("LINKFILTERS", "Vinta_ActionButton"), Gesture::Click);
    ASSERT_TRUE(parameter("LINKFILTERS")->getBool());
    const float highBefore = highKnob->getValue();
    move(lowKnob, Gesture::DragUp);
    EXPECT_NE(highKnob->getValue(), highBefore) << "a linked high-pass knob stays put";
    EXPECT_NEAR(parameter("LOWPASSFREQ")->getValue() / parameter("HIGHPASSFREQ")->getValue(), 10.0f, 0.2f);

    move(control("LINKFILTERS", "Vinta_ActionButton"), Gesture::Click);
    parameter("LOWPASSFREQ")->setValue(3000);
    move(control("FILTERMODE", "Vinta_ActionButton"), Gesture::Click);
    EXPECT_TRUE(parameter("FILTERMODE")->getBool());
    // The ranges differ, so the swap is of hertz, and each knob shows its own range's position.
    EXPECT_NEAR(parameter("HIGHPASSFREQ")->getValue(), 3000.0f, 0.5f) << "the mode switch swaps the cutoffs";
    EXPECT_NEAR(highKnob->getValue(), parameter("HIGHPASSFREQ")->getNormalized(), 1e-4);
    EXPECT_NEAR(lowKnob->getValue(), parameter("LOWPASSFREQ")->getNormalized(), 1e-4);
}

TEST_F(OpenEditor, HoverShowsTheControlUnderThePointerAndTheInfoPageHidesTheDisplay) {
    Vinta::CFrame* frame = editor->getFrame();
    frame->onMouseMoved(CPoint(58, 264), 0);  // over the input dial
    editor->updateHoverText();
    EXPECT_EQ(std::string(editor->getReadoutParameter().getLinkedText()->c_str()).rfind("Input Gain: ", 0), 0u);
    frame->onMouseMoved(CPoint(200, 470), 0);  // over the empty foot of the panel
    editor->updateHoverText();
    EXPECT_STREQ(editor->getReadoutParameter().getLinkedText()->c_str(), "");
    editor->getInfoPageParameter().setValue(0);
    EXPECT_FALSE(display_->isVisible());
    editor->getInfoPageParameter().setValue(1);
    EXPECT_TRUE(display_->isVisible());
}

TEST(SharedBitmaps, LoadOnceForAllEditorsAndTheSharpVariantsKeepTheUnitSize) {
    using namespace ZonfraEditor;
    const int before = SharedBitmaps::useCount();
    SharedBitmaps::acquire();
    Vinta::CBitmap* background = SharedBitmaps::get(kBackground);
    SharedBitmaps::acquire();
    EXPECT_EQ(SharedBitmaps::get(kBackground), background) << "a second editor loads again";
    for (int id = 0; id < kBitmapCount; ++id) {
        Vinta::CBitmap* plain = SharedBitmaps::get(static_cast<BitmapId>(id));
        Vinta::CBitmap* sharp = SharedBitmaps::get(static_cast<BitmapId>(id), true);
        ASSERT_TRUE(plain->isValid()) << kBitmapNames[id];
        EXPECT_EQ(CPoint(sharp->getWidth(), sharp->getHeight()), CPoint(plain->getWidth(), plain->getHeight()))
            << kBitmapNames[id];
    }
    EXPECT_EQ(SharedBitmaps::get(kBackground, true)->getPixelWidth(), 2 * background->getPixelWidth());
    SharedBitmaps::release();
    SharedBitmaps::release();
    EXPECT_EQ(SharedBitmaps::useCount(), before);
    for (int i = 0; i < before + 1; ++i) SharedBitmaps::release();
    EXPECT_EQ(SharedBitmaps::useCount(), 0) << "the count fell below 0";
    for (int i = 0; i < before; ++i) SharedBitmaps::acquire();
}
