#include "framework/state/CPropertyManager.h"

#include <zlib.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "framework/state/ByteOrder.h"

namespace Ondra {

namespace {
constexpr uint32_t kMaxPlainSize = 16u << 20;
}

CPropertyManager::CPropertyManager() { setTag("ppCh"); }

CPropertyManager::~CPropertyManager() {
    for (ParameterProperty* p : owned) delete p;
}

void CPropertyManager::setTag(const char* text) {
    std::memset(tag, 0, sizeof tag);
    if (text) std::memcpy(tag, text, strnlen(text, sizeof tag));
}

ParameterProperty* CPropertyManager::addParameter(const ParameterRecord& record) {
    if (ParameterProperty* existing = findByKey(record.key)) return existing;
    auto* parameter = new ParameterProperty(record);
    parameter->setAutomationIndex(record.automatable ? static_cast<int32_t>(automatable.size()) : -1);
    parameters.push_back(parameter);
    if (record.automatable) automatable.push_back(parameter);
    owned.push_back(parameter);
    return parameter;
}

ParameterProperty* CPropertyManager::getParameter(int index) const {
    return index >= 0 && index < getCount() ? parameters[static_cast<size_t>(index)] : nullptr;
}

ParameterProperty* CPropertyManager::getParameterById(int id) const {
    for (ParameterProperty* p : parameters)
        if (p->getId() == id) return p;
    return nullptr;
}

ParameterProperty* CPropertyManager::getAutomatable(int index) const {
    return index >= 0 && index < getAutomatableCount() ? automatable[static_cast<size_t>(index)] : nullptr;
}

ParameterProperty* CPropertyManager::findByKey(const char* key) const {
    if (!key) return nullptr;
    for (ParameterProperty* p : parameters)
        if (std::strcmp(p->getKey(), key) == 0) return p;
    return nullptr;
}

void CPropertyManager::beginBatch() {
    for (ParameterProperty* p : parameters) p->setNotifyEnabled(false);
}

void CPropertyManager::endBatch() {
    for (ParameterProperty* p : parameters) {
        p->setNotifyEnabled(true);
        p->notify();
    }
}

int CPropertyManager::serialize(void** out) {
    if (out) *out = nullptr;
    const uint32_t count = static_cast<uint32_t>(parameters.size());
    const uint32_t plainSize = count * kRecordSize;
    std::vector<uint8_t> records(plainSize, 0);
    for (uint32_t i = 0; i < count; ++i) {
        uint8_t* r = &records[i * kRecordSize];
        ParameterProperty* p = parameters[i];
        std::memcpy(r, p->getKey(), strnlen(p->getKey(), kKeySize - 1));
        putLEFloat(r + 52, p->getValue());
        putLEFloat(r + 56, p->getMinimum());
        putLEFloat(r + 60, p->getMaximum());
    }

    serialized.assign(kHeaderSize + plainSize + 12, 0);
    std::memcpy(serialized.data(), tag, sizeof tag);
    putLE32(&serialized[20], kHeaderSize);
    putLE32(&serialized[24], kVersion);
    putLE32(&serialized[36], plainSize);
    putLE32(&serialized[40], kRecordSize);
    putLE32(&serialized[44], count);
    uLongf stored = plainSize;
    if (compress) {
        stored = plainSize + 12;
        if (compress2(&serialized[kHeaderSize], &stored, records.data(), plainSize, 9) != Z_OK) return 0;
    } else if (plainSize > 0) {
        std::memcpy(&serialized[kHeaderSize], records.data(), plainSize);
    }
    putLE32(&serialized[28], compress ? 1 : 0);
    putLE32(&serialized[32], static_cast<uint32_t>(stored));
    serialized.resize(kHeaderSize + stored);
    if (out) *out = serialized.data();
    return static_cast<int>(serialized.size());
}

namespace {
std::string renumbered(const char* key, int instance) {
    std::string text(key);
    while (!text.empty() && text.back() >= '0' && text.back() <= '9') text.pop_back();
    return text + std::to_string(instance);
}
}  // namespace

void CPropertyManager::load(const void* data, int size, int instance) {
    const auto* bytes = static_cast<const uint8_t*>(data);
    if (!bytes || size < kHeaderSize) return;
    size_t at = 0;
    const size_t last = static_cast<size_t>(size) - kHeaderSize;
    while (at <= last && std::memcmp(bytes + at, tag, sizeof tag) != 0) ++at;
    if (at > last) return;
    const uint8_t* header = bytes + at;
    const int32_t version = getLE32s(header + 24);
    const int32_t compressed = getLE32s(header + 28);
    const uint32_t storedSize = getLE32(header + 32);
    const uint32_t plainSize = getLE32(header + 36);
    const int32_t recordSize = getLE32s(header + 40);
    const int32_t count = getLE32s(header + 44);
    if (plainSize > kMaxPlainSize || recordSize < 56 || count < 0) return;
    const size_t available = static_cast<size_t>(size) - at - kHeaderSize;
    const size_t storedBytes = std::min<size_t>(storedSize, available);

    std::vector<uint8_t> records(plainSize + 12, 0);
    uLongf got = 0;
    if (compressed) {
        got = plainSize + 12;
        if (uncompress(records.data(), &got, header + kHeaderSize, storedBytes) != Z_OK) return;
    } else {
        got = std::min<size_t>(storedBytes, records.size());
        std::memcpy(records.data(), header + kHeaderSize, got);
    }
    if (checkVersion && (version < minVersion || version > maxVersion)) return;
    if (static_cast<uint64_t>(got) + static_cast<uint64_t>(recordSize) * static_cast<uint64_t>(count) !=
        2ull * plainSize)
        return;
    // The sum alone lets a short body pass with a count too large for it.
    if (got != plainSize) return;

    for (int32_t i = 0; i < count; ++i) {
        const uint8_t* r = records.data() + static_cast<size_t>(i) * static_cast<size_t>(recordSize);
        char key[kKeySize + 1] = {0};
        std::memcpy(key, r, kKeySize);
        const float value = getLEFloat(r + 52);
        ParameterProperty* p = instance >= 0 ? findByKey(renumbered(key, instance).c_str()) : findByKey(key);
        if (p) p->setValue(value);
    }
}

}  // namespace Ondra
