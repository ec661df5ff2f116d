#pragma once
// The menu of GUI sizes (100 to 200 %). A choice rescales the editor and stores the size.
#include "lib/controls/COptionMenu.h"
#include "lib/views/CControlListener.h"

namespace Vinta {

class CGuiScaleContext : public COptionMenu, public CControlListener {
public:
    explicit CGuiScaleContext(const CRect& size, CBitmap* background = nullptr);

    void draw(CDrawContext* context) override;
    int32_t onMouseDown(const CPoint& where, CButtonState buttons) override;
    const char* getClassName() const override { return "CGuiScaleContext"; }

    void valueChanged(CControl* control) override;
};

} // namespace Vinta
