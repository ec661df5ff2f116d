#include "editor/PlaceholderPanel.h"

#include "editor/KnobFilmstrip.h"
#include "framework/plugin/OndraOS.h"
#include "lib/controls/CGuiScaleContext.h"
#include "lib/controls/CParamDisplay.h"
#include "lib/controls/CTextLabel.h"
#include "lib/controls/Vinta_AnimKnob.h"
#include "lib/controls/Vinta_ParamDisplay.h"
#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CFontDesc.h"
#include "lib/views/CFrame.h"

namespace ZonfraEditor {

using namespace Vinta;

namespace {

constexpr CColor kPanelColor{28, 29, 33, 255};
constexpr CColor kTitleColor{250, 200, 60, 225};
constexpr CColor kLabelColor{190, 190, 196, 255};

void styleText(CParamDisplay* text, CFontDesc* font, float size, const CColor& colour) {
    text->setFont(font);
    text->setFontSize(size);
    text->setFontColor(colour);
    text->setHoriAlign(1);
    text->setStyle(kNoFrame);
    text->setTransparency(true);
}

}  // namespace

void buildPlaceholderPanel(CFrame* frame, Ondra::OndraOS* plugin) {
    if (!frame || !plugin) return;
    frame->setBackgroundColor(kPanelColor);

    auto* title = new CTextLabel(CRect(0.0, 40.0, kPanelWidth, 80.0), "MMK Zonfra QT");
    styleText(title, kBoldFont, 28.0f, kTitleColor);
    frame->addView(title);

    CBitmap* filmstrip = drawKnobFilmstrip();
    for (int column = 0; column < 5; ++column) {
        Ondra::IPluginParameter* parameter = plugin->findParameter(kPanelParameters[column]);
        if (!parameter) continue;
        const double left = column * kColumnWidth;
        const double knobLeft = left + (kColumnWidth - kKnobSize) / 2.0;

        auto* name = new CTextLabel(CRect(left, kKnobTop - 30.0, left + kColumnWidth, kKnobTop - 8.0),
                                    kPanelCaptions[column]);
        styleText(name, kSystemFont, 12.0f, kLabelColor);
        frame->addView(name);

        Vinta_AnimKnob::CInfo knob;
        knob.rect = CRect(knobLeft, kKnobTop, knobLeft + kKnobSize, kKnobTop + kKnobSize);
        knob.parameter = parameter;
        knob.bitmap = filmstrip;
        knob.frameCount = kKnobFrames;
        knob.frameHeight = kKnobSize;
        frame->addView(knob.CreateObject());

        auto* value = new Vinta_ParamDisplay(
            CRect(left, kKnobTop + kKnobSize + 8.0, left + kColumnWidth, kKnobTop + kKnobSize + 30.0), parameter);
        styleText(value, kSystemFont, 12.0f, kTitleColor);
        frame->addView(value);
    }
    filmstrip->forget();

    // The GUI size menu (100 to 200 %) over its caption in the top left corner.
    auto* sizeCaption = new CTextLabel(CRect(6.0, 6.0, 70.0, 22.0), "GUI size");
    styleText(sizeCaption, kSystemFont, 11.0f, kLabelColor);
    frame->addView(sizeCaption);
    frame->addView(new CGuiScaleContext(CRect(0.0, 0.0, 76.0, 28.0)));
}

}  // namespace ZonfraEditor
