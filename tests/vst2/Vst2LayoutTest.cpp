#include <gtest/gtest.h>

#include <cstddef>

#include "adapters/vst2/sdk/AEffect.h"
#include "adapters/vst2/sdk/ERect.h"
#include "adapters/vst2/sdk/VstEvents.h"
#include "adapters/vst2/sdk/VstParameterProperties.h"
#include "adapters/vst2/sdk/VstPinProperties.h"
#include "adapters/vst2/sdk/VstSpeakerArrangement.h"
#include "adapters/vst2/sdk/VstTimeInfo.h"

using namespace Vst2;

// The places at which VST 2.4 hosts built for x86_64 Linux read each field.
TEST(Vst2Layout, AEffectFieldsSitWhereHostsReadThem) {
    EXPECT_EQ(kEffectMagic, ('V' << 24) | ('s' << 16) | ('t' << 8) | 'P');
    EXPECT_EQ(offsetof(AEffect, magic), 0u);
    EXPECT_EQ(offsetof(AEffect, dispatcher), 8u);
    EXPECT_EQ(offsetof(AEffect, process), 16u);
    EXPECT_EQ(offsetof(AEffect, setParameter), 24u);
    EXPECT_EQ(offsetof(AEffect, getParameter), 32u);
    EXPECT_EQ(offsetof(AEffect, numPrograms), 40u);
    EXPECT_EQ(offsetof(AEffect, numParams), 44u);
    EXPECT_EQ(offsetof(AEffect, numInputs), 48u);
    EXPECT_EQ(offsetof(AEffect, numOutputs), 52u);
    EXPECT_EQ(offsetof(AEffect, flags), 56u);
    EXPECT_EQ(offsetof(AEffect, resvd1), 64u);
    EXPECT_EQ(offsetof(AEffect, resvd2), 72u);
    EXPECT_EQ(offsetof(AEffect, initialDelay), 80u);
    EXPECT_EQ(offsetof(AEffect, ioRatio), 92u);
    EXPECT_EQ(offsetof(AEffect, object), 96u);
    EXPECT_EQ(offsetof(AEffect, user), 104u);
    EXPECT_EQ(offsetof(AEffect, uniqueID), 112u);
    EXPECT_EQ(offsetof(AEffect, version), 116u);
    EXPECT_EQ(offsetof(AEffect, processReplacing), 120u);
    EXPECT_EQ(offsetof(AEffect, processDoubleReplacing), 128u);
    EXPECT_EQ(sizeof(AEffect), 192u);
}

TEST(Vst2Layout, TimeInfoAndEvents) {
    EXPECT_EQ(offsetof(VstTimeInfo, ppqPos), 24u);
    EXPECT_EQ(offsetof(VstTimeInfo, tempo), 32u);
    EXPECT_EQ(offsetof(VstTimeInfo, barStartPos), 40u);
    EXPECT_EQ(offsetof(VstTimeInfo, timeSigNumerator), 64u);
    EXPECT_EQ(offsetof(VstTimeInfo, flags), 84u);
    EXPECT_EQ(sizeof(VstTimeInfo), 88u);
    EXPECT_EQ(kVstTempoValid, 1024);
    EXPECT_EQ(kVstAutomationReading, 0x80);
    EXPECT_EQ(sizeof(VstEvent), 32u);
    EXPECT_EQ(sizeof(VstMidiEvent), 32u);
    EXPECT_EQ(offsetof(VstMidiEvent, midiData), 24u);
    EXPECT_EQ(offsetof(VstEvents, events), 16u);
}

TEST(Vst2Layout, PropertiesSpeakersAndEditorRectangle) {
    EXPECT_EQ(offsetof(VstParameterProperties, label), 12u);
    EXPECT_EQ(offsetof(VstParameterProperties, flags), 76u);
    EXPECT_EQ(offsetof(VstParameterProperties, shortLabel), 96u);
    EXPECT_EQ(offsetof(VstParameterProperties, displayIndex), 104u);
    EXPECT_EQ(offsetof(VstParameterProperties, categoryLabel), 112u);
    EXPECT_EQ(sizeof(VstParameterProperties), 152u);
    EXPECT_EQ(offsetof(VstPinProperties, flags), 64u);
    EXPECT_EQ(offsetof(VstPinProperties, arrangementType), 68u);
    EXPECT_EQ(sizeof(VstPinProperties), 128u);
    EXPECT_EQ(sizeof(VstSpeakerProperties), 112u);
    EXPECT_EQ(offsetof(VstSpeakerArrangement, speakers), 8u);
    EXPECT_EQ(sizeof(VstSpeakerArrangement), 904u);
    EXPECT_EQ(sizeof(ERect), 8u);
    EXPECT_EQ(offsetof(ERect, right), 6u);
}
