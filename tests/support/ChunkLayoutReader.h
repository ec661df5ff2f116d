#pragma once
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

// An independent reader of the state chunk layout, written from the byte tables, so that tests
// do not check the production reader against itself.
namespace ChunkLayout {

struct Outer {
    std::string tag;
    int32_t reserved, headerSize, version, compressed, storedSize, plainSize;
    std::vector<uint8_t> plain;  // unshuffled and unpacked payload
};

struct Record {
    std::string name;
    int32_t headerSize, version, dataSize;
    size_t offset;  // of the record within the plain payload
    std::vector<uint8_t> data;
};

struct ParameterTable {
    std::string tag;
    int32_t headerSize, version, compressed, storedSize, plainSize, recordSize, count;
    struct Row {
        std::string key;
        float value, minimum, maximum;
    };
    std::vector<Row> rows;
};

inline int32_t le32(const uint8_t* p) {
    return static_cast<int32_t>(static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
                                static_cast<uint32_t>(p[2]) << 16 | static_cast<uint32_t>(p[3]) << 24);
}

inline float leFloat(const uint8_t* p) {
    const int32_t bits = le32(p);
    float f;
    std::memcpy(&f, &bits, 4);
    return f;
}

inline bool readOuter(const uint8_t* data, size_t size, Outer& out) {
    if (size < 44) return false;
    out.tag.assign(reinterpret_cast<const char*>(data), strnlen(reinterpret_cast<const char*>(data), 20));
    int32_t* fields[] = {&out.reserved, &out.headerSize, &out.version, &out.compressed, &out.storedSize, &out.plainSize};
    for (size_t i = 0; i < 6; ++i) *fields[i] = le32(data + 20 + 4 * i);
    if (size != static_cast<size_t>(out.headerSize + out.storedSize)) return false;
    std::vector<uint8_t> stored(data + out.headerSize, data + size);
    // Undo the reversals at falling even offsets.
    const size_t even = stored.size() & ~size_t{1};
    if (stored.size() >= 4)
        for (size_t q = even - 4;; q -= 2) {
            std::reverse(stored.begin() + static_cast<long>(q), stored.begin() + static_cast<long>(q) + 4);
            if (q == 0) break;
        }
    // The tests read chunks as the effect writes them: packed.
    out.plain.assign(static_cast<size_t>(out.plainSize), 0);
    uLongf length = out.plain.size();
    if (!out.compressed || uncompress(out.plain.data(), &length, stored.data(), stored.size()) != Z_OK) return false;
    out.plain.resize(length);
    return true;
}

inline std::vector<Record> readRecords(const std::vector<uint8_t>& plain) {
    std::vector<Record> records;
    size_t at = 0;
    while (plain.size() - at >= 40 && std::memcmp(&plain[at], "OCnk\0", 5) == 0) {
        Record r;
        r.name.assign(reinterpret_cast<const char*>(&plain[at + 5]), strnlen(reinterpret_cast<const char*>(&plain[at + 5]), 20));
        r.headerSize = le32(&plain[at + 28]);
        r.version = le32(&plain[at + 32]);
        r.dataSize = le32(&plain[at + 36]);
        r.offset = at;
        r.data.assign(plain.begin() + static_cast<long>(at) + r.headerSize,
                      plain.begin() + static_cast<long>(at) + r.headerSize + r.dataSize);
        at += static_cast<size_t>(r.headerSize + r.dataSize);
        records.push_back(std::move(r));
    }
    return records;
}

inline bool readParameterTable(const std::vector<uint8_t>& d, ParameterTable& out) {
    if (d.size() < 48) return false;
    out.tag.assign(reinterpret_cast<const char*>(d.data()), strnlen(reinterpret_cast<const char*>(d.data()), 20));
    int32_t* fields[] = {&out.headerSize, &out.version,    &out.compressed, &out.storedSize,
                         &out.plainSize,  &out.recordSize, &out.count};
    for (size_t i = 0; i < 7; ++i) *fields[i] = le32(&d[20 + 4 * i]);
    if (out.compressed) return false;  // the effect stores its table plain
    for (int i = 0; i < out.count; ++i) {
        const uint8_t* r = &d[48 + static_cast<size_t>(i * out.recordSize)];
        out.rows.push_back({std::string(reinterpret_cast<const char*>(r), strnlen(reinterpret_cast<const char*>(r), 52)),
                            leFloat(r + 52), leFloat(r + 56), leFloat(r + 60)});
    }
    return true;
}

}  // namespace ChunkLayout
