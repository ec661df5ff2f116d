#pragma once
// The response plot: the running spectrum of the output on a frequency and level grid, and the
// response of both filters at their set cutoffs and at the cutoffs the envelope and the LFO move
// them to. The curves come from the same filter objects and resonance design the audio runs.
#include <atomic>
#include <vector>

#include "dsp/analysis/CFFTRenderer.h"
#include "dsp/filters/CSlopeFilter.h"
#include "framework/parameters/ParameterChangeListener.h"
#include "lib/views/CView.h"

namespace Ondra {
class IPluginParameter;
}

namespace ZonfraEditor {

class CPlotDisplay : public Vinta::CView, public Ondra::ParameterChangeListener {
public:
    enum Curve { kLow, kHigh, kLowEnv, kHighEnv, kLowLfo, kHighLfo, kCurveCount };
    // The parameters the plot reads, in this order.
    enum Source {
        kLowFreq, kHighFreq, kLowSlope, kHighSlope, kLowQ, kHighQ, kLowWidth, kHighWidth, kMode,
        kLowEnvDepth, kHighEnvDepth, kLowLfoDepth, kHighLfoDepth, kSourceCount
    };
    static constexpr double kPointStep = 2.0;
    static constexpr double kTopDb = 20.0;
    static constexpr double kRangeDb = 59.0;

    // `sources` holds kSourceCount parameters (any may be null); the plot listens to them.
    CPlotDisplay(const Vinta::CRect& size, Ondra::IPluginParameter* const* sources);
    ~CPlotDisplay() override;

    // Audio thread: the cutoffs modulation moves the filters to; a change under 0.5 Hz costs nothing.
    void setEnvelopeCutoffs(float low, float high);
    void setLfoCutoffs(float low, float high);
    void pushSpectrum(const float* left, const float* right, int count) { renderer.push(left, right, count); }
    void setSampleRate(float hertz);
    // Any thread: the spectrum clears at the next paint.
    void requestClear() { clearRequested.store(true, std::memory_order_relaxed); }
    // Window thread: the text shown in the plot's corner, empty for none.
    void setReadout(const char* text);

    void draw(Vinta::CDrawContext* context) override;
    void parameterChanged(Ondra::IPluginParameter* parameter) override;
    const char* getClassName() const override { return "CPlotDisplay"; }

    // Decibels of one filter with its resonance peak at `count` frequencies, as the audio runs it
    // at the present sample rate. `slopeRow` is the slope parameter's whole value (1..4).
    void computeCurve(double* out, const double* hertz, int count, float cutoff, bool highPass, int slopeRow,
                      float q, float width);
    // The curves as last drawn, pointCount values each, and their frequencies.
    const std::vector<double>& curve(Curve id) const { return curves[id]; }
    const std::vector<double>& frequencies() const { return pointHertz; }
    const Vinta::CRect& getPlotRect() const { return plotRect; }
    float getEnvelopeCutoff(bool high) const { return modulated[high ? 1 : 0].load(std::memory_order_relaxed); }
    float getLfoCutoff(bool high) const { return modulated[high ? 3 : 2].load(std::memory_order_relaxed); }
    DSP::CFFTRenderer& getRenderer() { return renderer; }
    // Points drawn in the last paint that were not finite; always 0.
    int getNonFiniteCount() const { return nonFinite; }

private:
    void updateCurves();
    void drawGrid(Vinta::CDrawContext* context);
    void drawSpectrum(Vinta::CDrawContext* context);
    void drawCurve(Vinta::CDrawContext* context, const double* db, const Vinta::CColor& colour);
    float value(Source s) const;
    void markDirty(bool high);

    DSP::CFFTRenderer renderer;
    DSP::CSlopeFilter filterModel;
    Ondra::IPluginParameter* params[kSourceCount] = {};
    Vinta::CRect plotRect;
    int pointCount = 0;
    std::vector<double> pointHertz;
    std::vector<double> curves[kCurveCount];
    std::vector<double> combined;
    std::atomic<bool> dirty[kCurveCount];
    std::atomic<float> modulated[4];  // low env, high env, low LFO, high LFO
    std::atomic<bool> clearRequested{false};
    std::vector<Vinta::CPoint> points;
    std::vector<float> spectrumDb;
    std::vector<Vinta::CPoint> spectrumPath;
    char readout[160] = {0};
    int nonFinite = 0;
};

}  // namespace ZonfraEditor
