#pragma once
// Our declarations of the VST 3 interface types, laid out as Linux hosts expect them: the
// non-COM form (plain tresult codes, identifiers as four big-endian words).
#include <cstdint>
#include <cstring>

namespace Steinberg {

using int8 = int8_t;
using uint8 = uint8_t;
using int16 = int16_t;
using uint16 = uint16_t;
using int32 = int32_t;
using uint32 = uint32_t;
using int64 = int64_t;
using uint64 = uint64_t;
using char8 = char;
using char16 = char16_t;
using TChar = char16_t;
using TBool = uint8_t;
using tresult = int32_t;
using FIDString = const char*;
using TUID = char[16];
using String128 = TChar[128];
using CString = const char8*;

enum : tresult {
    kNoInterface = -1,
    kResultOk = 0,
    kResultTrue = kResultOk,
    kResultFalse = 1,
    kInvalidArgument = 2,
    kNotImplemented = 3,
    kInternalError = 4,
    kNotInitialized = 5,
    kOutOfMemory = 6,
};

// An interface or class identifier: four words, each stored most significant byte first.
struct Uid {
    char bytes[16];
};

constexpr Uid makeUid(uint32 l1, uint32 l2, uint32 l3, uint32 l4) {
    const uint32 words[4] = {l1, l2, l3, l4};
    Uid uid{};
    for (int w = 0; w < 4; ++w)
        for (int b = 0; b < 4; ++b) uid.bytes[w * 4 + b] = static_cast<char>((words[w] >> (24 - 8 * b)) & 0xFF);
    return uid;
}

static_assert(makeUid(0x01020304, 0, 0, 0x0A0B0C0D).bytes[0] == 1 && makeUid(0x01020304, 0, 0, 0).bytes[3] == 4 &&
              makeUid(0, 0, 0, 0x0A0B0C0D).bytes[12] == 0x0A && makeUid(0, 0, 0, 0x0A0B0C0D).bytes[15] == 0x0D);

inline bool sameUid(const char* a, const Uid& b) { return a && std::memcmp(a, b.bytes, 16) == 0; }

namespace Vst {

using ParamID = uint32;
using ParamValue = double;
using UnitID = int32;
using ProgramListID = int32;
using MediaType = int32;
using BusDirection = int32;
using BusType = int32;
using IoMode = int32;
using KnobMode = int32;
using CtrlNumber = int16;
using Sample32 = float;
using Sample64 = double;
using SampleRate = double;
using SpeakerArrangement = uint64;
using Speaker = uint64;
using TSamples = int64;
using TQuarterNotes = double;

enum MediaTypes : MediaType { kAudio = 0, kEvent = 1 };
enum BusDirections : BusDirection { kInput = 0, kOutput = 1 };
enum BusTypes : BusType { kMain = 0, kAux = 1 };
enum SymbolicSampleSizes : int32 { kSample32 = 0, kSample64 = 1 };
enum ProcessModes : int32 { kRealtime = 0, kPrefetch = 1, kOffline = 2 };

namespace SpeakerArr {
constexpr SpeakerArrangement kEmpty = 0;
constexpr SpeakerArrangement kMono = 1ull << 19;  // the centre speaker
constexpr SpeakerArrangement kStereo = 3;         // left and right
}  // namespace SpeakerArr

constexpr UnitID kRootUnitId = 0;
constexpr UnitID kNoParentUnitId = -1;
constexpr ProgramListID kNoProgramListId = -1;

// Flags of IComponentHandler::restartComponent.
enum RestartFlags : int32 {
    kReloadComponent = 1 << 0,
    kIoChanged = 1 << 1,
    kParamValuesChanged = 1 << 2,
    kLatencyChanged = 1 << 3,
    kParamTitlesChanged = 1 << 4,
};

}  // namespace Vst
}  // namespace Steinberg
