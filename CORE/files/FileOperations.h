#pragma once
#include <string>

namespace Core {

// Whole file in one go: 0 on success, -1 when it can't be opened or written.
int writeFile(const std::string& path, const void* data, size_t size);

struct ICopyProgress {
    virtual ~ICopyProgress() = default;
    virtual void setProgress(float fractionWritten) = 0;
};
struct ICopyCancel {
    virtual ~ICopyCancel() = default;
    virtual bool shouldContinue() = 0;
};

// Copies in blocks of 4 MB, reporting after each. A short write or a cancel removes the
// destination. Both objects may be null.
bool copyFile(const std::string& source, const std::string& destination, ICopyProgress* progress,
              ICopyCancel* cancel);

}  // namespace Core
