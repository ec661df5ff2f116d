#include "ViewTestSupport.h"

#include "framework/parameters/IPluginParameter.h"

namespace VintaTest {

int ProbeView::alive = 0;

std::string RecordingEditor::name(Ondra::IPluginParameter* p) { return p ? p->getName() : "null"; }

FrameFixture::FrameFixture() : frame(new CFrame(CRect(0, 0, 400, 300), nullptr, &editor, platform)) {}

FrameFixture::~FrameFixture() { frame->close(); }

ProbeView* FrameFixture::probe(const char* name, const CRect& rect, int32_t downResult, CViewContainer* into) {
    auto* view = new ProbeView(name, rect, log, downResult);
    ++ProbeView::alive;
    (into ? into : frame)->addView(view);
    return view;
}

} // namespace VintaTest
