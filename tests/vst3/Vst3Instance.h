#pragma once
// The bundle's library loaded the way a Linux host loads it, and one effect instance driven through
// the VST 3 interfaces the library exports.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "HostObjects.h"
#include "adapters/vst3/sdk/Vst3Base.h"

namespace TestHost {

inline std::string utf8(const char16_t* text) {
    std::string out;
    for (; text && *text; ++text) out += static_cast<char>(*text < 128 ? *text : '?');
    return out;
}

struct Module {
    Module() {
        handle = dlopen(ZONFRA_VST3_MODULE, RTLD_NOW | RTLD_LOCAL);
        if (!handle) return;
        auto entry = reinterpret_cast<bool (*)(void*)>(dlsym(handle, "ModuleEntry"));
        auto get = reinterpret_cast<IPluginFactory* (*)()>(dlsym(handle, "GetPluginFactory"));
        if (entry) entry(handle);
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

struct Instance {
    explicit Instance(Module& module, double rate = 44100, int32 maxBlock = 512) {
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
        for (int32 i = 0; i < controller->getParameterCount(); ++i) {
            ParameterInfo info{};
            controller->getParameterInfo(i, info);
            if (utf8(info.title) == title) {
                if (found) *found = info;
                return static_cast<int32>(info.id);
            }
        }
        return -1;
    }

    IComponent* component = nullptr;
    IAudioProcessor* processor = nullptr;
    IEditController* controller = nullptr;
    tresult lastResult = kResultOk;
};

// Tests with the bundle's library loaded; each fails at once when it does not load.
class ModuleTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_NE(module.factory, nullptr) << dlerror(); }
    Module module;
};

inline std::vector<float> sine(size_t n, double hertz, size_t start = 0) {
    std::vector<float> out(n);
    for (size_t i = 0; i < n; ++i)
        out[i] = 0.5f * static_cast<float>(std::sin(2 * M_PI * hertz * static_cast<double>(i + start) / 44100.0));
    return out;
}

}  // namespace TestHost
