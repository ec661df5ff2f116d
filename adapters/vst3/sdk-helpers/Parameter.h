#pragma once
#include <atomic>

#include "adapters/vst3/sdk/Vst3Controller.h"

namespace Steinberg::Vst {

// One parameter as the host sees it: its description and its normalised value. The plain value
// is the normalised one unless a subclass maps it. The value is read on the audio thread while
// the main thread writes it, so it is stored atomically.
class Parameter {
public:
    Parameter() = default;
    explicit Parameter(const ParameterInfo& description);
    // Texts in UTF-8; the short title defaults to the title.
    Parameter(const char* title, ParamID id, const char* units = nullptr, ParamValue defaultNormalized = 0,
              int32 stepCount = 0, int32 flags = ParameterInfo::kCanAutomate, UnitID unitId = kRootUnitId,
              const char* shortTitle = nullptr);
    virtual ~Parameter() = default;
    Parameter(const Parameter&) = delete;
    Parameter& operator=(const Parameter&) = delete;

    const ParameterInfo& getInfo() const { return info; }
    ParamID getId() const { return info.id; }

    virtual ParamValue getNormalized() const { return value.load(std::memory_order_relaxed); }
    // Clamps to 0..1; true if the stored value changed.
    virtual bool setNormalized(ParamValue normalized);

    // The plain value as text (four decimals).
    virtual void toString(ParamValue normalized, String128 text) const;
    // A decimal number read as a plain value; false if the text is no number.
    virtual bool fromString(const TChar* text, ParamValue& normalized) const;
    virtual ParamValue toPlain(ParamValue normalized) const { return normalized; }
    virtual ParamValue toNormalized(ParamValue plain) const { return plain; }

protected:
    // Stores as it is: no clamp, nothing else told.
    void storeNormalized(ParamValue normalized) { value.store(normalized, std::memory_order_relaxed); }

    ParameterInfo info{};

private:
    std::atomic<ParamValue> value{0};
};

}  // namespace Steinberg::Vst
