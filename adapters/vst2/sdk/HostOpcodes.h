#pragma once
#include "adapters/vst2/sdk/AEffect.h"

namespace Vst2 {

// What a plug-in asks of its host through audioMasterCallback.
enum AudioMasterOpcodes : VstInt32 {
    audioMasterAutomate = 0,         // index: parameter, opt: normalised value
    audioMasterVersion = 1,          // result: host's interface version, 0 from a host without one
    audioMasterCurrentId = 2,        // result: unique id the host is loading from a shell
    audioMasterIdle = 3,
    audioMasterPinConnected = 4,     // gone
    audioMasterWantMidi = 6,         // value: 1; gone in 2.4, still answered
    audioMasterGetTime = 7,          // value: VstTimeInfoFlags wanted; result: VstTimeInfo* or 0
    audioMasterProcessEvents = 8,    // ptr: VstEvents*
    audioMasterIOChanged = 13,       // inputs, outputs or latency changed
    audioMasterSizeWindow = 15,      // index: width, value: height
    audioMasterGetSampleRate = 16,
    audioMasterGetBlockSize = 17,
    audioMasterGetInputLatency = 18,
    audioMasterGetOutputLatency = 19,
    audioMasterGetCurrentProcessLevel = 23,
    audioMasterGetAutomationState = 24,
    audioMasterGetVendorString = 32,   // ptr: text out
    audioMasterGetProductString = 33,  // ptr: text out
    audioMasterGetVendorVersion = 34,  // result: version
    audioMasterVendorSpecific = 35,
    audioMasterCanDo = 37,             // ptr: text; result 1 yes
    audioMasterGetLanguage = 38,
    audioMasterGetDirectory = 41,
    audioMasterUpdateDisplay = 42,
    audioMasterBeginEdit = 43,         // index: parameter
    audioMasterEndEdit = 44,           // index: parameter
    audioMasterOpenFileSelector = 45,
    audioMasterCloseFileSelector = 46,
};

}  // namespace Vst2
