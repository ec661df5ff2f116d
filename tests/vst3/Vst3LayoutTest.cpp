#include <gtest/gtest.h>

#include <cstddef>

#include "adapters/vst3/sdk/Vst3Controller.h"
#include "adapters/vst3/sdk/Vst3Processor.h"

using namespace Steinberg;
using namespace Steinberg::Vst;

// The published layouts that hosts compiled against the real interfaces expect on x86_64 Linux.
TEST(Vst3Layout, IdentifiersAreFourBigEndianWords) {
    const Uid component = IComponent::iid;
    const unsigned char expected[16] = {0xE8, 0x31, 0xFF, 0x31, 0xF2, 0xD5, 0x43, 0x01,
                                        0x92, 0x8E, 0xBB, 0xEE, 0x25, 0x69, 0x78, 0x02};
    EXPECT_EQ(std::memcmp(component.bytes, expected, 16), 0);
    const unsigned char unknown[16] = {0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46};
    EXPECT_EQ(std::memcmp(FUnknown::iid.bytes, unknown, 16), 0);
}

TEST(Vst3Layout, StructureSizesAndOffsets) {
    EXPECT_EQ(sizeof(PFactoryInfo), 452u);
    EXPECT_EQ(sizeof(PClassInfo), 116u);
    EXPECT_EQ(sizeof(PClassInfo2), 440u);
    EXPECT_EQ(offsetof(PClassInfo2, classFlags), 116u);
    EXPECT_EQ(sizeof(PClassInfoW), 696u);
    EXPECT_EQ(sizeof(ParameterInfo), 792u);
    EXPECT_EQ(offsetof(ParameterInfo, stepCount), 772u);
    EXPECT_EQ(offsetof(ParameterInfo, defaultNormalizedValue), 776u);
    EXPECT_EQ(sizeof(BusInfo), 276u);
    EXPECT_EQ(sizeof(AudioBusBuffers), 24u);
    EXPECT_EQ(offsetof(AudioBusBuffers, silenceFlags), 8u);
    EXPECT_EQ(sizeof(ProcessSetup), 24u);
    EXPECT_EQ(sizeof(ProcessData), 80u);
    EXPECT_EQ(offsetof(ProcessData, inputs), 24u);
    EXPECT_EQ(offsetof(ProcessData, processContext), 72u);
    EXPECT_EQ(offsetof(ProcessContext, sampleRate), 8u);
    EXPECT_EQ(offsetof(ProcessContext, tempo), 72u);
    EXPECT_EQ(sizeof(ProcessContext), 112u);
    EXPECT_EQ(sizeof(Event), 48u);
    EXPECT_EQ(offsetof(Event, type), 18u);
    EXPECT_EQ(offsetof(Event, noteOn), 24u);
    EXPECT_EQ(sizeof(UnitInfo), 268u);
    EXPECT_EQ(sizeof(ViewRect), 16u);
}
