#pragma once
// Where PNG bytes come from when a bitmap decodes them.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

namespace Vinta {

class IVintaPNGStream {
public:
    virtual ~IVintaPNGStream() = default;
    // Copies up to `count` bytes; answers how many were copied (0 at the end).
    virtual size_t read(uint8_t* buffer, size_t count) = 0;
};

// Bytes in memory. A read past the end copies nothing.
class PNGMemoryStream : public IVintaPNGStream {
public:
    PNGMemoryStream(const uint8_t* bytes, size_t byteCount) : data(bytes), size(byteCount) {}
    size_t read(uint8_t* buffer, size_t count) override;

private:
    const uint8_t* data;
    size_t size;
    size_t position = 0;
};

// An image compiled into the library (Core::findModuleResource), by name; empty when missing.
class PNGResourceStream : public IVintaPNGStream {
public:
    explicit PNGResourceStream(const char* name);
    bool found() const { return isFound; }
    size_t read(uint8_t* buffer, size_t count) override { return memory.read(buffer, count); }

private:
    PNGMemoryStream memory{nullptr, 0};
    bool isFound = false;
};

// A file of the main resource archive, by name; empty when missing.
class PNGNewResourceStream : public IVintaPNGStream {
public:
    explicit PNGNewResourceStream(const char* name);
    bool found() const { return !bytes.empty(); }
    size_t read(uint8_t* buffer, size_t count) override { return memory.read(buffer, count); }

private:
    std::vector<uint8_t> bytes;
    PNGMemoryStream memory{nullptr, 0};
};

// A file on disk, opened "rb".
class PNGFileStream : public IVintaPNGStream {
public:
    explicit PNGFileStream(const char* path);
    ~PNGFileStream() override;
    PNGFileStream(const PNGFileStream&) = delete;
    PNGFileStream& operator=(const PNGFileStream&) = delete;
    bool opened() const { return file != nullptr; }
    size_t read(uint8_t* buffer, size_t count) override;

private:
    FILE* file = nullptr;
};

}  // namespace Vinta
