#pragma once
#include "adapters/vst2/sdk/AEffect.h"

namespace Vst2 {

// What a host asks of a plug-in through AEffect::dispatcher. Comments name the arguments used.
enum EffectOpcodes : VstInt32 {
    effOpen = 0,
    effClose = 1,              // the plug-in deletes itself
    effSetProgram = 2,         // value: program
    effGetProgram = 3,         // result: program
    effSetProgramName = 4,     // ptr: text
    effGetProgramName = 5,     // ptr: text out
    effGetParamLabel = 6,      // index, ptr: unit text out
    effGetParamDisplay = 7,    // index, ptr: value text out
    effGetParamName = 8,       // index, ptr: name out
    effGetVu = 9,              // gone
    effSetSampleRate = 10,     // opt: rate
    effSetBlockSize = 11,      // value: largest block
    effMainsChanged = 12,      // value: 0 suspend, 1 resume
    effEditGetRect = 13,       // ptr: ERect** out
    effEditOpen = 14,          // ptr: parent window
    effEditClose = 15,
    effEditDraw = 16,          // gone
    effEditMouse = 17,         // gone
    effEditKey = 18,           // gone
    effEditIdle = 19,
    effEditTop = 20,           // gone
    effEditSleep = 21,         // gone
    effIdentify = 22,          // gone
    effGetChunk = 23,          // index: 1 preset, 0 bank; ptr: void** out; result: size
    effSetChunk = 24,          // index: 1 preset, 0 bank; value: size; ptr: data
    effProcessEvents = 25,     // ptr: VstEvents*
    effCanBeAutomated = 26,    // index
    effString2Parameter = 27,  // index, ptr: text
    effGetNumProgramCategories = 28,
    effGetProgramNameIndexed = 29,  // index: program, value: category, ptr: text out
    effCopyProgram = 30,
    effConnectInput = 31,
    effConnectOutput = 32,
    effGetInputProperties = 33,   // index, ptr: VstPinProperties* out
    effGetOutputProperties = 34,  // index, ptr: VstPinProperties* out
    effGetPlugCategory = 35,      // result: VstPlugCategory
    effGetCurrentPosition = 36,
    effGetDestinationBuffer = 37,
    effOfflineNotify = 38,
    effOfflinePrepare = 39,
    effOfflineRun = 40,
    effProcessVarIo = 41,
    effSetSpeakerArrangement = 42,  // value: input VstSpeakerArrangement*, ptr: output one
    effSetBlockSizeAndSampleRate = 43,
    effSetBypass = 44,              // value: on
    effGetEffectName = 45,          // ptr: text out
    effGetErrorText = 46,
    effGetVendorString = 47,        // ptr: text out
    effGetProductString = 48,       // ptr: text out
    effGetVendorVersion = 49,       // result: version
    effVendorSpecific = 50,         // index, value, ptr, opt: as the vendor agreed
    effCanDo = 51,                  // ptr: text; result 1 yes, -1 no, 0 unknown
    effGetTailSize = 52,            // result: samples, 0 default, 1 none
    effIdle = 53,
    effGetIcon = 54,
    effSetViewPosition = 55,
    effGetParameterProperties = 56,  // index, ptr: VstParameterProperties* out
    effKeysRequired = 57,
    effGetVstVersion = 58,           // result: 2400
    effEditKeyDown = 59,             // index: character, value: virtual key, opt: modifiers
    effEditKeyUp = 60,
    effSetEditKnobMode = 61,         // value: mode
    effGetMidiProgramName = 62,
    effGetCurrentMidiProgram = 63,
    effGetMidiProgramCategory = 64,
    effHasMidiProgramsChanged = 65,
    effGetMidiKeyName = 66,
    effBeginSetProgram = 67,
    effEndSetProgram = 68,
    effGetSpeakerArrangement = 69,   // value: VstSpeakerArrangement** input out, ptr: ** output out
    effShellGetNextPlugin = 70,      // ptr: name out; result: unique id, 0 at the end
    effStartProcess = 71,
    effStopProcess = 72,
    effSetTotalSampleToProcess = 73,
    effSetPanLaw = 74,
    effBeginLoadBank = 75,
    effBeginLoadProgram = 76,
    effSetProcessPrecision = 77,     // value: 0 single, 1 double
    effGetNumMidiInputChannels = 78,
    effGetNumMidiOutputChannels = 79,
};

}  // namespace Vst2
