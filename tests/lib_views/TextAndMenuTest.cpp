#include <cstring>
#include <string>

#include "ViewTestSupport.h"
#include "lib/controls/CGuiScaleContext.h"
#include "lib/controls/CMenuItem.h"
#include "lib/controls/Vinta_ActionButton.h"
#include "lib/controls/Vinta_ParamDisplay.h"
#include "lib/controls/Vinta_RadioGroup.h"
#include "lib/controls/Vinta_TextEdit.h"
#include "lib/drawing/CBitmap.h"
#include "lib/views/VintaClock.h"

using namespace VintaTest;

TEST(TextEditBox, DragsLikeAKnobResetsAndOpensTheFieldOnADoubleClick) {
    ParameterFixture f;
    Vinta_TextEdit::CInfo info;
    info.rect = CRect(10, 10, 60, 30);
    info.hideName = true;
    auto* box = static_cast<Vinta_TextEdit*>(f.build(info, kKindTextEdit));
    f.frame->onMouseDown(CPoint(20, 20), kLButton);
    f.frame->onMouseMoved(CPoint(20, -80), kLButton);
    f.frame->onMouseMoved(CPoint(200, -80), kLButton);  // sideways changes nothing
    f.frame->onMouseUp(CPoint(20, -80), 0);
    EXPECT_NEAR(f.parameter.getNormalized(), 0.7f, 1e-5);
    EXPECT_EQ(f.editor.log.front(), "begin Gain");
    EXPECT_EQ(f.editor.log.back(), "end Gain");
    EXPECT_EQ(f.frame->onMouseDown(CPoint(20, 20), kLButton | kControl), 3);
    EXPECT_NEAR(f.parameter.getNormalized(), 0.5f, 1e-5);

    f.platform->typed = "hello";
    EXPECT_EQ(f.frame->onMouseDown(CPoint(20, 20), kLButton | kDoubleClick), 3);
    EXPECT_TRUE(box->isEditing() && f.frame->getFocusView() == box);
    f.platform->editCallback->textEditDidEnd(kTextEditEscape);  // not taken: shown, not sent
    EXPECT_FALSE(box->isEditing());
    EXPECT_STREQ(box->getText(), "hello");
    EXPECT_NEAR(f.parameter.getNormalized(), 0.5f, 1e-5);

    box->setText(std::string(300, 'x').c_str());
    EXPECT_EQ(std::strlen(box->getText()), 255u);
    f.parameter.setNormalized(0.25f);
    box->updateTextFromParameter();
    char expected[256];
    f.parameter.getDisplayText(f.parameter.getValue(), expected, Ondra::kDisplayWithUnit | Ondra::kDisplayPlain);
    EXPECT_STREQ(box->getText(), expected);
}

// The toggle flips on a click, even one released outside, and fades its upper row in over six ticks
// of sixty milliseconds.
TEST(ActionButton, ToggleFlipsAndFadesIn) {
    setTickSource(fakeClock);
    ParameterFixture f;
    f.parameter.setValue(0.0f);
    Vinta_ActionButton::CInfo info;
    info.rect = CRect(0, 0, 20, 20);
    info.type = Vinta_ActionButton::kToggle;
    info.fade = true;
    info.bitmap = new CBitmap(20, 40);
    auto* button = static_cast<Vinta_ActionButton*>(f.build(info));
    info.bitmap->forget();
    fakeNow = 5000;
    EXPECT_EQ(f.frame->onMouseDown(CPoint(5, 5), kLButton), 1);
    f.frame->onMouseUp(CPoint(300, 300), 0);
    EXPECT_TRUE(button->isOn());
    EXPECT_FLOAT_EQ(f.parameter.getValue(), 1.0f);
    RecordingContext context;
    const struct { uint32_t at; uint8_t upperAlpha; bool dirty; } steps[] = {{5180, 127, true}, {5540, 255, false}};
    for (const auto& s : steps) {
        fakeNow = s.at;
        f.frame->draw(&context);
        EXPECT_EQ(context.bitmaps.back().alpha, s.upperAlpha);
        EXPECT_EQ(context.bitmaps.back().source, CPoint(0, 0));
        EXPECT_EQ(button->isDirty(), s.dirty);
    }
    setTickSource(nullptr);
}

TEST(OptionMenu, ChoiceSetsIndexAndParameterValuesRoundUpFromJustBelowAndTheScaleMenuRescales) {
    ParameterFixture f;
    f.parameter.setMaximum(10.0f);
    auto* menu = new COptionMenu(CRect(0, 0, 50, 20), nullptr, 0, nullptr, kCheckStyle);
    for (const char* title : {"a", "b", "c", "d"}) menu->addEntry(title);
    menu->setParameter(&f.parameter);
    f.frame->addView(menu);
    f.platform->menuAnswer = {nullptr, 2};
    EXPECT_EQ(f.frame->onMouseDown(CPoint(5, 5), kLButton), 3);
    EXPECT_TRUE(menu->getCurrent() == 2 && menu->getEntry(2)->isChecked());
    EXPECT_FLOAT_EQ(f.parameter.getValue(), 2.0f);
    menu->setValue(2.99f);
    EXPECT_TRUE(menu->getCurrent() == 3 && !menu->getEntry(2)->isChecked());
    f.platform->menuAnswer = {};
    EXPECT_EQ(f.frame->onMouseDown(CPoint(5, 5), kLButton), 3);  // nothing chosen, nothing changed
    EXPECT_EQ(menu->getCurrent(), 3);
    f.frame->addView(new CGuiScaleContext(CRect(0, 30, 20, 50)));  // the scale menu rescales and stores it
    f.platform->menuAnswer = {nullptr, 2};
    f.frame->onMouseDown(CPoint(5, 35), kLButton);
    EXPECT_DOUBLE_EQ(f.editor.scale, 1.5);
    EXPECT_EQ(f.editor.log.back(), "save");
}

TEST(ViewRecords, KindsBuildTheirViewOrNothing) {
    ParameterFixture f;
    Vinta_ObjectConstructorInfoBase unknown;
    unknown.kind = 42;
    unknown.object = f.frame;  // stale from an earlier use
    EXPECT_EQ(addViewFromRecord(&unknown, nullptr, f.frame), nullptr);
    EXPECT_EQ(unknown.object, nullptr);
    EXPECT_EQ(addViewFromRecord(nullptr, nullptr, f.frame), nullptr);
    EXPECT_EQ(f.frame->getNbViews(), 0);
    auto* box = new CViewContainer(CRect(0, 0, 100, 100));
    f.frame->addView(box);
    Vinta_ParamDisplay::CInfo display;
    display.kind = kKindParamDisplay;
    display.parameter = &f.parameter;
    CView* view = addViewFromRecord(&display, box, f.frame);
    ASSERT_NE(view, nullptr);
    EXPECT_TRUE(view->isTypeOf("Vinta_ParamDisplay") && view->isTypeOf("CControl"));
    EXPECT_TRUE(view->getParentView() == box && display.parentFrame == f.frame);
}

// The LEDs are 12 x 12 at each step of 20: a click between two of them chooses nothing.
TEST(RadioGroup, ClickChoosesAnItemTheLedFadesInAndValuesRoundToTheNearestBelow) {
    setTickSource(fakeClock);
    ParameterFixture f;
    Vinta_RadioGroupControlInfo info;
    info.rect = CRect(0, 0, 100, 20);
    info.count = 2;
    info.stepX = 20;
    info.onBitmap = new CBitmap(12, 12);
    info.offBitmap = new CBitmap(12, 12);
    auto* group = static_cast<Vinta_RadioGroup*>(f.build(info));
    info.onBitmap->forget();
    info.offBitmap->forget();
    fakeNow = 1000;
    EXPECT_EQ(f.frame->onMouseDown(CPoint(25, 5), kLButton), 1);
    f.frame->onMouseUp(CPoint(25, 5), 0);
    EXPECT_EQ(group->getSelected(), 1);
    EXPECT_NEAR(f.parameter.getNormalized(), 1.0f, 1e-5);
    EXPECT_EQ(f.editor.log, (std::vector<std::string>{"begin Gain", "end Gain"}));
    EXPECT_EQ(f.frame->onMouseDown(CPoint(35, 5), kLButton), 2);
    const struct { uint32_t at; bool enabled; float first, second; uint8_t secondOnAlpha; } steps[] = {
        {1060, true, 155, 100, 100}, {1060, false, 55, 200, 50}, {1120, true, 0, 255, 255}};
    RecordingContext context;
    for (const auto& s : steps) {
        fakeNow = s.at;
        group->setEnabled(s.enabled);
        context.bitmaps.clear();
        f.frame->draw(&context);
        EXPECT_FLOAT_EQ(group->getItem(0).level, s.first);
        EXPECT_FLOAT_EQ(group->getItem(1).level, s.second);
        EXPECT_EQ(context.bitmaps.back().alpha, s.secondOnAlpha);
    }
    EXPECT_FALSE(group->isDirty());  // settled
    group->setValue(0.0f);
    group->setValue(0.985f);
    EXPECT_EQ(group->getSelected(), 1);
    setTickSource(nullptr);
}

TEST(TextDisplays, DisplaysDrawTheirTextOnTheWindowThread) {
    ParameterFixture f;
    auto* plain = new CParamDisplay(CRect(0, 0, 40, 20));
    plain->setValue(0.5f);
    f.frame->addView(plain);
    Vinta_ParamDisplay::CInfo display;
    display.rect = CRect(0, 30, 40, 60);
    display.twoLines = true;
    f.build(display, kKindParamDisplay);
    RecordingContext context;
    f.frame->draw(&context);
    char value[256];
    f.parameter.getDisplayText(f.parameter.getValue(), value, 0);
    const std::vector<std::string> expected{"0.50", value, f.parameter.getUnitLabel()};
    EXPECT_EQ(context.strings, expected);  // the plain display's value; the value above the unit
}
