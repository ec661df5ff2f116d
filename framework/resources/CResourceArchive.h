#pragma once
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace Ondra {

// A named list of files packed with zlib into one memory image ("RESOURCE2"). Readers open it on
// memory they keep alive, take files out by exact name, and close it again. The tools that make
// the images use the builder side: `add` files, then `save` in binary or text form.
class CResourceArchive {
public:
    struct Entry {
        char name[256];
        int32_t plainSize;
        int32_t storedSize;  // -1: kept unpacked and scrambled
        int32_t offset;      // from the start of the data area
    };
    static constexpr int kEntrySize = 268;
    static constexpr int kHeaderSize = 20;
    static constexpr int kVersion = 0x2000;

    CResourceArchive() = default;
    ~CResourceArchive();
    CResourceArchive(const CResourceArchive&) = delete;
    CResourceArchive& operator=(const CResourceArchive&) = delete;

    // False when the image is no archive of this form; a table that does not unpack leaves it
    // open with no entries.
    bool open(const void* image, size_t size);
    // Frees every block not given back.
    void close();

    int getCount() const { return static_cast<int>(entries.size()); }
    const char* getName(int index) const;
    // A new block of the file, owned by the archive until `freeResource` or `close`; null and
    // size 0 for a name that isn't there (case counts).
    void* getResource(const char* name, int* size);
    void freeResource(void* block);
    size_t getLiveBlockCount() const { return liveBlocks.size(); }

    // Builder. A file that can't be read adds nothing; without a name the path's file name is used.
    bool add(const std::string& path, const char* name = nullptr);
    // Writes the archive and empties the builder. The text form is a C array "kResource" with
    // its size in "kResource_size".
    bool save(const std::string& path, bool asText);

private:
    void emit(FILE* file, const void* bytes, size_t count, bool asText);

    std::vector<Entry> entries;
    std::vector<std::vector<uint8_t>> buffers;  // builder: the stored form of each added file
    const uint8_t* dataArea = nullptr;
    size_t dataAreaSize = 0;
    const uint8_t* image = nullptr;
    size_t imageSize = 0;
    std::vector<void*> liveBlocks;
    int32_t textTotal = 0;
    int32_t textLine = 0;
};

}  // namespace Ondra
