#pragma once
#include <cstddef>

#include "adapters/vst2/sdk/AEffect.h"

namespace Vst2 {

// The host's transport at the start of the current block (audioMasterGetTime).
struct VstTimeInfo {
    double samplePos;      // samples since the song's start
    double sampleRate;
    double nanoSeconds;    // system time
    double ppqPos;         // quarter notes since the song's start
    double tempo;          // beats per minute
    double barStartPos;    // quarter-note position of the last bar start
    double cycleStartPos;
    double cycleEndPos;
    VstInt32 timeSigNumerator;
    VstInt32 timeSigDenominator;
    VstInt32 smpteOffset;
    VstInt32 smpteFrameRate;
    VstInt32 samplesToNextClock;
    VstInt32 flags;  // VstTimeInfoFlags
};
static_assert(offsetof(VstTimeInfo, ppqPos) == 24);
static_assert(offsetof(VstTimeInfo, tempo) == 32);
static_assert(offsetof(VstTimeInfo, barStartPos) == 40);
static_assert(offsetof(VstTimeInfo, timeSigNumerator) == 64);
static_assert(offsetof(VstTimeInfo, flags) == 84);
static_assert(sizeof(VstTimeInfo) == 88);

enum VstTimeInfoFlags : VstInt32 {
    kVstTransportChanged = 1,
    kVstTransportPlaying = 1 << 1,
    kVstTransportCycleActive = 1 << 2,
    kVstTransportRecording = 1 << 3,
    kVstAutomationWriting = 1 << 6,
    kVstAutomationReading = 1 << 7,
    kVstNanosValid = 1 << 8,
    kVstPpqPosValid = 1 << 9,
    kVstTempoValid = 1 << 10,
    kVstBarsValid = 1 << 11,
    kVstCyclePosValid = 1 << 12,
    kVstTimeSigValid = 1 << 13,
    kVstSmpteValid = 1 << 14,
    kVstClockValid = 1 << 15,
};

}  // namespace Vst2
