#pragma once
// The bundle's library loaded the way a Linux host loads it, one effect instance driven through the
// VST 3 interfaces the library exports, and the host-side objects handed to it: a memory stream and
// parameter queues.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <cstring>
#include <tuple>

#include "adapters/vst3/sdk/Vst3Base.h"
#include "adapters/vst3/sdk/Vst3Controller.h"
#include "adapters/vst3/sdk/Vst3Processor.h"
#include "support/Samples.h"

namespace TestHost {

using namespace Steinberg;
using namespace Steinberg::Vst;

template <typename Interface>
class Counted : public Interface {
public:
    tresult queryInterface(const TUID interfaceId, void** object) override {
        const bool known = sameUid(interfaceId, FUnknown::iid) || sameUid(interfaceId, Interface::iid);
        *object = known ? this : nullptr;
        return known ? kResultOk : kNoInterface;
    }
    uint32 addRef() override { return ++count; }
    uint32 release() override { return --count; }
    virtual ~Counted() = default;
    uint32 count = 1;
};

class MemoryStream : public Counted<IBStream> {
public:
    tresult read(void* buffer, int32 numBytes, int32* numBytesRead) override {
        const int32 n = std::min(numBytes, std::max(static_cast<int32>(bytes.size() - position), 0));
        if (n > 0) std::memcpy(buffer, bytes.data() + position, static_cast<size_t>(n));
        position += static_cast<size_t>(n);
        if (numBytesRead) *numBytesRead = n;
        return kResultOk;
    }
    tresult write(void* buffer, int32 numBytes, int32* numBytesWritten) override {
        const auto* p = static_cast<const char*>(buffer);
        bytes.insert(bytes.begin() + static_cast<long>(position), p, p + numBytes);
        position += static_cast<size_t>(numBytes);
        if (numBytesWritten) *numBytesWritten = numBytes;
        return kResultOk;
    }
    tresult seek(int64 pos, int32 mode, int64* result) override {
        const size_t base = mode == kIBSeekSet ? 0 : mode == kIBSeekCur ? position : bytes.size();
        position = static_cast<size_t>(static_cast<int64>(base) + pos);
        return tell(result);
    }
    tresult tell(int64* pos) override {
        if (pos) *pos = static_cast<int64>(position);
        return kResultOk;
    }
    std::vector<char> bytes;
    size_t position = 0;
};

class Queue : public Counted<IParamValueQueue> {
public:
    explicit Queue(ParamID parameter) : id(parameter) {}
    ParamID getParameterId() override { return id; }
    int32 getPointCount() override { return static_cast<int32>(points.size()); }
    tresult getPoint(int32 index, int32& offset, ParamValue& value) override {
        if (index < 0 || index >= getPointCount()) return kInvalidArgument;
        std::tie(offset, value) = points[static_cast<size_t>(index)];
        return kResultOk;
    }
    tresult addPoint(int32 offset, ParamValue value, int32& index) override {
        points.emplace_back(offset, value);
        index = getPointCount() - 1;
        return kResultOk;
    }
    ParamID id;
    std::vector<std::pair<int32, ParamValue>> points;
};

class Changes : public Counted<IParameterChanges> {
public:
    int32 getParameterCount() override { return static_cast<int32>(queues.size()); }
    IParamValueQueue* getParameterData(int32 index) override {
        return index >= 0 && index < getParameterCount() ? &queues[static_cast<size_t>(index)] : nullptr;
    }
    IParamValueQueue* addParameterData(const ParamID& id, int32& index) override {
        queues.emplace_back(id);
        index = getParameterCount() - 1;
        return &queues.back();
    }
    // One point for one parameter, in a queue of its own.
    Changes& add(ParamID id, ParamValue value, int32 offset = 0) {
        int32 index = 0;
        addParameterData(id, index)->addPoint(offset, value, index);
        return *this;
    }
    std::vector<Queue> queues;
};

inline std::string utf8(const char16_t* text) {
    std::string out;
    for (; text && *text; ++text) out += static_cast<char>(*text < 128 ? *text : '?');
    return out;
}

struct Module {
    Module() : handle(dlopen(ZONFRA_VST3_MODULE, RTLD_NOW | RTLD_LOCAL)) {
        if (!handle) return;
        if (auto entry = reinterpret_cast<bool (*)(void*)>(dlsym(handle, "ModuleEntry"))) entry(handle);
        auto get = reinterpret_cast<IPluginFactory* (*)()>(dlsym(handle, "GetPluginFactory"));
        factory = get ? get() : nullptr;
    }
    ~Module() {
        if (factory) factory->release();
        if (handle) {
            if (auto exit = reinterpret_cast<bool (*)()>(dlsym(handle, "ModuleExit"))) exit();
            dlclose(handle);
        }
    }
    void* handle = nullptr;
    IPluginFactory* factory = nullptr;
};

template <typename Interface>
Interface* query(FUnknown* object) {
    void* result = nullptr;
    if (!object || object->queryInterface(Interface::iid.bytes, &result) != kResultOk) return nullptr;
    return static_cast<Interface*>(result);
}

inline std::vector<float> sine(size_t n, double hertz, size_t start = 0) {
    return TestSupport::sine(n, hertz, 44100, 0.5f, start);
}

struct Instance {
    explicit Instance(Module& module, double rate = 44100, int32 maxBlock = 512) {
        if (!module.factory) return;  // the test fails in its set-up
        PClassInfo info{};
        module.factory->getClassInfo(0, &info);
        void* object = nullptr;
        module.factory->createInstance(info.cid, IComponent::iid.bytes, &object);
        component = static_cast<IComponent*>(object);
        processor = query<IAudioProcessor>(component);
        controller = query<IEditController>(component);
        component->initialize(nullptr);
        SpeakerArrangement stereo = SpeakerArr::kStereo;
        processor->setBusArrangements(&stereo, 1, &stereo, 1);
        ProcessSetup setup{kRealtime, kSample32, maxBlock, rate};
        processor->setupProcessing(setup);
        component->setActive(true);
    }
    ~Instance() {
        if (!component) return;
        component->setActive(false);
        component->terminate();
        controller->release();
        processor->release();
        component->release();
    }

    // One block of `n` samples, in place, with optional parameter changes and context.
    void run(float* left, float* right, int32 n, IParameterChanges* changes = nullptr, ProcessContext* context = nullptr,
             int32 inputChannels = 2) {
        float* in[2] = {left, right};
        float* out[2] = {left, right};
        AudioBusBuffers input{inputChannels, 0, {in}}, output{2, 0, {out}};
        ProcessData data{kRealtime, kSample32, n, 1, 1, &input, &output};
        data.inputParameterChanges = changes;
        data.processContext = context;
        lastResult = processor->process(data);
    }

    // One block of a sine running on from sample `start`, on both channels: the left output.
    std::vector<float> runSine(int32 n, double hertz, size_t start = 0, IParameterChanges* changes = nullptr,
                               ProcessContext* context = nullptr) {
        std::vector<float> left = sine(static_cast<size_t>(n), hertz, start), right = left;
        run(left.data(), right.data(), n, changes, context);
        return left;
    }

    // What a host does to change the sample rate or block size of a running instance.
    tresult reconfigure(double rate, int32 maxBlock) {
        component->setActive(false);
        ProcessSetup setup{kRealtime, kSample32, maxBlock, rate};
        const tresult result = processor->setupProcessing(setup);
        component->setActive(true);
        return result;
    }

    std::vector<char> state() {
        MemoryStream stream;
        lastResult = component->getState(&stream);
        return stream.bytes;
    }
    tresult load(const std::vector<char>& bytes) {
        MemoryStream stream;
        stream.bytes = bytes;
        return component->setState(&stream);
    }

    int32 findParameter(const char* title, ParameterInfo* found = nullptr) {
        ParameterInfo info{};
        for (int32 i = 0; i < controller->getParameterCount(); ++i)
            if (controller->getParameterInfo(i, info) == kResultOk && utf8(info.title) == title) {
                if (found) *found = info;
                return static_cast<int32>(info.id);
            }
        return -1;
    }

    IComponent* component = nullptr;
    IAudioProcessor* processor = nullptr;
    IEditController* controller = nullptr;
    tresult lastResult = kResultOk;
};

// Tests with the bundle's library loaded, and one instance of 44.1 kHz made from it; each fails at once
// when the library does not load.
class ModuleTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_NE(module.factory, nullptr) << dlerror(); }
    Module module;
};
class InstanceTest : public ModuleTest {
protected:
    Instance plugin{module};
};

}  // namespace TestHost
