#include "editor/EditorBitmaps.h"

#include <mutex>

#include "lib/drawing/CBitmap.h"

namespace ZonfraEditor {

namespace {

std::mutex lock;
int users = 0;
Vinta::CBitmap* bitmaps[kBitmapCount] = {};

}  // namespace

void SharedBitmaps::acquire() {
    std::lock_guard<std::mutex> guard(lock);
    if (users++ > 0) return;
    for (int i = 0; i < kBitmapCount; ++i) bitmaps[i] = new Vinta::CBitmap(kBitmapNames[i], false);
}

void SharedBitmaps::release() {
    std::lock_guard<std::mutex> guard(lock);
    if (users == 0 || --users > 0) return;
    for (Vinta::CBitmap*& bitmap : bitmaps) {
        bitmap->forget();
        bitmap = nullptr;
    }
}

int SharedBitmaps::useCount() {
    std::lock_guard<std::mutex> guard(lock);
    return users;
}

Vinta::CBitmap* SharedBitmaps::get(BitmapId id) { return id >= 0 && id < kBitmapCount ? bitmaps[id] : nullptr; }

}  // namespace ZonfraEditor
