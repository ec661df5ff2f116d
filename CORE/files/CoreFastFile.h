#pragma once
#include <cstddef>
#include <cstdint>

namespace Core {

// A file or a piece of memory read and written as one stream.
class CoreFastFile {
public:
    // `open` flags.
    static constexpr int kShareRead = 1;
    static constexpr int kWrite = 2;       // truncates or creates
    static constexpr int kRandomAccess = 4;
    static constexpr int kKeepContents = 8;  // with kWrite: open or create without truncating

    CoreFastFile() = default;
    ~CoreFastFile();
    CoreFastFile(const CoreFastFile&) = delete;
    CoreFastFile& operator=(const CoreFastFile&) = delete;

    // printf-style path. False (and lastError 1) when the file can't be opened or is a folder.
    bool open(int flags, const char* pathFormat, ...) __attribute__((format(printf, 3, 4)));
    void openMemory(void* pointer, uint64_t size);
    // A memory image linked into this library under `name` (see ModuleResources.h). The module
    // argument is there for callers that name one; every image of this library is found either way.
    bool openResource(const void* module, const char* nameFormat, ...) __attribute__((format(printf, 3, 4)));
    void close();

    // -1 when closed.
    int64_t size() const;
    size_t read(void* buffer, size_t count);
    size_t write(const void* buffer, size_t count);
    void seek(uint64_t newPosition);
    uint64_t tell() const { return position; }
    bool isOpen() const { return handle >= 0 || memory != nullptr; }
    int getLastError() const { return lastError; }

    // The whole file with a closing zero; null (and size 0) when it can't be read. Free with free().
    static char* readAll(const char* path, size_t* size);
    static bool writeAll(const char* path, const void* buffer, size_t count, bool keepContents = false);

private:
    bool openPath(int flags, const char* path);

    int handle = -1;
    unsigned char* memory = nullptr;
    uint64_t position = 0;
    uint64_t length = 0;
    int lastError = 0;
    bool readOnlyMemory = false;
};

}  // namespace Core
