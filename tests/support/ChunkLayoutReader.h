#pragma once
#include <cstdint>
#include <map>
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

int32_t le32(const uint8_t* p);
float leFloat(const uint8_t* p);
bool readOuter(const uint8_t* data, size_t size, Outer& out);
std::vector<Record> readRecords(const std::vector<uint8_t>& plain);
bool readParameterTable(const std::vector<uint8_t>& data, ParameterTable& out);

}  // namespace ChunkLayout
