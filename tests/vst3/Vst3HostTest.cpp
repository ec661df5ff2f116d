#include "Vst3Instance.h"
#include "adapters/vst3/sdk/Vst3View.h"
#include "support/AllocationCounter.h"

using namespace TestHost;

class Vst3Host : public InstanceTest {};

TEST_F(Vst3Host, FactoryDescribesTheClass) {
    PFactoryInfo factoryInfo{};
    ASSERT_EQ(module.factory->getFactoryInfo(&factoryInfo), kResultOk);
    EXPECT_STREQ(factoryInfo.vendor, "Halvren Audio / Morvandel");
    EXPECT_EQ(factoryInfo.flags, 16);
    ASSERT_EQ(module.factory->countClasses(), 1);
    auto* factory2 = query<IPluginFactory2>(module.factory);
    ASSERT_NE(factory2, nullptr);
    PClassInfo2 info{};
    ASSERT_EQ(factory2->getClassInfo2(0, &info), kResultOk);
    EXPECT_EQ(std::vector<std::string>({std::string(info.cid, 16), info.category, info.name, info.subCategories,
                                        info.vendor, info.version, info.sdkVersion}),
              std::vector<std::string>({"duAdNVCGWRPRVzon", "Audio Module Class", "MMK Zonfra QT", "Fx|Morvandel",
                                        "Morvandel Mixing Kit", "1.3.0", "VST 3.1.0"}));
    EXPECT_EQ(info.cardinality, 0x7FFFFFFF);
    EXPECT_EQ(factory2->getClassInfo2(1, &info), kInvalidArgument);
    factory2->release();
    auto* factory3 = query<IPluginFactory3>(module.factory);
    ASSERT_NE(factory3, nullptr);
    PClassInfoW wide{};
    EXPECT_EQ(factory3->getClassInfoUnicode(0, &wide), kResultOk);
    EXPECT_EQ(utf8(wide.name) + ", " + utf8(wide.vendor), "MMK Zonfra QT, Morvandel Mixing Kit");
    factory3->release();
    void* nothing = nullptr;
    EXPECT_NE(module.factory->createInstance("no such class id", IComponent::iid.bytes, &nothing), kResultOk);
    EXPECT_EQ(nothing, nullptr);
}

TEST_F(Vst3Host, InterfacesByIdentifier) {
    for (const Uid* iid : {&IEditController2::iid, &IUnitInfo::iid, &IProgramListData::iid, &IMidiMapping::iid,
                           &IPluginBase::iid, &FUnknown::iid}) {
        void* object = nullptr;
        EXPECT_EQ(plugin.component->queryInterface(iid->bytes, &object), kResultOk);
        ASSERT_NE(object, nullptr);
        static_cast<FUnknown*>(object)->release();
    }
    void* object = nullptr;
    EXPECT_EQ(plugin.component->queryInterface(IPlugView::iid.bytes, &object), kNoInterface);
    EXPECT_EQ(object, nullptr);
}

TEST_F(Vst3Host, BusesParametersUnitsLatencyAndFixedAnswers) {
    EXPECT_EQ(plugin.component->getBusCount(kAudio, kInput), 1);
    EXPECT_EQ(plugin.component->getBusCount(kAudio, kOutput), 1);
    BusInfo bus{};
    ASSERT_EQ(plugin.component->getBusInfo(kAudio, kOutput, 0, bus), kResultOk);
    EXPECT_EQ(utf8(bus.name), "MMK Zonfra QT Stereo Out 1");
    ParameterInfo bypass{};
    EXPECT_EQ(plugin.findParameter("Bypass", &bypass), 41);
    EXPECT_EQ(bypass.flags & 0x10000, 0x10000);
    EXPECT_EQ(bypass.stepCount, 1);
    ParameterInfo program{};
    EXPECT_EQ(plugin.findParameter("VST3PrgChange", &program), 0x506C7374);
    EXPECT_EQ(program.flags, 0x8008);
    auto* units = query<IUnitInfo>(plugin.component);
    EXPECT_EQ(units->getProgramListCount(), 0);
    UnitInfo root{};
    ASSERT_EQ(units->getUnitInfo(0, root), kResultOk);
    EXPECT_EQ(utf8(root.name), "Root");
    EXPECT_EQ(root.parentUnitId, -1);
    EXPECT_EQ(root.programListId, 0x506C7374);
    units->release();
    EXPECT_EQ(plugin.processor->getLatencySamples(), 221u);
    Instance fast(module, 96000, 512);
    EXPECT_EQ(fast.processor->getLatencySamples(), 481u);
    EXPECT_EQ(fast.processor->getTailSamples(), 44100u);
    EXPECT_EQ(plugin.processor->canProcessSampleSize(kSample32), kResultTrue);
    EXPECT_EQ(plugin.processor->canProcessSampleSize(kSample64), kResultFalse);
    EXPECT_EQ(plugin.processor->setProcessing(1), kNotImplemented);
    auto* mapping = query<IMidiMapping>(plugin.component);
    ParamID id = 12345;
    EXPECT_EQ(mapping->getMidiControllerAssignment(0, 0, 7, id), kResultFalse);
    mapping->release();
    EXPECT_EQ(plugin.controller->createView("other"), nullptr);
    IPlugView* view = plugin.controller->createView("editor");
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->isPlatformTypeSupported(kPlatformTypeX11EmbedWindowID), kResultTrue);
    view->release();
}

TEST_F(Vst3Host, ThreeQueuePointsMoveTheParameterOnceAtTheThirdOffset) {
    Instance automated(module), reference(module);
    const ParamID outputGain = static_cast<ParamID>(automated.findParameter("Output Gain"));
    // Warm both up so the output carries the steady sine.
    for (Instance* instance : {&automated, &reference})
        for (size_t b = 0; b < 100; ++b) instance->runSine(512, 1000, b * 512);
    Changes changes;
    int32 index = 0;
    IParamValueQueue* queue = changes.addParameterData(outputGain, index);
    for (auto [offset, value] : {std::pair{10, 0.2}, {50, 0.3}, {200, 0.0}}) queue->addPoint(offset, value, index);
    const std::vector<float> l = automated.runSine(512, 1000, 100 * 512, &changes);
    const std::vector<float> l2 = reference.runSine(512, 1000, 100 * 512);
    EXPECT_TRUE(std::equal(l.begin(), l.begin() + 200, l2.begin()));
    EXPECT_NE(l[200], l2[200]);
    EXPECT_DOUBLE_EQ(automated.controller->getParamNormalized(outputGain), 0.0);
}

TEST_F(Vst3Host, MonoInputReachesTheEffectOnBothChannels) {
    SpeakerArrangement mono = SpeakerArr::kMono, stereo = SpeakerArr::kStereo;
    EXPECT_EQ(plugin.processor->setBusArrangements(&mono, 1, &stereo, 1), kResultTrue);
    std::vector<float> l, r;
    for (int b = 0; b < 4; ++b) {
        l = sine(512, 440, static_cast<size_t>(b) * 512), r.assign(512, 0.0f);
        plugin.run(l.data(), r.data(), 512, nullptr, nullptr, 1);
    }
    EXPECT_EQ(l, r);
}

TEST_F(Vst3Host, TempoZeroAndOversizedBlocks) {
    Instance small(module, 44100, 256);
    // A host at tempo 0 must not stop the LFO or crash.
    ProcessContext context{.state = ProcessContext::kPlaying | ProcessContext::kTempoValid, .tempo = 0};
    small.runSine(256, 440, 0, nullptr, &context);
    EXPECT_EQ(small.lastResult, kResultOk);
    std::vector<float> big(1024, 0.1f), bigR = big;
    small.run(big.data(), bigR.data(), 1024);
    EXPECT_EQ(small.lastResult, kResultFalse);
    EXPECT_EQ(big[0], 0.1f);  // nothing processed
}

TEST_F(Vst3Host, StateRoundTripsAndDamagedStatesAreRefused) {
    Instance source(module);
    Changes changes;
    source.runSine(512, 440, 0, &changes.add(1, 0.3).add(20, 0.7));
    const std::vector<char> saved = source.state();
    ASSERT_EQ(source.lastResult, kResultOk);
    int32 size = 0;
    std::memcpy(&size, saved.data(), 4);
    EXPECT_EQ(static_cast<size_t>(size) + 8, saved.size());
    EXPECT_EQ(std::memcmp(saved.data() + 8, "MMK-zonfra-Preset", 17), 0);

    Instance target(module);
    std::vector<char> otherProgram = saved;
    otherProgram[4] = 5;  // the one program is 0 again when saved
    ASSERT_EQ(target.load(otherProgram), kResultOk);
    EXPECT_NEAR(target.controller->getParamNormalized(20), 0.7, 1e-6);
    EXPECT_EQ(target.state(), saved);
    Changes other;
    for (int b = 0; b < 8; ++b) target.runSine(512, 440, 0, b == 0 ? &other.add(1, 0.9) : nullptr);
    ASSERT_NE(target.state(), saved);
    ASSERT_EQ(target.load(saved), kResultOk);
    EXPECT_EQ(target.state(), saved);
    EXPECT_NEAR(target.controller->getParamNormalized(1), 0.3, 1e-6);

    // The host's size field off either way, the stream cut short, the chunk cut; damage inside the
    // chunk is the effect's to find (Vst2StateRefusal).
    auto damaged = [&](int32 delta, size_t cut) {
        std::vector<char> state(saved.begin(), saved.end() - static_cast<long>(cut));
        const int32 stated = size + delta;
        std::memcpy(state.data(), &stated, 4);
        return state;
    };
    for (const auto& state : {damaged(1, 0), damaged(-1, 0), damaged(-size / 2, 0), damaged(0, 1), damaged(-1, 1),
                              std::vector<char>{1, 2, 3}}) {
        EXPECT_EQ(target.load(state), kResultFalse);
        EXPECT_EQ(target.state(), saved);
    }
    EXPECT_EQ(target.component->setState(nullptr), kResultOk);
}

TEST_F(Vst3Host, LifecycleRoundsEndInANewEffect) {
    Changes changes;
    plugin.runSine(512, 440, 0, &changes.add(1, 0.3));
    EXPECT_NEAR(plugin.controller->getParamNormalized(1), 0.3, 1e-6);
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(plugin.component->setActive(false), kResultOk);
        ProcessSetup setup{kRealtime, kSample32, 512, 48000};
        ASSERT_EQ(plugin.processor->setupProcessing(setup), kResultOk);
        ASSERT_EQ(plugin.component->setActive(true), kResultOk);
        ASSERT_EQ(plugin.component->setActive(false), kResultOk);
        ASSERT_EQ(plugin.component->terminate(), kResultOk);
        EXPECT_EQ(plugin.controller->getParameterCount(), 0);
        ASSERT_EQ(plugin.component->initialize(nullptr), kResultOk);
    }
    EXPECT_EQ(plugin.controller->getParameterCount(), 49);
    EXPECT_NEAR(plugin.controller->getParamNormalized(1), 1.0, 1e-6);  // a fresh effect: LowPass wide open
    plugin.component->setActive(true);
    EXPECT_TRUE(std::isfinite(plugin.runSine(512, 440)[511]));
    EXPECT_EQ(plugin.lastResult, kResultOk);
}

TEST_F(Vst3Host, ParameterTextsAndConversions) {
    String128 text{};
    ASSERT_EQ(plugin.controller->getParamStringByValue(0, 1.0, text), kResultOk);
    EXPECT_EQ(utf8(text), "+6.02 dB");
    EXPECT_NEAR(plugin.controller->normalizedParamToPlain(1, 1.0), 22050, 1e-3);
    EXPECT_NEAR(plugin.controller->plainParamToNormalized(1, 40), 0.0, 1e-6);
    EXPECT_DOUBLE_EQ(plugin.controller->normalizedParamToPlain(9999, 0.25), 0.25);
    char16_t number[] = u"2", garbage[] = u"abc";
    ParamValue value = 0;
    EXPECT_EQ(plugin.controller->getParamValueByString(0, number, value), kResultOk);
    EXPECT_NEAR(value, 1.0, 1e-6);
    EXPECT_EQ(plugin.controller->getParamValueByString(0, garbage, value), kResultFalse);
    // An ordinary parameter does not move through setParamNormalized.
    EXPECT_EQ(plugin.controller->setParamNormalized(1, 0.1), kResultOk);
    EXPECT_NEAR(plugin.controller->getParamNormalized(1), 1.0, 1e-6);
}

TEST_F(Vst3Host, ProcessAllocatesNothing) {
    Changes changes;
    changes.add(1, 0.4, 30).add(0, 0.3, 300);
    ProcessContext context{.state = ProcessContext::kPlaying, .tempo = 120};
    std::vector<float> l = sine(512, 440), r = l;
    plugin.run(l.data(), r.data(), 512, nullptr, &context);
    // Calls without audio hand their changes over at once, from the same queue.
    Changes alone[2];
    alone[0].add(2, 0.2);
    alone[1].add(2, 0.8);
    TestSupport::AllocationScope scope;
    for (int b = 0; b < 20; ++b) {
        context.projectTimeSamples += 512;
        plugin.run(l.data(), r.data(), 512, b % 2 ? &changes : nullptr, &context);
        ProcessData none{.inputParameterChanges = &alone[b % 2]};
        plugin.processor->process(none);
    }
    EXPECT_EQ(scope.allocations(), 0u);
}
