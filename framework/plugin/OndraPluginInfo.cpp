#include "framework/plugin/OndraPluginInfo.h"

#include <cstdlib>
#include <new>

namespace Ondra {

OndraPluginList& OndraPluginList::operator=(const OndraPluginList& other) {
    if (this == &other) return *this;
    clear();
    for (int i = 0; i < other.count; ++i) add(*other.entries[i]);
    return *this;
}

void OndraPluginList::add(const OndraPluginInfo& info) {
    if (count == capacity) {
        const int32_t grown = capacity + 5;
        auto** bigger = static_cast<OndraPluginInfo**>(std::realloc(entries, sizeof(OndraPluginInfo*) * grown));
        if (!bigger) return;
        entries = bigger;
        capacity = grown;
    }
    auto* copy = new (std::nothrow) OndraPluginInfo(info);
    if (copy) entries[count++] = copy;
}

void OndraPluginList::clear() {
    for (int i = 0; i < count; ++i) delete entries[i];
    std::free(entries);
    entries = nullptr;
    count = capacity = 0;
}

OndraPluginInfo* OndraPluginList::find(int32_t uniqueId) const {
    for (int i = 0; i < count; ++i)
        if (entries[i]->uniqueId == uniqueId) return entries[i];
    return get(0);
}

}  // namespace Ondra
