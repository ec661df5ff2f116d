#include "framework/state/COndraChunk.h"

#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "framework/state/ByteOrder.h"
#include "framework/state/PayloadShuffle.h"

namespace Ondra {

namespace {
constexpr const char kMagic[5] = {'O', 'C', 'n', 'k', 0};
// Refuses absurd sizes from corrupt headers instead of trying to allocate them.
constexpr uint32_t kMaxPlainSize = 64u << 20;

void copyBounded(char* to, size_t capacity, const char* from) {
    std::snprintf(to, capacity, "%s", from ? from : "");
}
}  // namespace

COndraChunk::COndraChunk() {
    copyBounded(tag, sizeof tag, "ppst");
    presetName[0] = 0;
}

void COndraChunk::setTag(const char* text) { copyBounded(tag, sizeof tag, text); }

void COndraChunk::setPresetName(const char* text) {
    copyBounded(presetName, sizeof presetName, text && *text ? text : "NoName");
}

void COndraChunk::clear() {
    index.clear();
    payload.clear();
    output.clear();
    recordsRead = 0;
}

void COndraChunk::addChunk(const char* name, const void* data, int size) {
    if (!data || size < 0) return;
    uint8_t header[kRecordHeaderSize] = {0};
    std::memcpy(header, kMagic, 5);
    char recordName[20] = {0};
    copyBounded(recordName, sizeof recordName, name);
    std::memcpy(header + 5, recordName, 20);
    putLE32(header + 28, kRecordHeaderSize);
    putLE32(header + 32, kVersion);
    putLE32(header + 36, static_cast<uint32_t>(size));
    payload.insert(payload.end(), header, header + kRecordHeaderSize);
    const auto* bytes = static_cast<const uint8_t*>(data);
    payload.insert(payload.end(), bytes, bytes + size);
}

void COndraChunk::addChunk(const char* name, const char* text) {
    if (text) addChunk(name, text, static_cast<int>(std::strlen(text) + 1));
}

int COndraChunk::finish(void** out) {
    if (out) *out = nullptr;
    if (payload.empty()) return 0;
    if (presetName[0]) addChunk("PresetName", presetName);

    const uLong plainSize = payload.size();
    output.assign(plainSize + kHeaderSize + 12, 0);
    std::memcpy(output.data(), tag, std::min<size_t>(std::strlen(tag), 20));
    putLE32(&output[24], kHeaderSize);
    putLE32(&output[28], kVersion);
    putLE32(&output[40], static_cast<uint32_t>(plainSize));

    uLongf stored = plainSize + 12;
    bool compressed = false;
    if (compress)
        compressed = compress2(&output[kHeaderSize], &stored, payload.data(), plainSize, 9) == Z_OK;
    if (!compressed) {
        std::memcpy(&output[kHeaderSize], payload.data(), plainSize);
        stored = plainSize;
    }
    putLE32(&output[32], compressed ? 1 : 0);
    putLE32(&output[36], static_cast<uint32_t>(stored));
    if (compress) shufflePayload(&output[kHeaderSize], stored);
    output.resize(kHeaderSize + stored);
    if (out) *out = output.data();
    return static_cast<int>(output.size());
}

int COndraChunk::read(void* data, int size) {
    clear();
    presetName[0] = 0;
    auto* bytes = static_cast<uint8_t*>(data);
    if (!bytes || size < kHeaderSize) return 2;
    char expected[20] = {0};
    std::memcpy(expected, tag, std::min<size_t>(std::strlen(tag), 20));
    if (std::memcmp(bytes, expected, 20) != 0) return 2;
    const int32_t headerSize = getLE32s(bytes + 24);
    const int32_t version = getLE32s(bytes + 28);
    const int32_t compressed = getLE32s(bytes + 32);
    const uint32_t storedSize = getLE32(bytes + 36);
    const uint32_t plainSize = getLE32(bytes + 40);
    if (headerSize < kHeaderSize || headerSize > size) return 2;
    if (static_cast<uint64_t>(size) < static_cast<uint64_t>(storedSize) + static_cast<uint64_t>(headerSize)) return 2;
    if (version > kVersion) return 2;

    uint8_t* stored = bytes + headerSize;
    unshufflePayload(stored, storedSize);
    // A body that does not unpack to exactly its stated size is damaged: refused whole, so that
    // nothing the caller holds is replaced by defaults.
    if (plainSize > kMaxPlainSize) return 2;
    payload.assign(plainSize, 0);
    if (compressed != 0) {
        uLongf unpacked = plainSize;
        if (uncompress(payload.data(), &unpacked, stored, storedSize) != Z_OK || unpacked != plainSize) {
            payload.clear();
            return 2;
        }
    } else {
        if (storedSize < plainSize) {
            payload.clear();
            return 2;
        }
        payload.assign(stored, stored + std::min(storedSize, plainSize));
    }

    size_t at = 0;
    while (payload.size() - at >= static_cast<size_t>(kRecordHeaderSize)) {
        uint8_t* record = payload.data() + at;
        if (std::memcmp(record, kMagic, 5) != 0) break;
        const int32_t recordHeader = getLE32s(record + 28);
        const int32_t recordVersion = getLE32s(record + 32);
        const int32_t dataSize = getLE32s(record + 36);
        if (recordHeader < kRecordHeaderSize || dataSize < 0 || recordVersion > kVersion) break;
        const uint64_t total = static_cast<uint64_t>(recordHeader) + static_cast<uint64_t>(dataSize);
        if (total > payload.size() - at) break;
        IndexEntry entry{};
        std::memcpy(entry.name, record + 5, 20);
        entry.name[20] = 0;
        entry.data = record + recordHeader;
        entry.size = dataSize;
        index.push_back(entry);
        at += total;
    }
    recordsRead = static_cast<int32_t>(index.size());

    void* name = nullptr;
    const int nameSize = find("PresetName", &name);
    if (nameSize > 0) {
        const char* text = static_cast<const char*>(name);
        const size_t length = strnlen(text, static_cast<size_t>(nameSize));
        if (length <= kMaxPresetName) {
            std::memcpy(presetName, text, length);
            presetName[length] = 0;
        }
    }
    return 0;
}

int COndraChunk::find(const char* name, void** data) const {
    if (data) *data = nullptr;
    if (!name) return 0;
    for (const auto& e : index) {
        if (std::strncmp(e.name, name, 20) == 0) {
            if (data) *data = e.data;
            return e.size;
        }
    }
    return 0;
}

}  // namespace Ondra
