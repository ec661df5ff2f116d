#pragma once
// The spectrum behind the response plot. The audio thread pushes the effect's output; the window
// thread takes the newest whole frame, transforms it and smooths the curve it draws. Nothing in the
// audio path depends on it.
#include <array>
#include <atomic>
#include <vector>

struct kiss_fft_state;

namespace DSP {

// What a producer of audio hands samples to. `right` may be null.
class CDataStreamCallback {
public:
    virtual ~CDataStreamCallback() = default;
    virtual void push(const float* left, const float* right, int count) = 0;
};

class CFFTRenderer : public CDataStreamCallback {
public:
    static constexpr int kFftSize = 2048;
    static constexpr int kBinCount = kFftSize / 2;
    static constexpr float kRangeDb = 90.0f;
    static constexpr float kTopDb = 100.0f;
    static constexpr float kSmoothedStartDb = -200.0f;
    static constexpr int kInterpolationSize = 65535;

    CFFTRenderer(int lowHz, int highHz);
    ~CFFTRenderer() override;
    CFFTRenderer(const CFFTRenderer&) = delete;
    CFFTRenderer& operator=(const CFFTRenderer&) = delete;

    // Audio thread: waits, locks and allocates nothing. The mono sum of a stereo pair is analysed.
    void push(const float* left, const float* right, int count) override;

    // Any thread. Rates that are not finite or lie outside 1 kHz .. 1 MHz are ignored.
    void setSampleRate(float hertz);
    float getSampleRate() const { return sampleRate.load(std::memory_order_relaxed); }

    // Window thread. Levels back to the floor; the partial frame on the audio side is dropped at
    // the next push.
    void clear();
    // Window thread: analyses the newest frame the audio side finished, if any. True when it did.
    bool updateSpectrum();
    // Window thread, once per paint: the curve jumps up at once and falls a tenth of the gap.
    void smooth();
    // Window thread: updateSpectrum and smooth, as a paint does.
    void paint() { updateSpectrum(); smooth(); }

    // Levels of the curve, one per pixel of a logarithmic axis from lowHz to highHz over `width`
    // pixels, in dB from -kRangeDb to kTopDb, raised-cosine interpolated between bins.
    void curve(float* outDb, int width) const;
    // The frequency at pixel `x` of that axis.
    float frequencyAt(float x, float width) const;
    // Where a level stands between the bottom (0) and top (1) of a plot of kRangeDb.
    static float heightFraction(float db) { return (db + kRangeDb) / kRangeDb; }

    const float* spectrumDb() const { return spectrum.data(); }
    const float* smoothedDb() const { return smoothed.data(); }
    float getLowHz() const { return lowHz; }
    float getHighHz() const { return highHz; }

    // (1 - cos(pi k / 65535)) / 2, shared by all renderers and filled on first use.
    static const float* interpolationTable();

private:
    // Slot index in the low bits, "a frame waits" in kFresh.
    static constexpr unsigned kFresh = 4;
    static constexpr unsigned kIndexMask = 3;

    float lowHz;
    float highHz;
    std::atomic<float> sampleRate{44100.0f};

    // Three frame buffers handed round without a lock: the audio side fills `writeSlot`, publishes
    // it by swapping it with the middle one, and the window side swaps the middle one with
    // `readSlot` when a fresh one waits. Each side only ever touches its own slot.
    std::array<std::vector<float>, 3> slots;
    std::atomic<unsigned> middle{1};
    unsigned writeSlot = 0;
    unsigned readSlot = 2;
    int fillPos = 0;
    std::atomic<bool> dropPartialFrame{false};

    // Window side.
    kiss_fft_state* fft = nullptr;
    std::vector<float> window;
    std::vector<float> workIn;   // interleaved complex
    std::vector<float> workOut;  // interleaved complex
    std::vector<float> spectrum;
    std::vector<float> smoothed;
    const float* table;
};

}  // namespace DSP
