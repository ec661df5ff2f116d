#include "framework/resources/CLegacyResourceArchive.h"

#include <zlib.h>

#include <cstring>

#include "framework/resources/ResourceScrambling.h"
#include "framework/state/ByteOrder.h"
#include "framework/state/PayloadShuffle.h"

namespace Ondra {

namespace {
constexpr size_t kImageHeader = 32;
constexpr size_t kRecordHeader = 280;
constexpr int32_t kMaxVersion = 0x1000;
constexpr size_t kNameRoom = 255;
}  // namespace

bool CLegacyResourceArchive::open(const void* image, size_t size) {
    close();
    const auto* bytes = static_cast<const uint8_t*>(image);
    if (!bytes || size < kImageHeader || std::memcmp(bytes, "resource\0\0", 10) != 0) return false;
    const int32_t headerSize = getLE32s(bytes + 12);
    const int32_t version = getLE32s(bytes + 16);
    const bool compressed = getLE32s(bytes + 20) != 0;
    const int32_t storedSize = getLE32s(bytes + 24);
    const int32_t plainSize = getLE32s(bytes + 28);
    if (headerSize < 0 || storedSize < 0 || plainSize < 0 || version > kMaxVersion ||
        static_cast<size_t>(headerSize) + static_cast<size_t>(storedSize) > size)
        return false;

    std::vector<uint8_t> payload(bytes + headerSize, bytes + headerSize + storedSize);
    scrambleResource(payload.data(), payload.size());
    unshufflePayload(payload.data(), payload.size());
    plain.assign(static_cast<size_t>(plainSize), 0);
    if (compressed) {
        uLongf length = plain.size();
        if (uncompress(plain.data(), &length, payload.data(), payload.size()) != Z_OK) {
            plain.clear();
            return false;
        }
        plain.resize(length);
    } else {
        plain.assign(payload.begin(), payload.begin() + std::min(payload.size(), plain.size()));
    }

    for (size_t at = 0; plain.size() - at >= kRecordHeader;) {
        const uint8_t* record = plain.data() + at;
        if (std::memcmp(record, "Rcnk\0", 5) != 0) break;
        const int32_t recordHeader = getLE32s(record + 264);
        const int32_t recordVersion = getLE32s(record + 268);
        const int32_t dataSize = getLE32s(record + 272);
        if (recordVersion > kMaxVersion || recordHeader < static_cast<int32_t>(kRecordHeader) || dataSize < 0 ||
            static_cast<size_t>(recordHeader) + static_cast<size_t>(dataSize) > plain.size() - at)
            break;
        // The name field is 255 bytes; one without a closing zero is cut there.
        plain[at + 5 + kNameRoom - 1] = 0;
        records.push_back({reinterpret_cast<const char*>(record + 5), record + recordHeader, dataSize});
        at += static_cast<size_t>(recordHeader) + static_cast<size_t>(dataSize);
    }
    return true;
}

void CLegacyResourceArchive::close() {
    records.clear();
    plain.clear();
}

const char* CLegacyResourceArchive::getName(int index) const {
    return index >= 0 && index < getCount() ? records[static_cast<size_t>(index)].name : nullptr;
}

const void* CLegacyResourceArchive::getResource(const char* name, int* size) const {
    if (size) *size = 0;
    if (!name) return nullptr;
    for (const Record& record : records)
        if (std::strncmp(record.name, name, kNameRoom) == 0) {
            if (size) *size = record.size;
            return record.data;
        }
    return nullptr;
}

}  // namespace Ondra
