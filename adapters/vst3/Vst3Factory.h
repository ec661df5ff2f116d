#pragma once
#include <cstdint>

#include "adapters/vst3/sdk-helpers/CPluginFactory.h"
#include "adapters/vst3/sdk-helpers/FUID.h"

// The factory a VST 3 host gets from GetPluginFactory: one class per plug-in of the library.
namespace Vst3Factory {

constexpr int kMaxClasses = 10;

// Built on the first call; lives as long as the library.
Steinberg::CPluginFactory& instance();

// "duAdNVCGWRPR" followed by the plug-in's four-character id.
Steinberg::FUID classId(int32_t uniqueId);

}  // namespace Vst3Factory
