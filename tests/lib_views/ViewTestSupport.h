#pragma once
// An in-memory window, a recording editor and context, and a probe view that logs what reaches it.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "framework/parameters/ParameterProperty.h"
#include "lib/controls/IOSOptionMenu.h"
#include "lib/controls/ITextEditCallback.h"
#include "lib/controls/ViewBuilder.h"
#include "lib/drawing/CDrawContext_AGG.h"
#include "lib/views/CFrame.h"
#include "lib/views/IFrame.h"
#include "lib/views/IVintaEditor.h"
#include "lib/views/VintaObjectInfo.h"

namespace VintaTest {
using namespace Vinta;

// A native field that already holds the text "typed" into it.
class FakeTextEdit : public IOSTextEdit {
public:
    explicit FakeTextEdit(std::string text) : typed(std::move(text)) {}
    void getText(char* out, size_t capacity) override { snprintf(out, capacity, "%s", typed.c_str()); }
    std::string typed;
};

// A native menu that answers a choice made in advance (`menu` null: the menu shown).
class FakeMenu : public IOSOptionMenu {
public:
    explicit FakeMenu(COptionMenuResult answer) : result(answer) {}
    bool popup(COptionMenu* shown, Chosen chosen) override {
        chosen({result.menu ? result.menu : (result.index >= 0 ? shown : nullptr), result.index});
        return true;
    }
    COptionMenuResult result;
};

class MemoryFrame : public IFrame {
public:
    bool create(void*, const CRect&) override { return true; }
    bool getScreenPosition(double& x, double& y) override { x = y = 0; return true; }
    bool setSize(double, double) override { return true; }
    bool getRect(CRect& out) override { out = CRect(0, 0, 400, 300); return true; }
    bool getMouseLocation(CPoint& out) override { out = CPoint(); return true; }
    CButtonState getMouseButtons() override { return 0; }
    void invalidRect(const CRect& rect) override { invalidated.push_back(rect); }
    IOSTextEdit* createTextEdit(ITextEditCallback* callback) override {
        editCallback = callback;
        return new FakeTextEdit(typed);
    }
    IOSOptionMenu* createOptionMenu(COptionMenu*) override { return new FakeMenu(menuAnswer); }
    void* getSystemWindow() override { return nullptr; }
    void* getNvg() override { return nullptr; }
    void* makeCursor(CBitmap*) override { return nullptr; }
    // Nothing to show: the window's own duties do nothing.
    void destroy() override {}
    void setCursor(int32_t) override {}
    void idle() override {}
    void resize() override {}
    void paint() override {}
    void update() override {}
    void setFrameRate(int32_t) override {}
    void postUpdate() override {}
    std::vector<CRect> invalidated;
    std::string typed;
    ITextEditCallback* editCallback = nullptr;
    COptionMenuResult menuAnswer;
};

// Logs gestures as "begin NAME", "perform NAME", "end NAME".
class RecordingEditor : public IVintaEditor {
public:
    void beginEdit(Ondra::IPluginParameter* p) override { log.push_back("begin " + name(p)); }
    void endEdit(Ondra::IPluginParameter* p) override { log.push_back("end " + name(p)); }
    void performEdit(Ondra::IPluginParameter* p) override { log.push_back("perform " + name(p)); }
    double getSampleRate() override { return 48000.0; }
    void setGuiScale(double value) override { scale = value; }
    double getGuiScale() const override { return scale; }
    void saveGuiScale() override { log.push_back("save"); }
    static std::string name(Ondra::IPluginParameter* p) { return p ? p->getName() : "null"; }
    std::vector<std::string> log;
    double scale = 1.0;
};

// Draws nothing (the software context without pixels); keeps the rectangles, strings and bitmaps
// asked for.
class RecordingContext : public CDrawContext_AGG {
public:
    RecordingContext() { clipRect = CRect(0, 0, 10000, 10000); }
    void drawRect(const CRect& rect, int32_t) override { rects.push_back(CRect(rect).offset(offset.x, offset.y)); }
    void setClipRect(const CRect& rect) override { clipRect = CRect(rect).offset(offset.x, offset.y); }
    double drawString(const char* text, const CRect&, int32_t, int32_t) override {
        return strings.push_back(text ? text : ""), 0;
    }
    void drawBitmap(CBitmap&, const CRect&, const CPoint& source, uint8_t alphaByte, bool) override {
        bitmaps.push_back({source, alphaByte});
    }
    // No fonts and no pixels: nothing measures, and the clip stays where the test put it.
    double getStringWidth(const char*) override { return 0; }
    void setFont(CFontDesc*, double, int32_t) override {}
    void resetClipRect() override {}
    struct BitmapDraw { CPoint source; uint8_t alpha; };
    std::vector<CRect> rects;
    std::vector<std::string> strings;
    std::vector<BitmapDraw> bitmaps;
};

// A view that logs "NAME:event" into a shared log and answers as told; `alive` counts them.
class ProbeView : public CView {
public:
    ProbeView(const char* probeName, const CRect& rect, std::string& sharedLog, int32_t downResult = 1)
        : CView(rect), name(probeName), log(sharedLog), downAnswer(downResult) { ++alive; }
    int32_t onMouseDown(const CPoint&, CButtonState buttons) override {
        return note("down" + std::to_string(buttons)), downAnswer;
    }
    int32_t onMouseUp(const CPoint&, CButtonState) override { return note("up"), 1; }
    int32_t onMouseMoved(const CPoint&, CButtonState) override { return note("move"), 2; }
    int32_t onMouseEntered(const CPoint&, CButtonState) override { return note("enter"), 1; }
    int32_t onMouseExited(const CPoint&, CButtonState) override { return note("exit"), 1; }
    bool onWheel(const CPoint&, float, CButtonState) override { return note("wheel"), true; }
    int32_t onKeyDown(const VstKeyCode&) override { return note("key"), keyAnswer; }
    void looseFocus() override { note("loose"); }
    void note(const std::string& event) { log += name + ":" + event + " "; }
    static inline int alive = 0;
    std::string name;
    std::string& log;
    int32_t downAnswer;
    int32_t keyAnswer = -1;

protected:
    ~ProbeView() override { --alive; }
};

// A tick source the test moves by hand (install with setTickSource(fakeClock)).
inline uint32_t fakeNow = 1000;
inline uint32_t fakeClock() { return fakeNow; }

// Keeps the hover text the views give it.
struct HoverFrame : CFrame {
    using CFrame::CFrame;
    void setHoverText(const char* text) override { hover = text; }
    std::string hover = "none";
};

// A frame on an in-memory window with a recording editor.
struct FrameFixture {
    ~FrameFixture() { frame->close(); }
    ProbeView* probe(const char* name, const CRect& rect, int32_t downResult = 1, CViewContainer* into = nullptr) {
        auto* view = new ProbeView(name, rect, log, downResult);
        (into ? into : frame)->addView(view);
        return view;
    }
    RecordingEditor editor;
    MemoryFrame* platform = new MemoryFrame;
    HoverFrame* frame = new HoverFrame(CRect(0, 0, 400, 300), nullptr, &editor, platform);
    std::string log;
};

// A frame with a parameter (default 0.5) and views built from records tied to it.
struct ParameterFixture : FrameFixture {
    explicit ParameterFixture(const char* name = "Gain", float start = 0.2f) {
        parameter.setName(name);
        parameter.setDefault(0.5f);
        parameter.setNormalized(start);
    }
    ~ParameterFixture() { frame->removeAll(); }  // the views go before the parameter they listen to
    template <typename Record> auto* build(Record& record, int32_t kind = kKindCreateObject) {
        record.kind = kind;
        record.parameter = &parameter;
        return addViewFromRecord(&record, nullptr, frame);
    }
    Ondra::ParameterProperty parameter;
};

} // namespace VintaTest
