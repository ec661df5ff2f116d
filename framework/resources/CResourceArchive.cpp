#include "framework/resources/CResourceArchive.h"

#include <zlib.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "CORE/files/FileNames.h"
#include "framework/resources/ResourceScrambling.h"
#include "framework/state/ByteOrder.h"

namespace Ondra {

namespace {
constexpr char kTag[12] = "RESOURCE2";
constexpr size_t kTableBlockHeader = 20;
// Larger tables are no archive of ours; the bound keeps a damaged count from asking for gigabytes.
constexpr int32_t kMaxEntries = 100000;
}  // namespace

CResourceArchive::~CResourceArchive() { close(); }

bool CResourceArchive::open(const void* imageData, size_t size) {
    close();
    const auto* bytes = static_cast<const uint8_t*>(imageData);
    if (!bytes || size < kHeaderSize || std::memcmp(bytes, kTag, 9) != 0) return false;
    image = bytes;
    imageSize = size;

    const int32_t headerSize = getLE32s(bytes + 12);
    if (headerSize < kHeaderSize || static_cast<size_t>(headerSize) + kTableBlockHeader > size) return true;
    const uint8_t* table = bytes + headerSize;
    const int32_t blockSize = getLE32s(table + 4);
    const int32_t plainTableSize = getLE32s(table + 8);
    const int32_t packedTableSize = getLE32s(table + 12);
    const int32_t count = getLE32s(table + 16);
    const size_t available = size - static_cast<size_t>(headerSize);
    if (count <= 0 || count > kMaxEntries || plainTableSize != count * kEntrySize || packedTableSize <= 0 ||
        blockSize < static_cast<int32_t>(kTableBlockHeader) || static_cast<size_t>(blockSize) > available ||
        static_cast<size_t>(packedTableSize) > available - kTableBlockHeader)
        return true;

    std::vector<uint8_t> plain(static_cast<size_t>(plainTableSize) + 100);
    uLongf plainLength = plain.size();
    if (uncompress(plain.data(), &plainLength, table + kTableBlockHeader, static_cast<uLong>(packedTableSize)) != Z_OK ||
        plainLength < static_cast<uLongf>(plainTableSize))
        return true;

    entries.resize(static_cast<size_t>(count));
    for (int32_t i = 0; i < count; ++i) {
        const uint8_t* at = plain.data() + static_cast<size_t>(i) * kEntrySize;
        Entry& entry = entries[static_cast<size_t>(i)];
        std::memcpy(entry.name, at, sizeof entry.name);
        entry.name[sizeof entry.name - 1] = 0;
        entry.plainSize = getLE32s(at + 256);
        entry.storedSize = getLE32s(at + 260);
        entry.offset = getLE32s(at + 264);
    }
    dataArea = table + blockSize;
    dataAreaSize = available - static_cast<size_t>(blockSize);
    return true;
}

void CResourceArchive::close() {
    for (void* block : liveBlocks) std::free(block);
    liveBlocks.clear();
    entries.clear();
    dataArea = nullptr;
    dataAreaSize = 0;
    image = nullptr;
    imageSize = 0;
}

const char* CResourceArchive::getName(int index) const {
    return index >= 0 && index < getCount() ? entries[static_cast<size_t>(index)].name : nullptr;
}

void* CResourceArchive::getResource(const char* name, int* size) {
    if (size) *size = 0;
    if (!name) return nullptr;
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return std::strcmp(e.name, name) == 0; });
    if (found == entries.end()) return nullptr;
    const Entry& entry = *found;
    const size_t stored = static_cast<size_t>(entry.storedSize > 0 ? entry.storedSize : entry.plainSize);
    if (entry.plainSize < 0 || entry.offset < 0 || static_cast<size_t>(entry.offset) > dataAreaSize ||
        stored > dataAreaSize - static_cast<size_t>(entry.offset))
        return nullptr;

    auto* block = static_cast<uint8_t*>(std::malloc(static_cast<size_t>(entry.plainSize) + 20));
    if (!block) return nullptr;
    const uint8_t* source = dataArea + entry.offset;
    if (entry.storedSize > 0) {
        uLongf length = static_cast<uLongf>(entry.plainSize) + 20;
        if (uncompress(block, &length, source, static_cast<uLong>(entry.storedSize)) != Z_OK) {
            std::free(block);
            return nullptr;
        }
    } else {
        std::memcpy(block, source, static_cast<size_t>(entry.plainSize));
        scrambleResource(block, static_cast<size_t>(entry.plainSize));
    }
    liveBlocks.push_back(block);
    if (size) *size = entry.plainSize;
    return block;
}

void CResourceArchive::freeResource(void* block) {
    const auto found = std::find(liveBlocks.begin(), liveBlocks.end(), block);
    if (found == liveBlocks.end()) return;
    std::free(block);
    liveBlocks.erase(found);
}

bool CResourceArchive::add(const std::string& path, const char* name) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::vector<uint8_t> plain((std::istreambuf_iterator<char>(in)), {});

    Entry entry{};
    std::strncpy(entry.name, name ? name : Core::fileName(path.c_str()), sizeof entry.name - 1);
    entry.plainSize = static_cast<int32_t>(plain.size());

    std::vector<uint8_t> packed(plain.size() + 200);
    uLongf packedLength = packed.size();
    if (compress2(packed.data(), &packedLength, plain.data(), plain.size(), 9) == Z_OK && packedLength < plain.size()) {
        packed.resize(packedLength);
        entry.storedSize = static_cast<int32_t>(packedLength);
        buffers.push_back(std::move(packed));
    } else {
        entry.storedSize = -1;
        scrambleResource(plain.data(), plain.size());
        buffers.push_back(std::move(plain));
    }
    entries.push_back(entry);
    return true;
}

void CResourceArchive::emit(FILE* file, const void* bytes, size_t count, bool asText) {
    if (!asText) {
        std::fwrite(bytes, 1, count, file);
        return;
    }
    if (textTotal == 0 && count > 0) std::fputs("unsigned char kResource[] = {\n", file);
    const auto* b = static_cast<const uint8_t*>(bytes);
    for (size_t i = 0; i < count; ++i) {
        std::fprintf(file, "%#0x,", b[i]);
        if (++textLine == 15) {
            std::fputc('\n', file);
            textLine = 0;
        }
        ++textTotal;
    }
}

bool CResourceArchive::save(const std::string& path, bool asText) {
    textTotal = 0;
    textLine = 0;
    FILE* file = std::fopen(path.c_str(), asText ? "w" : "wb");
    if (!file) return false;

    uint8_t header[kHeaderSize] = {};
    std::memcpy(header, kTag, sizeof kTag);
    putLE32(header + 12, kHeaderSize);
    putLE32(header + 16, kVersion);
    emit(file, header, sizeof header, asText);

    const int32_t count = static_cast<int32_t>(entries.size());
    const int32_t plainTableSize = count * kEntrySize;
    std::vector<uint8_t> table(static_cast<size_t>(plainTableSize));
    int32_t offset = 0;
    for (int32_t i = 0; i < count; ++i) {
        Entry& entry = entries[static_cast<size_t>(i)];
        entry.offset = offset;
        uint8_t* at = table.data() + static_cast<size_t>(i) * kEntrySize;
        std::memcpy(at, entry.name, sizeof entry.name);
        putLE32(at + 256, static_cast<uint32_t>(entry.plainSize));
        putLE32(at + 260, static_cast<uint32_t>(entry.storedSize));
        putLE32(at + 264, static_cast<uint32_t>(offset));
        offset += entry.storedSize > 0 ? entry.storedSize : entry.plainSize;
    }

    int32_t packedTableSize = -1;
    std::vector<uint8_t> packed(table.size() + 32);
    uLongf packedLength = packed.size();
    if (compress2(packed.data(), &packedLength, table.data(), table.size(), 9) == Z_OK) {
        packed.resize(packedLength);
        table.swap(packed);
        packedTableSize = static_cast<int32_t>(packedLength);
    }
    uint8_t tableHeader[kTableBlockHeader] = {};
    putLE32(tableHeader + 4, static_cast<uint32_t>(table.size() + kTableBlockHeader));
    putLE32(tableHeader + 8, static_cast<uint32_t>(plainTableSize));
    putLE32(tableHeader + 12, static_cast<uint32_t>(packedTableSize));
    putLE32(tableHeader + 16, static_cast<uint32_t>(count));
    emit(file, tableHeader, sizeof tableHeader, asText);
    emit(file, table.data(), table.size(), asText);
    for (const auto& buffer : buffers) emit(file, buffer.data(), buffer.size(), asText);

    if (asText) std::fprintf(file, "};\nunsigned int kResource_size = %i;\n", textTotal);
    const bool written = std::ferror(file) == 0;
    std::fclose(file);
    buffers.clear();
    entries.clear();
    return written;
}

}  // namespace Ondra
