#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Ondra {

// The archive form of earlier builds ("resource"): one scrambled, shuffled and usually packed
// payload that unpacks to a chain of "Rcnk" records. Read whole on opening; files are handed out
// as pointers into the unpacked block.
class CLegacyResourceArchive {
public:
    struct Record {
        const char* name;
        const uint8_t* data;
        int32_t size;
    };

    // Works on its own copy of the image. False when the image is refused; the archive is then
    // empty.
    bool open(const void* image, size_t size);
    void close();

    int getCount() const { return static_cast<int>(records.size()); }
    const char* getName(int index) const;
    // Points into the archive's block; null and size 0 when not found.
    const void* getResource(const char* name, int* size) const;

private:
    std::vector<uint8_t> plain;
    std::vector<Record> records;
};

}  // namespace Ondra
