#include "tools/editor-host/EditorDoor.h"

#include <utility>

namespace EditorHost {

std::unique_ptr<EditorDoor> makeVst3Door(bool lendRunLoop);
std::unique_ptr<EditorDoor> makeVst2Door();
std::unique_ptr<EditorDoor> makeEmbedDoor();

std::unique_ptr<EditorDoor> makeDoor(const std::string& kind) {
    if (kind == "vst3") return makeVst3Door(true);
    if (kind == "vst3-no-runloop") return makeVst3Door(false);
    if (kind == "vst2") return makeVst2Door();
    if (kind == "embed") return makeEmbedDoor();
    return nullptr;
}

std::vector<EditEvent> EditorDoor::takeEdits() {
    std::lock_guard<std::mutex> guard(lock);
    return std::exchange(edits, {});
}

std::vector<std::pair<int, int>> EditorDoor::takeResizeRequests() {
    std::lock_guard<std::mutex> guard(lock);
    return std::exchange(resizes, {});
}

void EditorDoor::recordEdit(EditKind kind, int parameter, double value) {
    std::lock_guard<std::mutex> guard(lock);
    edits.push_back({kind, parameter, value});
}

void EditorDoor::recordResize(int width, int height) {
    std::lock_guard<std::mutex> guard(lock);
    resizes.emplace_back(width, height);
}

}  // namespace EditorHost
