// The VST 2 door: the library's VSTPluginMain with this host's audioMaster, the editor opcodes,
// and effEditIdle as the host's share of the event loop.
#include <dlfcn.h>

#include <cstring>

#include "adapters/vst2/sdk/AEffect.h"
#include "adapters/vst2/sdk/ERect.h"
#include "adapters/vst2/sdk/EffectOpcodes.h"
#include "adapters/vst2/sdk/HostOpcodes.h"
#include "tools/editor-host/EditorDoor.h"

namespace EditorHost {

using namespace Vst2;

namespace {

class Vst2Door;
// The plug-in calls the host before its AEffect exists: that one call finds the door here.
thread_local Vst2Door* loading = nullptr;

class Vst2Door final : public EditorDoor {
public:
    ~Vst2Door() override {
        closeEditor();
        if (effect) effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0f);
        if (module) dlclose(module);
    }

    bool load(const std::string& path) override {
        module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!module) return fail(dlerror());
        auto entry = reinterpret_cast<AEffect* (*)(audioMasterCallback)>(dlsym(module, "VSTPluginMain"));
        if (!entry) return fail("no VSTPluginMain");
        loading = this;
        effect = entry(&Vst2Door::audioMaster);
        loading = nullptr;
        if (!effect) return fail("VSTPluginMain gave no effect");
        effect->user = this;
        dispatch(effOpen);
        dispatch(effSetSampleRate, 0, 0, nullptr, 44100.0f);
        dispatch(effSetBlockSize, 0, 512);
        dispatch(effMainsChanged, 0, 1);
        if (!(effect->flags & effFlagsHasEditor)) return fail("no editor flag");
        return true;
    }

    bool getEditorSize(int& width, int& height) override {
        ERect* rect = nullptr;
        if (!dispatch(effEditGetRect, 0, 0, &rect) || !rect) return false;
        width = rect->right - rect->left;
        height = rect->bottom - rect->top;
        return true;
    }

    bool openEditor(unsigned long parent) override {
        ERect* rect = nullptr;
        dispatch(effEditGetRect, 0, 0, &rect);  // hosts ask for the size first
        open = dispatch(effEditOpen, 0, 0, reinterpret_cast<void*>(parent)) != 0;
        return open || fail("effEditOpen failed");
    }

    void closeEditor() override {
        if (open) dispatch(effEditClose);
        open = false;
    }

    void idle() override {
        if (open) dispatch(effEditIdle);
    }

    int findParameter(const std::string& name) override {
        for (VstInt32 index = 0; index < effect->numParams; ++index) {
            char text[256] = {};
            dispatch(effGetParamName, index, 0, text);
            if (name == text) return index;
        }
        return -1;
    }

    void setParameter(int parameter, double normalized) override {
        effect->setParameter(effect, parameter, static_cast<float>(normalized));
    }

    double getParameter(int parameter) override { return effect->getParameter(effect, parameter); }

    // Steinberg's wheel message ("stCA", "Whee") and the key opcodes.
    int sendWheel(float distance) override {
        return dispatch(effVendorSpecific, 0x73744341, 0x57686565, nullptr, distance) ? 1 : 0;
    }
    int sendKey(int virtualKey, bool down) override {
        return dispatch(down ? effEditKeyDown : effEditKeyUp, 0, virtualKey) ? 1 : 0;
    }

private:
    static VstIntPtr audioMaster(AEffect* from, VstInt32 opcode, VstInt32 index, VstIntPtr value, void*, float opt) {
        Vst2Door* door = from && from->user ? static_cast<Vst2Door*>(from->user) : loading;
        switch (opcode) {
            case audioMasterVersion:
                return 2400;
            case audioMasterBeginEdit:
                if (door) door->recordEdit(EditKind::Begin, index, 0.0);
                return 1;
            case audioMasterAutomate:
                if (door) door->recordEdit(EditKind::Perform, index, opt);
                return 1;
            case audioMasterEndEdit:
                if (door) door->recordEdit(EditKind::End, index, 0.0);
                return 1;
            case audioMasterSizeWindow:
                if (door) door->recordResize(index, static_cast<int>(value));
                return 1;
            default:
                return 0;
        }
    }

    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr, float opt = 0) {
        return effect ? effect->dispatcher(effect, opcode, index, value, ptr, opt) : 0;
    }

    bool fail(const char* why) {
        lastError = why ? why : "failed";
        return false;
    }

    void* module = nullptr;
    AEffect* effect = nullptr;
    bool open = false;
};

}  // namespace

std::unique_ptr<EditorDoor> makeVst2Door() { return std::make_unique<Vst2Door>(); }

}  // namespace EditorHost
