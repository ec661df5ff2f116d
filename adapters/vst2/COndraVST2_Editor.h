#pragma once
#include "adapters/vst2/sdk/AEffEditor.h"

namespace Vinta {
class CVintariaEditor;
}

// The effect's editor behind the VST 2 editor opcodes. The host's idle calls drive its window;
// the editor is the effect's, not this wrapper's.
class COndraVST2_Editor : public Vst2::AEffEditor {
public:
    explicit COndraVST2_Editor(Vinta::CVintariaEditor* editor);
    ~COndraVST2_Editor() override;
    COndraVST2_Editor(const COndraVST2_Editor&) = delete;
    COndraVST2_Editor& operator=(const COndraVST2_Editor&) = delete;

    bool getRect(Vst2::ERect** rect) override;
    bool open(void* parent) override;
    void close() override;
    bool isOpen() override { return parentWindow != nullptr; }
    void idle() override;
    bool onKeyDown(Vst2::VstKeyCode& key) override;
    bool onKeyUp(Vst2::VstKeyCode& key) override;
    bool onWheel(float distance) override;

private:
    Vinta::CVintariaEditor* editor;
    void* parentWindow = nullptr;
    Vst2::ERect rect{};
};
