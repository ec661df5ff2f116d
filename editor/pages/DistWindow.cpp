#include "editor/pages/DistWindow.h"

#include "editor/pages/ModLink.h"

namespace ZonfraPages {

// Parameters: drive level and place, rate reduction and its place, its link switch and amount.
CDistWindow::CDistWindow(const CInfo& info) : Vinta_AttachedWindow(info), rateLink(info.parameters[4]) {
    DialColumn column{5.0, 4.0, 105.0, 45.0};
    addRow(column, info.parameters[0]);
    addRow(column, info.parameters[1], 5.0);
    addRow(column, info.parameters[2]);
    addRow(column, info.parameters[3]);
    addRow(column, rateLink);
    addRow(column, info.parameters[5]);
    listenTo(rateLink);
}

void CDistWindow::drawContent(Vinta::CDrawContext* context) {
    if (rateLink && rateLink->getBool()) drawLinkMark(context, 30.0, 36.0);
}

}  // namespace ZonfraPages
