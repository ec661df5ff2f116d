#pragma once
#include <cstddef>

// Memory images compiled into this library (archives of presets, bitmaps and fonts), found by
// name. Each image registers itself while the library loads.
namespace Core {

struct ModuleResource {
    const char* name;
    const unsigned char* data;
    size_t size;
};

// Keeps the pointers: name and data must live as long as the library. Always returns true, so a
// registration can initialise a static.
bool addModuleResource(const char* name, const unsigned char* data, size_t size);
// Null for a name no image has.
const ModuleResource* findModuleResource(const char* name);

}  // namespace Core
