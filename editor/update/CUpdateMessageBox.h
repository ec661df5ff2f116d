#pragma once
// The layer over the whole editor that asks whether to fetch the update, and tells how the download
// ended. It takes every click while shown; a click beside the box only flashes the cover.
#include <cstdint>

#include "editor/pages/PageAnimation.h"
#include "lib/views/CView.h"

namespace Resko {

class CUpdateNotification;

class CUpdateMessageBox : public Vinta::CView {
public:
    enum Mode : int32_t { kQuestion = 0, kFinished = 1, kFailed = 2 };

    CUpdateMessageBox(const Vinta::CRect& rect, CUpdateNotification* owner, int32_t updateMode);
    void setOwner(CUpdateNotification* notification) { owner = notification; }
    void setMode(int32_t value);
    int32_t getMode() const { return mode; }
    // The box, centred, and its buttons; from the view's size.
    void layout();
    const Vinta::CRect& getBoxRect() const { return boxRect; }
    const Vinta::CRect& getAcceptButton() const { return acceptButton; }
    const Vinta::CRect& getOkButton() const { return okButton; }
    const Vinta::CRect& getCancelButton() const { return cancelButton; }

    void setVisible(bool show) override;
    void draw(Vinta::CDrawContext* context) override;
    int32_t onMouseMoved(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    int32_t onMouseDown(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    // Nothing under the layer turns while it is shown.
    bool onWheel(const Vinta::CPoint&, float, Vinta::CButtonState) override { return true; }
    const char* getClassName() const override { return "CUpdateMessageBox"; }

private:
    void drawButton(Vinta::CDrawContext* context, const Vinta::CRect& button, const char* label,
                    const Vinta::CColor& colour) const;

    ZonfraPages::Vinta_Animation fade{300};
    ZonfraPages::Vinta_Animation flash{100};
    Vinta::CRect boxRect;
    CUpdateNotification* owner;
    Vinta::CRect acceptButton, okButton, cancelButton;
    Vinta::CPoint mousePosition{-1.0, -1.0};
    int32_t mode = kQuestion;
    int32_t updateMode;
};

}  // namespace Resko
