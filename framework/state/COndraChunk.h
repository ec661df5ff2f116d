#pragma once
#include <cstdint>
#include <vector>

namespace Ondra {

// The state block: a tagged header around a compressed, shuffled sequence of named records.
class COndraChunk {
public:
    static constexpr int kHeaderSize = 44;
    static constexpr int kRecordHeaderSize = 40;
    static constexpr int32_t kVersion = 0x1000;
    static constexpr int kMaxPresetName = 40;

    COndraChunk();

    void setTag(const char* text);
    void setCompress(bool on) { compress = on; }
    void setPresetName(const char* text);
    const char* getPresetName() const { return presetName; }
    void clear();
    void addChunk(const char* name, const void* data, int size);
    void addChunk(const char* name, const char* text);
    // Returns the length; the block stays owned here until the next clear or finish.
    int finish(void** out);
    // 0 for success, 2 for failure. The payload of `data` is unshuffled in place.
    int read(void* data, int size);
    // Size of the named record, or 0 with a null pointer.
    int find(const char* name, void** data) const;
    int getRecordsRead() const { return recordsRead; }

private:
    struct IndexEntry {
        char name[24];
        uint8_t* data;
        int32_t size;
    };

    char tag[21];
    char presetName[kMaxPresetName + 1];
    std::vector<uint8_t> output;
    std::vector<IndexEntry> index;
    std::vector<uint8_t> payload;
    bool compress = true;
    int32_t recordsRead = 0;
};

}  // namespace Ondra
