#pragma once
#include <memory>

#include "dsp/filters/CBiquadCascade.h"

namespace DSP {

// One channel of a Linkwitz-Riley low-pass or high-pass: a Butterworth filter of order n run twice,
// 12n dB per octave. Designs are cached per cutoff bin so that a sweeping cutoff costs a design
// only on the first visit of a bin.
class CSlopeFilter {
public:
    static constexpr int kCacheBins = 2800;
    static constexpr int kMaxStages = 12;
    static constexpr double kMinCutoff = 10.0;
    static constexpr double kMaxCutoff = 22000.0;
    // Below this fraction of the sample rate the cascades' poles sit so close to 1 that the
    // float-rounded all-pass no longer matches them: the complementary high-pass would fall apart.
    static constexpr double kMinCutoffPerRate = 1.0 / 9600.0;

    explicit CSlopeFilter(int maxOrder);
    CSlopeFilter(const CSlopeFilter&) = delete;
    CSlopeFilter& operator=(const CSlopeFilter&) = delete;

    // Order dbPerOctave / 12 when it lies in 1..maxOrder; the cache is cleared in any case.
    void setSlope(int dbPerOctave);
    // 0 low-pass, 1 high-pass.
    void setType(unsigned type);
    // Limited to kMinCutoff .. kMaxCutoff and to what the sample rate allows; the wish is kept, so
    // that a later rate change limits it anew.
    void setCutoff(double hertz);
    void setSampleRate(double hertz);
    // Forgets every cached design. A bin holds the design of the first cutoff that visited it, so
    // the sound of a sweep depends on the cutoffs since the last clear.
    void clearDesigns();
    void process(const float* in, float* out, unsigned count);
    void reset();
    // Decibel response of the series path.
    void response(const double* frequenciesHz, double* outDb, int count) const;
    const CBiquadCascade& allPassStages() const { return allPass; }
    // The high-pass of mode 0: all-pass minus the twice-filtered low-pass.
    bool isComplementary() const { return type == 1 && mode == 0; }

    // Cache bin of a cutoff; the curve spends most bins on the low range.
    static int cacheBin(double hertz);

    double getCutoff() const { return cutoff; }
    int getOrder() const { return order; }
    unsigned getType() const { return type; }
    double getSampleRate() const { return sampleRate; }
    const CBiquadCascade& lowPathA() const { return lowA; }
    const CBiquadCascade& lowPathB() const { return lowB; }
    // For block kernels that run several filters together; they keep the state in step.
    CBiquadCascade& lowPathA() { return lowA; }
    CBiquadCascade& lowPathB() { return lowB; }
    CBiquadCascade& allPassStages() { return allPass; }

    // Zero makes the high-pass the all-pass minus the low-pass; any other value a direct high-pass.
    // Call setSlope after writing it.
    unsigned mode = 0;

private:
    struct CacheEntry {
        bool valid;
        double a1[kMaxStages];
        double a2[kMaxStages];
        double b0[kMaxStages];
        double b1[kMaxStages];
        double b2[kMaxStages];
    };

    void clearCache();
    void selectCoefficients();
    double limitedCutoff() const;

    CBiquadCascade lowA;
    CBiquadCascade lowB;
    CBiquadCascade allPass;
    double sampleRate = 44100.0;
    double cutoff = 1000.0;
    double wantedCutoff = 1000.0;
    int maxOrder;
    int order;
    unsigned type = 0;
    int selectedBin = -1;  // the bin whose coefficients the cascades hold, -1 after a cache clear
    std::unique_ptr<CacheEntry[]> cache;
};

}  // namespace DSP
