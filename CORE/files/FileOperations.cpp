#include "CORE/files/FileOperations.h"

#include <unistd.h>

#include <cstdio>
#include <memory>

#include "CORE/files/CoreFastFile.h"

namespace Core {

int writeFile(const std::string& path, const void* data, size_t size) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return -1;
    const bool complete = std::fwrite(data, 1, size, file) == size;
    return std::fclose(file) == 0 && complete ? 0 : -1;
}

bool copyFile(const std::string& source, const std::string& destination, ICopyProgress* progress,
              ICopyCancel* cancel) {
    constexpr size_t kBlock = 0x400000;
    CoreFastFile in;
    CoreFastFile out;
    if (!in.open(0, "%s", source.c_str())) return false;
    if (!out.open(CoreFastFile::kWrite, "%s", destination.c_str())) return false;
    const double total = static_cast<double>(in.size());
    std::unique_ptr<char[]> block(new char[kBlock]);
    uint64_t written = 0;
    bool ok = true;
    for (;;) {
        const size_t got = in.read(block.get(), kBlock);
        if (got == 0) break;
        const size_t put = out.write(block.get(), got);
        written += put;
        if (progress) progress->setProgress(total > 0 ? static_cast<float>(written / total) : 1.0f);
        if (put != got || (cancel && !cancel->shouldContinue())) {
            ok = false;
            break;
        }
    }
    out.close();
    if (!ok) unlink(destination.c_str());
    return ok;
}

}  // namespace Core
