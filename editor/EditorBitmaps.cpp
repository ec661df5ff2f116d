#include "editor/EditorBitmaps.h"

#include <mutex>
#include <string>

#include "lib/drawing/CBitmap.h"

namespace ZonfraEditor {

namespace {

std::mutex lock;
int users = 0;
Vinta::CBitmap* bitmaps[2][kBitmapCount] = {};

Vinta::CBitmap* loadSharp(const char* name) {
    std::string sharp = name;
    sharp.insert(sharp.size() - 4, "@2x");
    auto* bitmap = new Vinta::CBitmap(sharp.c_str(), false);
    if (!bitmap->isValid()) {
        bitmap->forget();
        return nullptr;
    }
    bitmap->setDensity(2.0);
    return bitmap;
}

}  // namespace

void SharedBitmaps::acquire() {
    std::lock_guard<std::mutex> guard(lock);
    if (users++ > 0) return;
    for (int i = 0; i < kBitmapCount; ++i) {
        bitmaps[0][i] = new Vinta::CBitmap(kBitmapNames[i], false);
        bitmaps[1][i] = loadSharp(kBitmapNames[i]);
    }
}

void SharedBitmaps::release() {
    std::lock_guard<std::mutex> guard(lock);
    if (users == 0 || --users > 0) return;
    for (auto& set : bitmaps)
        for (Vinta::CBitmap*& bitmap : set) {
            if (bitmap) bitmap->forget();
            bitmap = nullptr;
        }
}

int SharedBitmaps::useCount() {
    std::lock_guard<std::mutex> guard(lock);
    return users;
}

Vinta::CBitmap* SharedBitmaps::get(BitmapId id, bool sharp) {
    if (id < 0 || id >= kBitmapCount) return nullptr;
    Vinta::CBitmap* chosen = bitmaps[sharp ? 1 : 0][id];
    return chosen && chosen->isValid() ? chosen : bitmaps[0][id];
}

}  // namespace ZonfraEditor
