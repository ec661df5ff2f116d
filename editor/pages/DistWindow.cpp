#include "editor/pages/DistWindow.h"

#include "editor/pages/ModLink.h"
#include "editor/pages/Pages.h"

namespace ZonfraPages {

CDistWindow::CDistWindow(PageHost& host, PageSides* pageSides)
    : Vinta_AttachedWindow(pageLayout(kDistPage, pageSides), pageSides), rateLink(host.findParameter("RATE_LPLINK")) {
    DialColumn column{5.0, 4.0, 105.0, 45.0};
    addRow(column, host.findParameter("DISTLEVEL"));
    addRow(column, host.findParameter("DISTPREPOST"), 5.0);
    addRow(column, host.findParameter("RATEREDUCE_LEVEL"));
    addRow(column, host.findParameter("RATE_PREPOST"));
    addRow(column, rateLink);
    addRow(column, host.findParameter("RATE_LINK_AMOUNT"));
    listenTo(rateLink);
}

void CDistWindow::drawContent(Vinta::CDrawContext* context) {
    if (rateLink && rateLink->getBool()) drawLinkMark(context, 30.0, 36.0);
}

}  // namespace ZonfraPages
