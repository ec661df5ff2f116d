#include "editor/CZonfraEditor.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include "CORE/files/Settings.h"
#include "editor/CMultiDisplay.h"
#include "editor/EditorBitmaps.h"
#include "editor/EditorPalette.h"
#include "editor/presets/CPresetBrowser.h"
#include "editor/update/CUpdateNotification.h"
#include "effect/CZonfra.h"
#include "framework/parameters/ParameterRecord.h"
#include "framework/parameters/UnitType.h"
#include "lib/controls/CGuiScaleContext.h"
#include "lib/controls/CParamDisplay.h"
#include "lib/controls/Vinta_ActionButton.h"
#include "lib/controls/Vinta_AnimKnob.h"
#include "lib/controls/Vinta_RadioGroup.h"
#include "lib/controls/Vinta_TextEdit.h"
#include "lib/controls/ViewBuilder.h"
#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CFontDesc.h"
#include "lib/views/CFrame.h"
#include "update/ReskoSession.h"

using namespace Vinta;
using namespace ZonfraEditor;

namespace {

const char* const kGuiScaleName = "GuiScale";

std::string settingsKey() { return Core::makeKeyName("MORVANDEL", "zonfraQT"); }

struct DialRow {
    const char* key;
    double x, y;
    int type;
    bool snap;
};

// The nine dials of the panel, in building order.
constexpr DialRow kDials[] = {
    {"kDryWetMix", 277, 12, 3, false},     {"INPUTGAIN", 15, 221, 0, true},
    {"LOWPASSFREQ", 15, 336, 0, false},    {"LOWPASSQWIDTH", 123, 336, 1, false},
    {"LOWPASSQ", 140, 354, 2, false},      {"HIGHPASSQWIDTH", 318, 336, 1, false},
    {"HIGHPASSQ", 335, 354, 2, false},     {"HIGHPASSFREQ", 426, 336, 0, false},
    {"OUTPUTGAIN", 426, 221, 0, true},
};

// The read-out of each dial type: its box moves from (x + 19, y + 38) by these amounts.
struct ReadoutStyle {
    double left, top;
    float fontSize;
    CColor colour;
    bool twoLines, precise, mouse;
};
constexpr ReadoutStyle kReadouts[] = {
    {0, 0, 10, kValueTextColor, true, true, true},
    {0, -57, 10, kValueTextColor, false, true, false},
    {-17, -18, 10, kValueTextColor, true, false, true},
    {5, -35, 11, CColor{255, 255, 255, 220}, false, false, true},
};

constexpr BitmapId kDialBitmaps[] = {kDialBig, kDialBig, kDialSmall, kMixDial};

// The plot's parameters, in the order CPlotDisplay::Source lists them.
constexpr const char* kPlotKeys[] = {"LOWPASSFREQ",   "HIGHPASSFREQ",  "LOWPASSSLOPE", "HIGHPASSSLOPE", "LOWPASSQ",
                                     "HIGHPASSQ",     "LOWPASSQWIDTH", "HIGHPASSQWIDTH", "FILTERMODE",  "LP Strength",
                                     "HP Strength",   "LP StrengthLFO", "HP StrengthLFO"};
static_assert(sizeof kPlotKeys / sizeof *kPlotKeys == CPlotDisplay::kSourceCount);

constexpr CColor kTransparent{0, 0, 0, 0};

// Read-outs stand in the wells the background draws: no box of their own.
void frameless(CView* view) {
    if (auto* text = dynamic_cast<CParamDisplay*>(view)) {
        text->setStyle(kNoFrame);
        text->setTransparency(true);
    }
}

float peakOf(float minimum, float maximum) { return std::max(-minimum, maximum); }

}  // namespace

CZonfraEditor::CZonfraEditor(CZonfra* owner) : CVintariaEditor(owner), effect(owner) {
    setEditorSize(kWidth, kHeight);
    SharedBitmaps::acquire();
    readoutParameter.initFromRecord(
        Ondra::ParameterRecord{"READOUT", "READOUT", "READOUT", 0, 1, 0, 0, false, 0, Ondra::kUnitText, 0x70705244});
    readoutParameter.setLinkedText(&emptyText);
    infoPageParameter.initFromRecord(
        Ondra::ParameterRecord{"INFOPAGE", "INFOPAGE", "INFOPAGE", 0, 1, 1, 1, false, 0, Ondra::kUnitSwitch, 0x49504745});
    loadGuiScale();
}

CZonfraEditor::~CZonfraEditor() {
    close();
    SharedBitmaps::release();
}

CBitmap* CZonfraEditor::bitmap(int id) const {
    return SharedBitmaps::get(static_cast<BitmapId>(id), getGuiScale() > 1.0);
}

void CZonfraEditor::openHook(CFrame* newFrame) {
    if (!newFrame) return;
    newFrame->setBackground(bitmap(kBackground));
    buildDials(newFrame);
    buildSwitches(newFrame);

    Ondra::IPluginParameter* sources[CPlotDisplay::kSourceCount] = {};
    for (int i = 0; i < CPlotDisplay::kSourceCount; ++i) sources[i] = effect ? effect->findParameter(kPlotKeys[i]) : nullptr;
    auto* display = new CMultiDisplay(CRect(19, 53, 515, 209), effect, sources, &infoPageParameter);
    if (effect) display->getPlot()->setSampleRate(effect->getSampleRate());
    newFrame->addView(display);
    multiDisplay.store(display, std::memory_order_release);

    // The preset name and the browser's arrows beside it.
    if (effect) {
        Vinta_TextEdit::CInfo name;
        name.kind = kKindTextEdit;
        name.rect = CRect(64, 11, 218, 33);
        name.parameter = &effect->getPresetNameParameter();
        name.font = kNormalFont;
        name.fontSize = 14;
        name.editFontSize = 14;
        name.fontColor = kValueTextColor;
        name.maxChars = 30;
        name.align = kAlignCenter;
        name.hideName = name.preciseText = true;
        name.dragEditable = false;
        name.backColor = kTransparent;
        CView* nameBox = addViewFromRecord(&name, nullptr, newFrame);
        frameless(nameBox);
        auto* browser = new ZonfraPresets::CPresetBrowser(CRect(220, 11, 258, 33), effect, bitmap(kArrowLeft),
                                                          bitmap(kArrowRight), bitmap(kArrowDown), 0, 4, nameBox);
        newFrame->addView(browser);
        // Preset files dropped anywhere else load as if dropped on the browser.
        newFrame->setUnclaimedDropHandler([browser](CDragContainer* drag) { return browser->onDrop(drag, CPoint()); });
    }
    auto* scaleButton = new CGuiScaleContext(CRect(1, 0, 21, 45));
    newFrame->addView(scaleButton);
    openUpdateClient(newFrame);
}

void CZonfraEditor::openUpdateClient(CFrame* newFrame) {
    closeUpdateClient();
    constexpr const char* kProductName = "MMK zonfraQT";
    std::string enabled;
    Core::readSetting(Core::makeKeyName("MORVANDEL", kProductName), "UpdateCheck", enabled, "1");
    if (enabled == "0") return;
    updateSession = std::make_unique<Resko::CReskoSession>(1);
    updateSession->init(kProductName, "ZONFRAQT", 0x10300);
    updateNotification = Resko::createUpdateNotification(newFrame, CPoint(219, 450), updateSession.get());
    if (updateNotification) updateNotification->remember();
}

void CZonfraEditor::closeUpdateClient() {
    if (updateNotification) {
        updateNotification->releaseSession();
        updateNotification->forget();
        updateNotification = nullptr;
    }
    updateSession.reset();
}

void CZonfraEditor::buildDials(CFrame* newFrame) {
    for (const DialRow& row : kDials) {
        Ondra::IPluginParameter* parameter = effect ? effect->findParameter(row.key) : nullptr;
        CBitmap* strip = bitmap(kDialBitmaps[row.type]);
        const double side = strip ? strip->getWidth() : 0.0;
        Vinta_AnimKnob::CInfo knob;
        knob.kind = kKindCreateObject;
        knob.rect = CRect(row.x, row.y, row.x + side, row.y + side);
        knob.parameter = parameter;
        knob.bitmap = strip;
        knob.frameCount = 128;
        knob.frameHeight = side;
        knob.hitRadius = static_cast<float>(side / 2.0);
        knob.circularHit = true;
        knob.zoomFactor = 10;
        knob.snapCentre = 0.5f;
        knob.snapBand = 0.05f;
        knob.snapEnabled = row.snap;
        knob.stepCount = 10;
        knob.stepped = false;
        knob.smoothing = true;
        addViewFromRecord(&knob, nullptr, newFrame);

        const ReadoutStyle& style = kReadouts[row.type];
        Vinta_TextEdit::CInfo text;
        text.kind = kKindTextEdit;
        const double left = row.x + 19 + style.left, top = row.y + 38 + style.top;
        text.rect = CRect(left, top, left + 50, top + 18);
        text.parameter = parameter;
        text.font = kNormalFont;
        text.maxChars = 200;
        text.editFontSize = 11;
        text.hideName = true;
        text.dragEditable = false;
        text.fontSize = style.fontSize;
        text.fontColor = style.colour;
        text.twoLines = style.twoLines;
        text.preciseText = style.precise;
        text.mouseEnabled = style.mouse;
        text.backColor = kTransparent;
        frameless(addViewFromRecord(&text, nullptr, newFrame));
    }
}

void CZonfraEditor::buildSwitches(CFrame* newFrame) {
    for (int side = 0; side < 2; ++side) {
        Vinta_RadioGroupControlInfo slopes;
        slopes.kind = kKindCreateObject;
        slopes.rect = CRect(149 + 195 * side, 233, 179 + 195 * side, 309);
        slopes.parameter = effect ? effect->findParameter(side == 0 ? "LOWPASSSLOPE" : "HIGHPASSSLOPE") : nullptr;
        slopes.count = 4;
        slopes.noItems = false;
        slopes.vertical = 1;
        slopes.stepX = 30;
        slopes.stepY = 15;
        slopes.drawOffBitmap = true;
        slopes.onBitmap = bitmap(kLedOn);
        slopes.offBitmap = bitmap(kLedOff);
        addViewFromRecord(&slopes, nullptr, newFrame);
    }
    struct SwitchRow {
        BitmapId bitmap;
        double x, y;
        const char* key;
    };
    for (const SwitchRow& row : {SwitchRow{kLinkButton, 224, 300, "LINKFILTERS"}, SwitchRow{kModeSwitch, 262, 370, "FILTERMODE"}}) {
        CBitmap* rows = bitmap(row.bitmap);
        Vinta_ActionButton::CInfo button;
        button.kind = kKindCreateObject;
        const double w = rows ? rows->getWidth() : 0.0, h = rows ? rows->getHeight() / 2.0 : 0.0;
        button.rect = CRect(row.x, row.y, row.x + w, row.y + h);
        button.parameter = effect ? effect->findParameter(row.key) : nullptr;
        button.bitmap = rows;
        button.type = Vinta_ActionButton::kToggle;
        button.fade = true;
        button.fadeSpeed = 3.0f;
        CView* view = addViewFromRecord(&button, nullptr, newFrame);
        if (view && row.bitmap == kLinkButton) view->setMouseableArea(CRect(233, 316, 299, 344));
    }
}

void CZonfraEditor::close() {
    // The audio thread lets go of the display before the views go. Both sides store one variable
    // and then read the other, so the order is sequentially consistent.
    multiDisplay.store(nullptr);
    while (tapsEnded.load(std::memory_order_acquire) != tapsBegun.load()) std::this_thread::yield();
    CVintariaEditor::close();
    // After the frame's events and paints have stopped, so that no view still reaches the session.
    closeUpdateClient();
    readoutParameter.setLinkedText(&emptyText);
}

void CZonfraEditor::onIdleHook() {
    if (frame) frame->invalid();
}

void CZonfraEditor::audioTap(const CZonfra& source, const float* left, const float* right, int count) {
    if (CMultiDisplay* display = beginTap()) {
        const SignalChain& chain = source.signalChain();
        const ModulationControl& control = source.modulation();
        const bool bypassed = source.isBypassed() && chain.isBypassSettled();
        float inL, inR;
        if (bypassed) {
            inL = chain.peakHoldLeft(), inR = chain.peakHoldRight();
        } else {
            const CGainRamp& in = chain.inputGain;
            inL = peakOf(in.minL, in.maxL), inR = peakOf(in.minR, in.maxR);
        }
        display->setInputLevels(inL, inR);
        const CGainRamp& out = chain.outputGain;
        if (bypassed)
            display->setOutputLevels(inL, inR);
        else
            display->setOutputLevels(peakOf(out.minL, out.maxL), peakOf(out.minR, out.maxR));
        display->getPlot()->setSampleRate(source.getSampleRate());
        if (left && count > 0) display->pushSpectrum(left, right, count);
        display->setEnvelopeCutoffs(control.low().target, control.high().target);
        display->setLfoCutoffs(control.low().modulated, control.high().modulated);
        display->pushEnvelope(control.low().envOut, control.high().envOut);
        display->setGainReduction(chain.limiter.getMeterGain());
        display->setRingModFrequency(control.ringFrequencyInForce());
        display->setFreqModValues(control.freqModFrequencyInForce(), control.freqModMixInForce());
    }
    endTap();
}

void CZonfraEditor::resetDisplays() {
    if (CMultiDisplay* display = beginTap()) display->clearDisplays();
    endTap();
}

CMultiDisplay* CZonfraEditor::beginTap() {
    tapsBegun.store(tapsBegun.load(std::memory_order_relaxed) + 1);
    return multiDisplay.load();
}

void CZonfraEditor::endTap() { tapsEnded.store(tapsBegun.load(std::memory_order_relaxed), std::memory_order_release); }

void CZonfraEditor::updateHoverText() {
    CMultiDisplay* display = getMultiDisplay();
    if (!frame || !display) return;
    const CPoint where = frame->getCurrentLocation();
    auto* control = dynamic_cast<CControl*>(frame->getViewAt(where, true));
    Ondra::IPluginParameter* parameter = control ? control->getParameter() : nullptr;
    char text[192] = {0};
    if (parameter && parameter != &readoutParameter) {
        char value[160] = {0};
        Ondra::formatText(parameter, value, true, true, true);
        // A control without a name of its own (the preset name box) shows its text alone.
        const char* name = parameter->getName() ? parameter->getName() : "";
        std::snprintf(text, sizeof text, "%s%s%s", name, name[0] ? ": " : "", value);
    }
    if (std::strcmp(text, hoverText.c_str()) == 0 && (text[0] != 0) == (readoutParameter.getLinkedText() == &hoverText))
        return;
    hoverText.assign(text);
    readoutParameter.setLinkedText(text[0] ? static_cast<Core::CString*>(&hoverText) : &emptyText);
    display->getPlot()->setReadout(text);
    readoutParameter.notify();
}

void CZonfraEditor::saveGuiScale() {
    char text[16];
    std::snprintf(text, sizeof text, "%d", static_cast<int>(getGuiScale() * 100.0 + 0.02));
    Core::writeSetting(settingsKey(), kGuiScaleName, text);
}

void CZonfraEditor::loadGuiScale() {
    std::string stored;
    Core::readSetting(settingsKey(), kGuiScaleName, stored, "100");
    setGuiScale(std::atof(stored.c_str()) / 100.0);
}

void CZonfraEditor::getEditorRect(EditorRect& out) {
    const CRect& scaled = getRectPointer();
    out = {scaled.left, scaled.top, scaled.right, scaled.bottom};
}

void CZonfraEditor::openEditor(void* parent) {
    if (!parent || isOpen()) return;
    setEventDriver(X11::EventDriver::OwnThread);
    open(parent);
}

void CZonfraEditor::closeEditor() { close(); }
