#pragma once
// Host-side objects a VST 3 test host hands to the plug-in: a memory stream and parameter queues.
#include <algorithm>
#include <cstring>
#include <tuple>
#include <vector>

#include "adapters/vst3/sdk/Vst3Controller.h"
#include "adapters/vst3/sdk/Vst3Processor.h"

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

}  // namespace TestHost
