#include "editor/pages/AttachedWindow.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "editor/pages/PageStyle.h"
#include "framework/parameters/UnitType.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/drawing/CFontDesc.h"

namespace ZonfraPages {

using namespace Vinta;

namespace {

Ondra::ParameterRecord sideRecord(const char* key, int32_t id) {
    return {key, key, key, 0.0f, 10.0f, 0.0f, 0.0f, false, 0.0f, Ondra::kUnitWhole, id};
}

// Edges on pixel centres, so that the one-unit frame stays sharp while the page moves.
CRect pixelAligned(const CRect& rect) {
    return {std::floor(rect.left) + 0.5, std::floor(rect.top) + 0.5, std::floor(rect.right) - 0.5,
            std::floor(rect.bottom) - 0.5};
}

}  // namespace

Vinta_AttachedWindow::CInfo pageRecord(PageId id, PageSides* sides, PageHost& host) {
    const PageRow& row = kPageRows[id];
    Vinta_AttachedWindow::CInfo info;
    info.rect = row.openRect;
    info.title = row.title;
    info.titleFontSize = 10.0;
    info.position = row.position;
    info.tabRect = row.tabRect;
    if (sides && row.side == kLeftSide) info.pageParameter = &sides->left;
    if (sides && row.side == kRightSide) info.pageParameter = &sides->right;
    info.pageIndex = row.index;
    info.panelColor = row.panelColor;
    info.sides = sides;
    for (int i = 0; i < Vinta_AttachedWindow::CInfo::kParameterCount && row.parameters[i]; ++i)
        info.parameters[i] = std::string_view(row.parameters[i]) == kGlobalLimiterKey ? host.getGlobalLimiterParameter()
                                                                                     : host.findParameter(row.parameters[i]);
    return info;
}

PageSides::PageSides() : left(sideRecord("PAGELEFT", 0x5047454C)), right(sideRecord("PAGERIGHT", 0x50474552)) {}

Vinta_AttachedWindow::Vinta_AttachedWindow(const CInfo& info)
    : CViewContainer(info.rect),
      sides(info.sides),
      pageParameter(info.pageParameter),
      pageIndex(info.pageIndex),
      titleFontSize(info.titleFontSize),
      panelColor(info.panelColor),
      position(info.position),
      tabRect(info.tabRect),
      currentRect(info.tabRect) {
    std::snprintf(title, sizeof title, "%s", info.title ? info.title : "");
    setTransparency(true);
    if (sides) sides->remember();
    if (pageParameter) pageParameter->addListener(this, false);
}

Vinta_AttachedWindow::~Vinta_AttachedWindow() {
    if (pageParameter) pageParameter->removeListener(this);
    for (Ondra::IPluginParameter* parameter : watched) parameter->removeListener(this);
    removeAll(true);  // the dials stop listening while the page's own parameters still exist
    if (sides) sides->forget();
}

Vinta_MiniDial* Vinta_AttachedWindow::addDial(Vinta_MiniDial::CInfo& info) {
    if (!info.parameter) return nullptr;
    auto* dial = static_cast<Vinta_MiniDial*>(info.CreateObject());
    addView(dial);
    dials.push_back(dial);
    return dial;
}

Vinta_MiniDial* Vinta_AttachedWindow::addRow(DialColumn& column, Ondra::IPluginParameter* parameter,
                                             double gapAfter, const char* label, bool snapCentre) {
    if (!parameter) return nullptr;
    Vinta_MiniDial::CInfo info;
    const double rowHeight = std::max(12.0, column.dialSize);
    info.rect = CRect(column.left, column.top, column.left + column.width, column.top + rowHeight);
    info.parameter = parameter;
    info.fontSize = column.fontSize;
    info.flags = column.flags;
    info.dialWidth = info.dialHeight = column.dialSize;
    info.dialOffsetX = column.dialOffset;
    info.dialOffsetY = (rowHeight - column.dialSize) * 0.5;
    info.labelOverride = label;
    info.snapEnabled = snapCentre;
    if (parameter->getUnitType() == Ondra::kUnitWhole) {
        info.stepped = true;
        info.stepCount = static_cast<int32_t>(std::lround(parameter->getMaximum() - parameter->getMinimum()));
    }
    column.top += 14.0 + gapAfter;
    return addDial(info);
}

Ondra::ParameterProperty& Vinta_AttachedWindow::ownParameter() {
    owned.push_back(std::make_unique<Ondra::ParameterProperty>());
    return *owned.back();
}

void Vinta_AttachedWindow::listenTo(Ondra::IPluginParameter* parameter) {
    if (!parameter) return;
    parameter->addListener(this, false);
    watched.push_back(parameter);
}

void Vinta_AttachedWindow::setOpen(bool state) {
    if (state == open) return;
    open = state;
    animation.restart();
    if (open && pageParameter) pageParameter->setValue(this, static_cast<float>(pageIndex));
    markChanged();
    setDirty(true);
}

void Vinta_AttachedWindow::parameterChanged(Ondra::IPluginParameter* parameter) {
    if (parameter && parameter == pageParameter) {
        if (pageParameter->getInt() != pageIndex) setOpen(false);
        return;
    }
    markChanged();
}

bool Vinta_AttachedWindow::hitTest(const CPoint& where, CButtonState) {
    return open ? size.pointInside(where) : tabRect.pointInside(where);
}

int32_t Vinta_AttachedWindow::onMouseDown(const CPoint& where, CButtonState buttons) {
    if (tabRect.pointInside(where)) {
        if (buttons & kLButton) {
            setOpen(!open);
            animation.restart();
            setDirty(true);
        }
        return kMouseEventHandledNoCapture;
    }
    if (!open) return kMouseEventNotHandled;
    applyChanges();
    const int32_t result = CViewContainer::onMouseDown(where, buttons);
    // A click on the page's own body goes no further, to the plot below.
    return result == kMouseEventNotHandled ? kMouseEventHandledNoCapture : result;
}

bool Vinta_AttachedWindow::isDirty() const {
    if (isAnimating()) return true;
    // A shut page shows only its tab: new data for its dials or graphics waits for the opening.
    if (!open) return dirty.load();
    return changed.load(std::memory_order_relaxed) || CViewContainer::isDirty();
}

void Vinta_AttachedWindow::redrawDirty() {
    if (visible && isDirty()) invalid();
}

CColor Vinta_AttachedWindow::frameColour() const { return withAlpha(kPanelColor200, 250); }

void Vinta_AttachedWindow::drawPanel(CDrawContext* context, const CRect& shape) {
    if (currentRect != tabRect) {
        context->blurRect(shape, 5.0, 0.0, 0);
        context->setFillColor(kBackingColor);
        context->drawRoundRect(shape, 3.0, kDrawFilled);
    }
    context->setFillColor(withAlpha(panelColor, 90));
    context->setFrameColor(frameColour());
    context->drawRoundRect(shape, 3.0, kDrawFilledAndStroked);

    if (title[0]) {
        context->setFont(kNormalFont, titleFontSize, 0);
        context->setFontColor(kPanelColor200);
        const CRect text(currentRect.left + 1.0, tabRect.top + 1.0, currentRect.right - 1.0, tabRect.bottom - 1.0);
        context->drawString(title, text, 0, 1);
    }

    // The arrow points the way the page will move on the next click.
    const double side = titleFontSize + 4.0;
    const bool rightEnd = position == 0 || position == 2;
    const double boxLeft = rightEnd ? tabRect.right - 2.0 - side : tabRect.left;
    const double cx = boxLeft + side * 0.5 - 3.0;
    const double cy = tabRect.top + side * 0.5 - 1.1;
    double dir = open ? 1.0 : -1.0;
    if (position >= 2) dir = -dir;
    const CPoint arrow[3] = {{cx + 3.0, cy - 4.0 * dir}, {cx, cy + 4.0 * dir}, {cx + 6.0, cy + 4.0 * dir}};
    context->setFillColor(kPanelColor200);
    context->drawPolygon(arrow, 3, kDrawFilled, true);
}

void Vinta_AttachedWindow::draw(CDrawContext* context) {
    if (!context) return;
    applyChanges();
    changed.store(false, std::memory_order_relaxed);
    context->setLineWidth(1.0f);
    const CRect& target = open ? size : tabRect;
    Vinta_Animation::moveRect(currentRect, target, animation.stepFraction(2.0));
    const bool animating = currentRect != target;

    CRect savedClip;
    context->getClipRect(savedClip);
    const CRect aligned = pixelAligned(currentRect);
    CRect clip(aligned.left, aligned.top, aligned.right + 0.5, aligned.bottom + 0.5);
    CRect parentClip = savedClip;
    clip.bound(parentClip);
    context->setClipRect(clip);
    CRect shape = aligned;
    shape.right -= 1.0;
    shape.bottom -= 1.0;
    drawPanel(context, shape);

    if (open || animating) {
        CViewContainer::drawRect(context, clip);
        const CPoint savedOffset = context->getOffset();
        context->setOffset(savedOffset + size.getTopLeft());
        CRect localClip = clip;
        localClip.offset(-size.left, -size.top);
        context->setClipRect(localClip);
        drawContent(context);
        context->setOffset(savedOffset);
    }
    context->setClipRect(savedClip);
    dirty = animating;
}

}  // namespace ZonfraPages
