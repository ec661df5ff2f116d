#pragma once
// A slide-out page. Shut, it shows only its tab with the title; a click on the tab opens it and it
// grows to its full rectangle over a few frames, then shows its dials and its own graphic. Pages
// with the same index on one side may be open together; opening one shuts the others of that side.
#include <atomic>
#include <memory>
#include <vector>

#include "editor/pages/MiniDial.h"
#include "editor/pages/PageAnimation.h"
#include "editor/pages/PageLayouts.h"
#include "framework/parameters/ParameterChangeListener.h"
#include "framework/parameters/ParameterProperty.h"
#include "lib/controls/CXButton.h"
#include "lib/views/CViewContainer.h"
#include "editor/pages/Pages.h"

namespace ZonfraPages {

class PageHost;

// "PAGELEFT" and "PAGERIGHT": which group of pages of each side is open. Held by every page of the
// side, so it outlives them all; not part of the effect's state.
class PageSides : public Vinta::CBaseObject {
public:
    PageSides();
    int32_t notify(Vinta::CBaseObject*, Vinta::CMessageID) override { return 0; }

    Ondra::ParameterProperty left;
    Ondra::ParameterProperty right;
    // A host the pages were given to keep, if any.
    std::unique_ptr<PageHost> keptHost;
};

class Vinta_AttachedWindow : public Vinta::CViewContainer,
                             public Vinta::IAttachedWindow,
                             public Ondra::ParameterChangeListener {
public:
    // The page's record: `rect` is the open rectangle; `parameters` are what the page puts on its
    // dials, in its own order (a null one leaves its dial out).
    class CInfo : public Vinta::Vinta_ObjectConstructorInfoBase {
    public:
        static constexpr int kParameterCount = 8;

        const char* title = nullptr;
        double titleFontSize = 8.0;
        int32_t position = 0;  // 0, 2: arrow at the tab's right end; 1, 3 at its left; 2, 3 reverse it
        Vinta::CRect tabRect;
        Ondra::IPluginParameter* pageParameter = nullptr;
        int32_t pageIndex = 0;
        Ondra::IPluginParameter* parameters[kParameterCount] = {};
        Vinta::CColor panelColor{50, 50, 75, 255};
        PageSides* sides = nullptr;
    };

    explicit Vinta_AttachedWindow(const CInfo& info);

    void setOpen(bool state) override;
    virtual void drawContent(Vinta::CDrawContext*) {}

    void draw(Vinta::CDrawContext* context) override;
    void drawRect(Vinta::CDrawContext* context, const Vinta::CRect&) override { draw(context); }
    bool isDirty() const override;
    void redrawDirty() override;
    bool hitTest(const Vinta::CPoint& where, Vinta::CButtonState buttons = ~0u) override;
    int32_t onMouseDown(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    void parameterChanged(Ondra::IPluginParameter* changed) override;
    const char* getClassName() const override { return "Vinta_AttachedWindow"; }
    Vinta::CView* newCopy() const override { return nullptr; }

    bool isOpen() const { return open; }
    const char* getTitle() const { return title; }
    const Vinta::CRect& getTabRect() const { return tabRect; }
    const Vinta::CRect& getCurrentRect() const { return currentRect; }
    bool isAnimating() const { return currentRect != (open ? size : tabRect); }
    // The dials in the order they were added.
    const std::vector<Vinta_MiniDial*>& getDials() const { return dials; }

protected:
    ~Vinta_AttachedWindow() override;

    // A column of dial rows in page units: where the next row starts and how each row looks.
    struct DialColumn {
        double left;
        double top;
        double width;
        double dialOffset;
        double fontSize = 10.0;
        double dialSize = 12.0;
        int32_t flags = 0x5b;
    };
    // A dial in the column's next row, which then moves down by 14 plus `gapAfter`; a null
    // parameter adds no row. Whole-number parameters step through their values.
    Vinta_MiniDial* addRow(DialColumn& column, Ondra::IPluginParameter* parameter, double gapAfter = 0.0,
                           const char* label = nullptr, bool snapCentre = false);
    // A dial from its record, `rect` in page units (0, 0 is the page's open top left); none for a
    // record without a parameter.
    Vinta_MiniDial* addDial(Vinta_MiniDial::CInfo& info);
    // A parameter owned by the page (proxies, the zoom); lives as long as the page.
    Ondra::ParameterProperty& ownParameter();
    // Parameters whose changes the page itself reacts to; told on any thread, so the reaction
    // waits for `applyChanges` on the window's thread.
    void listenTo(Ondra::IPluginParameter* watched);
    virtual void applyChanges() {}
    // Marks the page for a redraw from any thread without touching the frame.
    void markChanged() { changed.store(true, std::memory_order_relaxed); }
    Vinta::CRect localRect() const { return Vinta::CRect(0.0, 0.0, size.getWidth(), size.getHeight()); }
    Vinta::CColor frameColour() const;

private:
    void drawPanel(Vinta::CDrawContext* context, const Vinta::CRect& shape);

    PageSides* sides;
    Ondra::IPluginParameter* pageParameter;
    int32_t pageIndex;
    double titleFontSize = 10.0;
    Vinta::CColor panelColor;
    int32_t position;
    bool open = false;
    char title[32] = {0};
    Vinta::CRect tabRect;
    Vinta::CRect currentRect;
    Vinta_Animation animation;
    std::vector<Vinta_MiniDial*> dials;
    std::vector<std::unique_ptr<Ondra::ParameterProperty>> owned;
    std::vector<Ondra::IPluginParameter*> watched;
    std::atomic<bool> changed{true};
};

// The record of one of the seven pages: its place, its side's parameter and its dials' parameters.
Vinta_AttachedWindow::CInfo pageRecord(PageId id, PageSides* sides, PageHost& host);

}  // namespace ZonfraPages
