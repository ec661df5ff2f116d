#pragma once
// The badge that tells of an update: a dark red box that pulses until the pointer is over it, and a
// click on it brings the question.
#include "editor/pages/PageAnimation.h"
#include "lib/views/CView.h"

namespace Resko {

class CUpdateNotification;

class CUpdateInfoIcon : public Vinta::CView {
public:
    CUpdateInfoIcon(const Vinta::CRect& rect, CUpdateNotification* owner);
    void setOwner(CUpdateNotification* notification) { owner = notification; }
    bool isHovered() const { return hover; }

    void draw(Vinta::CDrawContext* context) override;
    int32_t onMouseEntered(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    int32_t onMouseExited(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    int32_t onMouseDown(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    const char* getClassName() const override { return "CUpdateInfoIcon"; }

private:
    bool hover = false;
    CUpdateNotification* owner;
    ZonfraPages::Vinta_Animation pulse{500};
};

}  // namespace Resko
