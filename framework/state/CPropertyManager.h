#pragma once
#include <cstdint>
#include <vector>

#include "framework/parameters/ParameterProperty.h"

namespace Ondra {

// Owns a list of parameters and stores their values as a self-describing table of keys, so that
// state survives added, reordered and dropped parameters.
class CPropertyManager {
public:
    static constexpr int kHeaderSize = 48;
    static constexpr int kRecordSize = 64;
    static constexpr int kKeySize = 52;
    static constexpr int32_t kVersion = 0x1000;

    CPropertyManager();
    virtual ~CPropertyManager();
    CPropertyManager(const CPropertyManager&) = delete;
    CPropertyManager& operator=(const CPropertyManager&) = delete;

    // Gives the existing parameter when the key is taken.
    ParameterProperty* addParameter(const ParameterRecord& record);
    ParameterProperty* getParameter(int index) const;
    ParameterProperty* getParameterById(int id) const;
    ParameterProperty* getAutomatable(int index) const;
    int getCount() const { return static_cast<int>(parameters.size()); }
    int getAutomatableCount() const { return static_cast<int>(automatable.size()); }
    ParameterProperty* findByKey(const char* key) const;

    // Silences all parameters; endBatch tells each parameter's listeners once, in list order.
    void beginBatch();
    void endBatch();

    void setTag(const char* text);
    void setCompress(bool on) { compress = on; }
    void setMinVersion(int version) { minVersion = version; }
    // Returns the length; the block stays owned here until the next call.
    int serialize(void** out);
    // Applies the stored values by key. `instance` >= 0 renumbers the keys' trailing number.
    void load(const void* data, int size, int instance);

private:
    char tag[20];
    std::vector<ParameterProperty*> parameters;
    std::vector<ParameterProperty*> automatable;
    std::vector<ParameterProperty*> owned;
    std::vector<uint8_t> serialized;
    bool compress = true;
    bool checkVersion = true;
    int32_t minVersion = 0;
    int32_t maxVersion = 0xFFFFFF;
};

}  // namespace Ondra
