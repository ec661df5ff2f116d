#pragma once
// A reference to a toolkit object for a callback that may run later or never: the object stays
// alive until the last copy of the callback goes, whether it ran or was dropped.
#include <memory>

namespace Vinta {

template <typename Object>
std::shared_ptr<Object> keepAlive(Object* object) {
    if (!object) return nullptr;
    object->remember();
    return std::shared_ptr<Object>(object, [](Object* held) { held->forget(); });
}

}  // namespace Vinta
