#pragma once
#include <cstdint>

namespace Ondra {

// Constant description a parameter is built from. `initialValue` is what a new instance holds,
// `defaultValue` what a reset goes to; they may differ.
struct ParameterRecord {
    const char* key;
    const char* name;
    const char* automationName;
    float minimum;
    float maximum;
    float initialValue;
    float defaultValue;
    bool automatable;
    float curve;
    int32_t unitType;
    int32_t id;
};

}  // namespace Ondra
