#pragma once
#include <cstddef>

#include "adapters/vst3/sdk/Vst3Base.h"

namespace Steinberg::Vst {

struct BusInfo {
    enum BusFlags : uint32 { kDefaultActive = 1 };
    MediaType mediaType;
    BusDirection direction;
    int32 channelCount;
    String128 name;
    BusType busType;
    uint32 flags;
};
static_assert(sizeof(BusInfo) == 276);

struct RoutingInfo {
    MediaType mediaType;
    int32 busIndex;
    int32 channel;
};

struct AudioBusBuffers {
    int32 numChannels;
    uint64 silenceFlags;
    union {
        Sample32** channelBuffers32;
        Sample64** channelBuffers64;
    };
};
static_assert(offsetof(AudioBusBuffers, silenceFlags) == 8);
static_assert(sizeof(AudioBusBuffers) == 24);

struct Chord {
    uint8 keyNote;
    uint8 rootNote;
    int16 chordMask;
};

struct FrameRate {
    uint32 framesPerSecond;
    uint32 flags;
};

struct ProcessContext {
    enum StatesAndFlags : uint32 {
        kPlaying = 1 << 1,
        kCycleActive = 1 << 2,
        kRecording = 1 << 3,
        kSystemTimeValid = 1 << 8,
        kProjectTimeMusicValid = 1 << 9,
        kTempoValid = 1 << 10,
        kBarPositionValid = 1 << 11,
        kCycleValid = 1 << 12,
        kTimeSigValid = 1 << 13,
        kSmpteValid = 1 << 14,
        kClockValid = 1 << 15,
        kContTimeValid = 1 << 17,
        kChordValid = 1 << 18,
    };
    uint32 state;
    double sampleRate;
    TSamples projectTimeSamples;
    int64 systemTime;
    TSamples continousTimeSamples;
    TQuarterNotes projectTimeMusic;
    TQuarterNotes barPositionMusic;
    TQuarterNotes cycleStartMusic;
    TQuarterNotes cycleEndMusic;
    double tempo;
    int32 timeSigNumerator;
    int32 timeSigDenominator;
    Chord chord;
    int32 smpteOffsetSubframes;
    FrameRate frameRate;
    int32 samplesToNextClock;
};
static_assert(offsetof(ProcessContext, sampleRate) == 8);
static_assert(offsetof(ProcessContext, tempo) == 72);
static_assert(sizeof(ProcessContext) == 112);

struct NoteOnEvent {
    int16 channel;
    int16 pitch;
    float tuning;
    float velocity;
    int32 length;
    int32 noteId;
};

struct NoteOffEvent {
    int16 channel;
    int16 pitch;
    float velocity;
    int32 noteId;
    float tuning;
};

struct DataEvent {
    uint32 size;
    uint32 type;
    const uint8* bytes;
};

struct PolyPressureEvent {
    int16 channel;
    int16 pitch;
    float pressure;
    int32 noteId;
};

struct Event {
    enum EventTypes : uint16 { kNoteOnEvent = 0, kNoteOffEvent = 1, kDataEvent = 2, kPolyPressureEvent = 3 };
    int32 busIndex;
    int32 sampleOffset;
    TQuarterNotes ppqPosition;
    uint16 flags;
    uint16 type;
    union {
        NoteOnEvent noteOn;
        NoteOffEvent noteOff;
        DataEvent data;
        PolyPressureEvent polyPressure;
        struct {
            uint32 typeId;
            int32 noteId;
            double value;
        } noteExpressionValue;
        struct {
            uint32 typeId;
            int32 noteId;
            uint32 textLen;
            const TChar* text;
        } noteExpressionText;
    };
};
static_assert(offsetof(Event, type) == 18);
static_assert(offsetof(Event, noteOn) == 24);
static_assert(sizeof(Event) == 48);

class IEventList : public FUnknown {
public:
    virtual int32 getEventCount() = 0;
    virtual tresult getEvent(int32 index, Event& event) = 0;
    virtual tresult addEvent(Event& event) = 0;
    static constexpr Uid iid = makeUid(0x3A2C4214, 0x346349FE, 0xB2C4F397, 0xB9695A44);

protected:
    ~IEventList() = default;
};

class IParamValueQueue : public FUnknown {
public:
    virtual ParamID getParameterId() = 0;
    virtual int32 getPointCount() = 0;
    virtual tresult getPoint(int32 index, int32& sampleOffset, ParamValue& value) = 0;
    virtual tresult addPoint(int32 sampleOffset, ParamValue value, int32& index) = 0;
    static constexpr Uid iid = makeUid(0x01263A18, 0xED074F6F, 0x98C9D356, 0x4686F9BA);

protected:
    ~IParamValueQueue() = default;
};

class IParameterChanges : public FUnknown {
public:
    virtual int32 getParameterCount() = 0;
    virtual IParamValueQueue* getParameterData(int32 index) = 0;
    virtual IParamValueQueue* addParameterData(const ParamID& id, int32& index) = 0;
    static constexpr Uid iid = makeUid(0xA4779663, 0x0BB64A56, 0xB44384A8, 0x466FEB9D);

protected:
    ~IParameterChanges() = default;
};

struct ProcessSetup {
    int32 processMode;
    int32 symbolicSampleSize;
    int32 maxSamplesPerBlock;
    SampleRate sampleRate;
};
static_assert(sizeof(ProcessSetup) == 24);

struct ProcessData {
    int32 processMode;
    int32 symbolicSampleSize;
    int32 numSamples;
    int32 numInputs;
    int32 numOutputs;
    AudioBusBuffers* inputs;
    AudioBusBuffers* outputs;
    IParameterChanges* inputParameterChanges;
    IParameterChanges* outputParameterChanges;
    IEventList* inputEvents;
    IEventList* outputEvents;
    ProcessContext* processContext;
};
static_assert(offsetof(ProcessData, inputs) == 24);
static_assert(offsetof(ProcessData, processContext) == 72);
static_assert(sizeof(ProcessData) == 80);

class IComponent : public IPluginBase {
public:
    virtual tresult getControllerClassId(TUID classId) = 0;
    virtual tresult setIoMode(IoMode mode) = 0;
    virtual int32 getBusCount(MediaType type, BusDirection direction) = 0;
    virtual tresult getBusInfo(MediaType type, BusDirection direction, int32 index, BusInfo& bus) = 0;
    virtual tresult getRoutingInfo(RoutingInfo& inInfo, RoutingInfo& outInfo) = 0;
    virtual tresult activateBus(MediaType type, BusDirection direction, int32 index, TBool state) = 0;
    virtual tresult setActive(TBool state) = 0;
    virtual tresult setState(IBStream* state) = 0;
    virtual tresult getState(IBStream* state) = 0;
    static constexpr Uid iid = makeUid(0xE831FF31, 0xF2D54301, 0x928EBBEE, 0x25697802);

protected:
    ~IComponent() = default;
};

class IAudioProcessor : public FUnknown {
public:
    virtual tresult setBusArrangements(SpeakerArrangement* inputs, int32 numIns, SpeakerArrangement* outputs,
                                       int32 numOuts) = 0;
    virtual tresult getBusArrangement(BusDirection direction, int32 index, SpeakerArrangement& arrangement) = 0;
    virtual tresult canProcessSampleSize(int32 symbolicSampleSize) = 0;
    virtual uint32 getLatencySamples() = 0;
    virtual tresult setupProcessing(ProcessSetup& setup) = 0;
    virtual tresult setProcessing(TBool state) = 0;
    virtual tresult process(ProcessData& data) = 0;
    virtual uint32 getTailSamples() = 0;
    static constexpr Uid iid = makeUid(0x42043F99, 0xB7DA453C, 0xA569E79D, 0x9AAEC33D);

protected:
    ~IAudioProcessor() = default;
};

}  // namespace Steinberg::Vst
