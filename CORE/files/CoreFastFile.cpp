#include "CORE/files/CoreFastFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "CORE/files/ModuleResources.h"

namespace Core {

namespace {
constexpr size_t kMaxPath = 260;

// False when the text does not fit the path limit.
bool formatPath(char (&out)[kMaxPath + 1], const char* format, va_list args) {
    const int written = std::vsnprintf(out, sizeof out, format, args);
    return written >= 0 && static_cast<size_t>(written) <= kMaxPath;
}
}  // namespace

CoreFastFile::~CoreFastFile() { close(); }

bool CoreFastFile::open(int flags, const char* pathFormat, ...) {
    char path[kMaxPath + 1];
    va_list args;
    va_start(args, pathFormat);
    const bool fits = formatPath(path, pathFormat, args);
    va_end(args);
    close();
    if (!fits || !openPath(flags, path)) {
        lastError = 1;
        return false;
    }
    lastError = 0;
    return true;
}

bool CoreFastFile::openPath(int flags, const char* path) {
    int mode = O_RDONLY;
    if (flags & kWrite) mode = O_WRONLY | O_CREAT | ((flags & kKeepContents) ? 0 : O_TRUNC);
    const int fd = ::open(path, mode | O_CLOEXEC, 0644);
    if (fd < 0) return false;
    struct stat info {};
    if (fstat(fd, &info) != 0 || S_ISDIR(info.st_mode)) {
        ::close(fd);
        return false;
    }
    posix_fadvise(fd, 0, 0, (flags & kRandomAccess) ? POSIX_FADV_RANDOM : POSIX_FADV_SEQUENTIAL);
    handle = fd;
    length = static_cast<uint64_t>(info.st_size);
    return true;
}

void CoreFastFile::openMemory(void* pointer, uint64_t size) {
    close();
    memory = static_cast<unsigned char*>(pointer);
    length = size;
}

bool CoreFastFile::openResource(const void* /*module*/, const char* nameFormat, ...) {
    char name[kMaxPath + 1];
    va_list args;
    va_start(args, nameFormat);
    const bool fits = formatPath(name, nameFormat, args);
    va_end(args);
    close();
    const ModuleResource* image = fits ? findModuleResource(name) : nullptr;
    if (!image) {
        lastError = 1;
        return false;
    }
    // Resources are read-only images; writing into them is refused by `write`.
    memory = const_cast<unsigned char*>(image->data);
    length = image->size;
    readOnlyMemory = true;
    lastError = 0;
    return true;
}

void CoreFastFile::close() {
    if (handle >= 0) ::close(handle);
    handle = -1;
    memory = nullptr;
    readOnlyMemory = false;
    position = 0;
    length = 0;
}

int64_t CoreFastFile::size() const {
    if (memory) return static_cast<int64_t>(length);
    if (handle < 0) return -1;
    struct stat info {};
    return fstat(handle, &info) == 0 ? static_cast<int64_t>(info.st_size) : -1;
}

size_t CoreFastFile::read(void* buffer, size_t count) {
    if (memory) {
        const size_t available = position < length ? static_cast<size_t>(length - position) : 0;
        const size_t n = count < available ? count : available;
        std::memcpy(buffer, memory + position, n);
        position += n;
        return n;
    }
    if (handle < 0) return 0;
    size_t done = 0;
    while (done < count) {
        const ssize_t got = pread(handle, static_cast<char*>(buffer) + done, count - done,
                                  static_cast<off_t>(position));
        if (got <= 0) break;
        done += static_cast<size_t>(got);
        position += static_cast<uint64_t>(got);
    }
    return done;
}

size_t CoreFastFile::write(const void* buffer, size_t count) {
    if (memory) {
        if (readOnlyMemory) return 0;
        const size_t room = position < length ? static_cast<size_t>(length - position) : 0;
        const size_t n = count < room ? count : room;
        std::memcpy(memory + position, buffer, n);
        position += n;
        return n;
    }
    if (handle < 0) return 0;
    size_t done = 0;
    while (done < count) {
        const ssize_t put = pwrite(handle, static_cast<const char*>(buffer) + done, count - done,
                                   static_cast<off_t>(position));
        if (put <= 0) break;
        done += static_cast<size_t>(put);
        position += static_cast<uint64_t>(put);
    }
    return done;
}

void CoreFastFile::seek(uint64_t newPosition) {
    if (memory && length > 0 && newPosition > length - 1) newPosition = length - 1;
    position = newPosition;
}

char* CoreFastFile::readAll(const char* path, size_t* size) {
    if (size) *size = 0;
    CoreFastFile file;
    if (!file.open(0, "%s", path)) return nullptr;
    const int64_t total = file.size();
    if (total < 0) return nullptr;
    char* buffer = static_cast<char*>(std::malloc(static_cast<size_t>(total) + 1));
    if (!buffer) return nullptr;
    const size_t got = file.read(buffer, static_cast<size_t>(total));
    buffer[got] = 0;
    if (size) *size = got;
    return buffer;
}

bool CoreFastFile::writeAll(const char* path, const void* buffer, size_t count, bool keepContents) {
    CoreFastFile file;
    if (!file.open(kWrite | (keepContents ? kKeepContents : 0), "%s", path)) return false;
    return file.write(buffer, count) == count;
}

}  // namespace Core
