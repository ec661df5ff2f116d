#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "EditorFixture.h"
#include "support/AllocationCounter.h"

namespace {

using ZonfraEditor::CPlotDisplay;

std::vector<double> logPoints(int count, double from, double to) {
    std::vector<double> hz(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) hz[static_cast<size_t>(i)] = from * std::pow(to / from, i / (count - 1.0));
    return hz;
}

// Decibels of a recorded impulse response at each frequency.
std::vector<double> spectrumOf(const std::vector<float>& response, double scale, const std::vector<double>& hz, double rate) {
    std::vector<double> db;
    for (double f : hz) {
        std::complex<double> sum;
        for (size_t n = 0; n < response.size(); ++n)
            sum += static_cast<double>(response[n]) * std::polar(1.0, -2.0 * std::numbers::pi * f * n / rate);
        db.push_back(20.0 * std::log10(std::abs(sum) / scale));
    }
    return db;
}

struct FilterCase { int slope, mode; };

}  // namespace

class PlotCurves : public OpenEditor, public ::testing::WithParamInterface<FilterCase> {};

// The curves against the effect's own output: an impulse through the whole chain, fully wet.
TEST_P(PlotCurves, StaticCurvesAreTheResponseOfTheFiltersTheEffectRuns) {
    const auto [slope, mode] = GetParam();
    for (auto [key, value] : {std::pair{"FILTERMODE", float(mode)}, {"LOWPASSSLOPE", float(slope)},
                              {"HIGHPASSSLOPE", float(slope)}, {"LOWPASSFREQ", mode ? 300.0f : 3000.0f},
                              {"HIGHPASSFREQ", mode ? 5000.0f : 150.0f}, {"LOWPASSQ", 0.4f}, {"HIGHPASSQ", 0.25f},
                              {"LOWPASSQWIDTH", 0.7f}})
        parameter(key)->setValue(value);
    harness->effect->reset();  // cutoffs and resonance stand at their settings at once
    feed(std::vector<float>(2048, 0.0f));

    constexpr double kScale = 1e-3;
    std::vector<float> impulse(32768, 0.0f);
    impulse[0] = static_cast<float>(kScale);
    std::vector<float> right = impulse;
    harness->run(impulse, right, 512);
    // Series: 30 points over the band, down to -56 dB at the steepest slope. Parallel: both ends.
    const std::vector<double> hz = mode == 0 ? logPoints(30, 100.0, 4500.0) : logPoints(30, 30.0, 16000.0);
    const std::vector<double> measured = spectrumOf(impulse, kScale, hz, 44100.0);

    CPlotDisplay* plot = display_->getPlot();
    std::vector<double> low(hz.size()), high(hz.size());
    plot->computeCurve(low.data(), hz.data(), 30, parameter("LOWPASSFREQ")->getValue(), false, slope, 0.4f, 0.7f);
    plot->computeCurve(high.data(), hz.data(), 30, parameter("HIGHPASSFREQ")->getValue(), true, slope, 0.25f, 1.0f);
    int compared = 0;
    for (size_t i = 0; i < hz.size(); ++i) {
        // In parallel the branches add: where one lies 45 dB under the other, the other alone counts.
        const double drawn = mode == 0 ? low[i] + high[i] : std::max(low[i], high[i]);
        if (mode == 1 && std::fabs(low[i] - high[i]) < 45.0) continue;
        if (drawn < -60.0) continue;  // under the float chain's rounding floor
        EXPECT_NEAR(measured[i], drawn, 0.1) << hz[i] << " Hz";
        ++compared;
    }
    EXPECT_GE(compared, mode == 0 ? 30 : 12);
    // The plot's own static curves are those curves at its points.
    paint();
    std::vector<double> expected(plot->frequencies().size());
    plot->computeCurve(expected.data(), plot->frequencies().data(), static_cast<int>(expected.size()),
                       parameter("LOWPASSFREQ")->getValue(), false, slope, 0.4f, 0.7f);
    for (size_t i = 0; i < expected.size(); i += 17) EXPECT_DOUBLE_EQ(plot->curve(CPlotDisplay::kLow)[i], expected[i]);
}

INSTANTIATE_TEST_SUITE_P(SlopesAndModes, PlotCurves,
                         ::testing::Values(FilterCase{1, 0}, FilterCase{2, 0}, FilterCase{3, 0}, FilterCase{4, 0},
                                           FilterCase{1, 1}, FilterCase{2, 1}, FilterCase{3, 1}, FilterCase{4, 1}),
                         [](const auto& test) {
                             return std::to_string(12 << (test.param.slope - 1)) + (test.param.mode ? "Parallel" : "Series");
                         });

TEST_F(OpenEditor, MovedCurvesFollowTheCutoffsTheEnvelopeAndTheLfoGiveTheEffect) {
    paint();
    parameter("LOWPASSFREQ")->setValue(500);
    paint();
    for (auto moved : {CPlotDisplay::kLowEnv, CPlotDisplay::kLowLfo})
        EXPECT_EQ(display_->getPlot()->curve(moved), display_->getPlot()->curve(CPlotDisplay::kLow)) << "without depth";
    parameter("LP Strength")->setValue(1);
    parameter("HP StrengthLFO")->setValue(2);
    parameter("HIGHPASSFREQ")->setValue(100);
    harness->effect->reset();
    feed(sine(512 * 40, 200, 44100, 0.9f));
    paint();
    CPlotDisplay* plot = display_->getPlot();
    const auto& effect = *harness->effect;
    EXPECT_NEAR(plot->getEnvelopeCutoff(false), effect.modulation().low().target, 0.5f);
    EXPECT_GT(effect.modulation().low().target, 600.0f) << "the envelope did not open the filter";
    EXPECT_NEAR(plot->getLfoCutoff(true), effect.modulation().high().modulated, 0.5f);
    struct Moved { CPlotDisplay::Curve curve, still; float cutoff; bool high; };
    for (const Moved& m : {Moved{CPlotDisplay::kLowEnv, CPlotDisplay::kLow, plot->getEnvelopeCutoff(false), false},
                           Moved{CPlotDisplay::kHighLfo, CPlotDisplay::kHigh, plot->getLfoCutoff(true), true}}) {
        std::vector<double> expected(plot->frequencies().size());
        plot->computeCurve(expected.data(), plot->frequencies().data(), static_cast<int>(expected.size()), m.cutoff,
                           m.high, 2, 0.0f, 1.0f);
        EXPECT_NE(plot->curve(m.curve), plot->curve(m.still)) << "the moved curve stands still";
        for (size_t i = 0; i < expected.size(); ++i) ASSERT_NEAR(plot->curve(m.curve)[i], expected[i], 1e-9);
    }
}

TEST_F(OpenEditor, ASteadySinePeaksInItsBinAndTheMetersFollowItsLevel) {
    const float amplitude = std::pow(10.0f, -6.0f / 20.0f);
    feed(sine(512 * 30, 1000, 44100, amplitude));
    paint();
    const float* db = display_->getPlot()->getRenderer().spectrumDb();
    const int peak = static_cast<int>(std::max_element(db, db + DSP::CFFTRenderer::kBinCount) - db);
    EXPECT_NEAR(peak * 44100.0 / DSP::CFFTRenderer::kFftSize, 1000.0, 44100.0 / DSP::CFFTRenderer::kFftSize);
    display_->onTimer(0);
    for (ZonfraEditor::CLineVUBar* meter : {display_->getInputMeter(), display_->getOutputMeter()})
        for (int channel : {0, 1}) {
            EXPECT_NEAR(meter->getLevelDb(channel), -6.0f, 0.5f);
            EXPECT_NEAR(meter->getPeakDb(channel), -6.0f, 0.5f) << "the peak line takes the level at the display's tick";
        }

    harness->effect->setBypass(true);
    feed(sine(512 * 100, 1000, 44100, amplitude));
    EXPECT_NEAR(display_->getOutputMeter()->getLevelDb(0), display_->getInputMeter()->getLevelDb(0), 0.01)
        << "bypassed, the output meters show the input";
}

TEST_F(OpenEditor, NothingOnTheAudioThreadAllocatesWithTheEditorOpen) {
    feed(sine(2048, 1000, 44100));
    std::vector<float> left = sine(512, 700, 44100), right = left;
    TestSupport::AllocationScope scope;
    for (int i = 0; i < 50; ++i) harness->runBlock(left.data(), right.data(), 512);
    EXPECT_EQ(scope.allocations(), 0u);
}

TEST_F(OpenEditor, ExtremesNanAudioAndARateChangeLeaveEveryDrawnNumberFinite) {
    auto expectFinite = [&](const char* when) {
        paint();
        CPlotDisplay* plot = display_->getPlot();
        for (int c = 0; c < CPlotDisplay::kCurveCount; ++c)
            for (double v : plot->curve(static_cast<CPlotDisplay::Curve>(c))) ASSERT_TRUE(std::isfinite(v)) << when;
        std::vector<float> spectrum(400);
        plot->getRenderer().curve(spectrum.data(), 400);
        for (float v : spectrum) ASSERT_TRUE(std::isfinite(v)) << when;
        for (int channel : {0, 1}) ASSERT_TRUE(std::isfinite(display_->getOutputMeter()->getLevelDb(channel))) << when;
    };
    for (float end : {0.0f, 1.0f}) {
        for (int i = 0; i < harness->effect->getParameterCount(); ++i) harness->effect->getParameter(i)->setNormalized(end);
        feed(sine(4096, 1000, 44100));
        expectFinite(end == 0.0f ? "all at minimum" : "all at maximum");
    }
    std::vector<float> nan(512, std::nanf("")), inf(512, INFINITY);
    editor->audioTap(*harness->effect, nan.data(), inf.data(), 512);
    feed(nan);
    expectFinite("not-a-number audio");
    for (float rate : {96000.0f, 8000.0f, 192000.0f}) {
        harness->effect->setSampleRate(rate);
        feed(sine(4096, 1000, rate));
        expectFinite("after a rate change");
    }
}
