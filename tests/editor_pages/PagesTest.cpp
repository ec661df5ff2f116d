#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "core_files/TempHome.h"
#include "editor/pages/EffectPageHost.h"
#include "editor/pages/EnvelopeWindow.h"
#include "editor/pages/LimiterWindow.h"
#include "editor/pages/RingModWindow.h"
#include "editor/pages/SyspageWindow.h"
#include "effect/CZonfra.h"
#include "framework/parameters/UnitType.h"
#include "lib/drawing/CBitmap.h"
#include "lib/views/VintaClock.h"

namespace {

using namespace ZonfraPages;
using Vinta::CPoint;
using Vinta::CRect;

uint32_t fakeNow = 1000;

struct Vst3Callback : Ondra::OndraCallback {
    int getPluginType() override { return 2; }
};

struct RecordingHost : EffectPageHost {
    using EffectPageHost::EffectPageHost;
    void openPresetFolder() override { ++opened; }
    void changePresetFolder(Vinta::CFrame*) override { ++changed; }
    void writeSupportReport(Vinta::CFrame*) override { ++reports; }
    int opened = 0, changed = 0, reports = 0;
};

class Pages : public ::testing::Test {
protected:
    void SetUp() override {
        Vinta::setTickSource([] { return fakeNow; });
        display = new Vinta::CViewContainer(CRect(0, 0, 496, 156));
        set = addPages(*display, host);
    }
    void TearDown() override {
        display->forget();
        canvas->forget();
        Vinta::setTickSource(nullptr);
    }
    Vinta_AttachedWindow* page(PageId id) const { return set.pages()[id]; }
    Ondra::IPluginParameter* find(const char* key) { return effect->findParameter(key); }
    void draw(Vinta_AttachedWindow* shown) { shown->draw(canvas->getDrawContext()); }
    void settle() {
        fakeNow += 5000;
        for (auto* shown : set.pages()) draw(shown);
    }
    void click(const CPoint& where, Vinta::CButtonState buttons = Vinta::kLButton) {
        display->onMouseDown(where, buttons);
        display->onMouseUp(where, buttons);
    }

    Vst3Callback callback;
    std::unique_ptr<CZonfra> effect = std::make_unique<CZonfra>(&callback);
    RecordingHost host{effect.get()};
    Vinta::CViewContainer* display = nullptr;
    Vinta::CBitmap* canvas = new Vinta::CBitmap(496, 156);
    PageSet set;
};

// Every dial of every page in its order; "@global" is the effect's global limiter switch, a link
// key is set before the row so that the root dials take the mouse, and `range` units of drag cover
// the whole range.
struct ControlRow { PageId page; const char* key; bool snaps = false; const char* link = nullptr; double range = 200; };
const ControlRow kControls[] = {
    {kEnvelopePage, "LP Attack"}, {kEnvelopePage, "LP Release"}, {kEnvelopePage, "LP Strength", true},
    {kEnvelopePage, "HP Attack"}, {kEnvelopePage, "HP Release"}, {kEnvelopePage, "HP Strength", true},
    {kEnvelopePage, "MEASUREPOINT"}, {kEnvelopePage, "ENV_BOOST", true}, {kEnvelopePage, "PPZOOM"},
    {kLfoPage, "LFO Rate"}, {kLfoPage, "LFO Shape"}, {kLfoPage, "LFO Sync"}, {kLfoPage, "LP StrengthLFO", true},
    {kLfoPage, "HP StrengthLFO", true}, {kLfoPage, "LFO Shift"}, {kLfoPage, "LFO BPM", false, nullptr, 400.0},
    {kRingModPage, "RingModFreq"}, {kRingModPage, "RingModeStrength"}, {kRingModPage, "RinkModLinkFreqPerc."},
    {kRingModPage, "RingModFreq", false, "RinkModLinkFreqPerc."},
    {kFreqModPage, "FreqModFreq"}, {kFreqModPage, "FreqModeStrength"}, {kFreqModPage, "FreqModLinkFreqPerc."},
    {kFreqModPage, "FreqModLinkMixPercent"}, {kFreqModPage, "FreqModFreq", false, "FreqModLinkFreqPerc."},
    {kFreqModPage, "FreqModeStrength", false, "FreqModLinkMixPercent"},
    {kDistPage, "DISTLEVEL"}, {kDistPage, "DISTPREPOST"}, {kDistPage, "RATEREDUCE_LEVEL"},
    {kDistPage, "RATE_PREPOST"}, {kDistPage, "RATE_LPLINK"}, {kDistPage, "RATE_LINK_AMOUNT"},
    {kLimiterPage, "LimitRelease"}, {kLimiterPage, "LimiterBypass"}, {kLimiterPage, "LimiterOutGain"},
    {kLimiterPage, "@global"}, {kSystemPage, "FilterInteria"},
};
const char* const kLinkKeys[] = {"RinkModLinkFreqPerc.", "FreqModLinkFreqPerc.", "FreqModLinkMixPercent"};

TEST_F(Pages, EveryDialEditsItsParameterByItsMappingAndFollowsIt) {
    int rowOnPage[kPageCount] = {};
    for (const ControlRow& row : kControls) {
        SCOPED_TRACE(row.key);
        Vinta_AttachedWindow* shown = page(row.page);
        for (const char* key : kLinkKeys) find(key)->setValue(0.0f);
        if (row.link) find(row.link)->setValue(0.5f);
        shown->setOpen(true);
        settle();
        const auto& dials = shown->getDials();
        const int index = rowOnPage[row.page]++;
        ASSERT_LT(index, static_cast<int>(dials.size()));
        Vinta_MiniDial* dial = dials[index];
        Ondra::IPluginParameter* parameter = std::string(row.key) == "@global"  ? host.getGlobalLimiterParameter()
                                             : std::string(row.key) == "PPZOOM" ? &set.envelope->getZoomParameter()
                                                                                : find(row.key);
        ASSERT_EQ(dial->getParameter(), parameter);

        const CPoint at = dial->getDialRect().getCenter() + shown->getViewSize().getTopLeft();
        const float before = parameter->getNormalized();
        if (dial->isSwitch()) {
            click(at);
            EXPECT_EQ(parameter->getBool(), before < 0.5f);
        } else {
            const double up = before > 0.5f ? -40.0 : 40.0;
            display->onMouseDown(at, Vinta::kLButton);
            display->onMouseMoved(at - CPoint(0.0, up), Vinta::kLButton);
            display->onMouseUp(at - CPoint(0.0, up), Vinta::kLButton);
            const double expected = before + up / row.range;
            const double span = parameter->getMaximum() - parameter->getMinimum();
            const int steps = parameter->getUnitType() == Ondra::kUnitWhole ? static_cast<int>(std::lround(span)) : 0;
            if (row.snaps)
                EXPECT_GT((dial->getValue() - before) * up, 0.0);
            else if (steps > 0)
                EXPECT_NEAR(dial->getValue(), std::floor(expected * steps + 0.5) / steps, 1e-5);
            else
                EXPECT_NEAR(dial->getValue(), expected, 1e-5);
            EXPECT_NEAR(parameter->getValue(), parameter->toValue(dial->getValue()), 1e-4 * span);
        }
        parameter->setNormalized(dial->isSwitch() ? 1.0f : 0.25f);
        EXPECT_NEAR(dial->getValue(), parameter->getNormalized(), 1e-6);
    }
    for (int id = 0; id < kPageCount; ++id)
        EXPECT_EQ(rowOnPage[id], static_cast<int>(page(PageId(id))->getDials().size())) << kPageRows[id].title;
}

// While a link amount is not 0 the main dial shows the value in force and rests, and the root dial
// edits the stored value.
struct LinkRow { PageId page; const char* amount; int shownDial, rootDial; const char* stored; };
const LinkRow kLinks[] = {
    {kRingModPage, "RinkModLinkFreqPerc.", 0, 3, "RingModFreq"},
    {kFreqModPage, "FreqModLinkFreqPerc.", 0, 4, "FreqModFreq"},
    {kFreqModPage, "FreqModLinkMixPercent", 1, 5, "FreqModeStrength"},
};

TEST_F(Pages, LinkAmountsHandTheMainDialToTheValueInForce) {
    for (const LinkRow& row : kLinks) {
        SCOPED_TRACE(row.amount);
        Vinta_AttachedWindow* shown = page(row.page);
        shown->setOpen(true);
        Vinta_MiniDial *main = shown->getDials()[row.shownDial], *root = shown->getDials()[row.rootDial];
        Ondra::IPluginParameter* stored = find(row.stored);
        const float inForce = stored->getMinimum() + 0.3f * (stored->getMaximum() - stored->getMinimum());
        set.setRingModFrequency(inForce);
        set.setFreqModValues(inForce, inForce);

        find(row.amount)->setValue(0.5f);
        settle();
        EXPECT_NE(main->getParameter(), stored);
        EXPECT_STREQ(main->getParameter()->getName(), stored->getName());
        EXPECT_FLOAT_EQ(main->getParameter()->getValue(), inForce);
        EXPECT_TRUE(!main->isMouseActive() && root->isMouseActive());
        const float kept = stored->getValue();
        click(main->getDialRect().getCenter() + shown->getViewSize().getTopLeft(), Vinta::kLButton | Vinta::kControl);
        EXPECT_EQ(stored->getValue(), kept);

        find(row.amount)->setValue(0.0f);
        settle();
        EXPECT_EQ(main->getParameter(), stored);
        EXPECT_TRUE(main->isMouseActive() && !root->isMouseActive());
    }
}

// Clicks on a page's tab (or, at -1, the close cross) in turn, and which pages are open after each.
TEST_F(Pages, PagesOfOneSideShutEachOtherAndTheCrossShutsAll) {
    const std::pair<int, std::string> steps[] = {
        {kEnvelopePage, "1000000"}, {kFreqModPage, "0001000"}, {kRingModPage, "0011000"}, {kEnvelopePage, "1000000"},
        {kLfoPage, "1100000"}, {kDistPage, "1000100"}, {kLimiterPage, "1000110"}, {kLfoPage, "1100000"},
        {kSystemPage, "1100001"}, {kSystemPage, "1100000"}, {kSystemPage, "1100001"}, {-1, "0000000"},
    };
    for (const auto& [tab, expected] : steps) {
        click((tab < 0 ? kCloseButtonRect : kPageRows[tab].tabRect).getCenter());
        settle();
        std::string open;
        for (auto* shown : set.pages()) open += shown->isOpen() ? '1' : '0';
        EXPECT_EQ(open, expected) << "after a click on " << tab;
    }
}

TEST_F(Pages, EachPageSlidesOpenAndShutOverTicks) {
    const auto midway = [](const CRect& a, const CRect& b) {
        return CRect((a.left + b.left) / 2, (a.top + b.top) / 2, (a.right + b.right) / 2, (a.bottom + b.bottom) / 2);
    };
    for (auto* shown : set.pages()) {
        SCOPED_TRACE(shown->getTitle());
        const CRect tab = shown->getTabRect(), full = shown->getViewSize();
        for (const auto& [from, to] : {std::pair{tab, full}, std::pair{full, tab}}) {
            click(tab.getCenter());
            fakeNow += 60;  // half of the 120 ticks of a step's full way
            draw(shown);
            EXPECT_TRUE(shown->getCurrentRect() == midway(from, to) && shown->isAnimating());
            fakeNow += 120;
            draw(shown);
            EXPECT_TRUE(shown->getCurrentRect() == to && !shown->isAnimating());
        }
    }
}

TEST(PageAnimation, EdgesMoveByTheFractionAndSnapWhenClose) {
    const struct { double from, to, fraction, expected; } cases[] = {
        {0, 100, 0.5, 50}, {100, 0, 0.25, 75}, {10, 10.7, 0.1, 10.7}, {10, 10.8, 0.5, 10.4}, {5, 9, 0, 5}};
    for (const auto& c : cases) {
        CRect rect(c.from, c.from, c.from, c.from);
        Vinta_Animation::moveRect(rect, CRect(c.to, c.to, c.to, c.to), c.fraction);
        EXPECT_DOUBLE_EQ(rect.left, c.expected) << c.from << " to " << c.to;
        EXPECT_DOUBLE_EQ(rect.bottom, c.expected);
    }
}

TEST_F(Pages, SystemPageButtonsReachTheHostAndTheTabStillShutsIt) {
    Vinta_AttachedWindow* system = page(kSystemPage);
    click(system->getTabRect().getCenter());
    settle();
    const CPoint origin = system->getViewSize().getTopLeft();
    click(set.system->openButton().getCenter() + origin);
    click(set.system->changeButton().getCenter() + origin);
    click(set.system->changeButton().getCenter() + origin, Vinta::kRButton);
    click(set.system->supportButton().getCenter() + origin);
    EXPECT_EQ((std::vector{host.opened, host.changed, host.reports}), (std::vector{1, 1, 1}));
    EXPECT_EQ(set.system->getVersionLine(), "Version: MMK Zonfra QT - 1.3.0 64bit VST3");
    EXPECT_TRUE(system->isOpen());
    click(system->getTabRect().getCenter());
    EXPECT_FALSE(system->isOpen());
}

TEST(SyspageWindow, LongFolderPathsLoseTheirFront) {
    const auto measure = [](const std::string& text) { return 5.0 * static_cast<double>(text.size()); };
    EXPECT_EQ(CSyspageWindow::fitPath("/home/a/presets", 100.0, measure), "/home/a/presets");
    EXPECT_EQ(CSyspageWindow::fitPath("/home/someone/.local/share/zonfra/presets", 100.0, measure),
              "....e/zonfra/presets");
    EXPECT_EQ(CSyspageWindow::fitPath("/abcdef", 10.0, measure), "....");
}

TEST_F(Pages, DisplaysFollowTheTapAndStaySaneOnBadInput) {
    for (int i = 0; i < 4; ++i) set.pushEnvelope(0.2f * i, 0.1f);
    EXPECT_EQ(set.envelope->historyAt(true, 0), 0.0f);  // four taps make no pixel yet
    set.pushEnvelope(NAN, 0.9f);
    EXPECT_FLOAT_EQ(set.envelope->historyAt(true, 0), 0.6f);
    EXPECT_FLOAT_EQ(set.envelope->historyAt(false, 0), 0.9f);
    // The limiter's meter goes down at once, back slowly, and stays on NaN.
    for (auto [reduction, shown] : {std::pair{0.5f, 0.5f}, {1.0f, 0.505f}, {NAN, 0.505f}}) {
        set.setGainReduction(reduction);
        EXPECT_NEAR(set.limiter->getShownGain(), shown, 1e-6) << reduction;
    }
    EXPECT_NEAR(CLimiterWindow::barFraction(0.5), 0.25, 0.01);  // -6 dB of a bar of 24
    EXPECT_DOUBLE_EQ(CLimiterWindow::barFraction(0.0001), 1.0);
    find("RinkModLinkFreqPerc.")->setValue(1.0f);
    set.setRingModFrequency(NAN);
    settle();
    EXPECT_TRUE(std::isfinite(set.ringMod->getDials()[0]->getParameter()->getValue()));
    set.clearDisplays();
    EXPECT_EQ(set.envelope->historyAt(false, 0), 0.0f);
    EXPECT_EQ(set.limiter->getShownGain(), 1.0f);
}

}  // namespace

// The system page's Support button writes the report with the effect's and the host's sections.
TEST(SyspageWindow, SupportWritesTheReportToTheDesktop) {
    TempHome home;
    setenv("XDG_DESKTOP_DIR", (home.root / "Desktop").c_str(), 1);
    Vst3Callback callback;
    CZonfra effect(&callback);
    EffectPageHost(&effect).writeSupportReport(nullptr);
    std::ifstream in(home.root / "Desktop" / "zonfraQT Support.txt");
    const std::string text((std::istreambuf_iterator<char>(in)), {});
    EXPECT_NE(text.find("hosted plugin type: VST3\n"), std::string::npos) << text;
    EXPECT_NE(text.find("Samplerate : 44100\nInterface  : VST3\n"), std::string::npos) << text;
}
