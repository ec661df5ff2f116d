// The embedding door: the library's own exports, a callback of this program's that records edits,
// and ISamplerEffect to place the editor. The editor's frame runs its own thread here.
#include <dlfcn.h>

#include "effect/ISamplerEffect.h"
#include "framework/plugin/OndraCallback.h"
#include "framework/plugin/OndraOS.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "tools/editor-host/EditorDoor.h"

namespace EditorHost {

namespace {

class EmbedDoor final : public EditorDoor, public Ondra::OndraCallback {
public:
    ~EmbedDoor() override {
        closeEditor();
        delete plugin;
        if (module) dlclose(module);
    }

    bool load(const std::string& path) override {
        module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!module) return fail(dlerror());
        auto list = reinterpret_cast<Ondra::OndraPluginList* (*)()>(dlsym(module, "getOndraPluginListPTR"));
        auto create = reinterpret_cast<Ondra::OndraOS* (*)(Ondra::OndraCallback*, int)>(
            dlsym(module, "createOndraInstance"));
        auto sampler = reinterpret_cast<ISamplerEffect* (*)(Ondra::OndraOS*)>(dlsym(module, "getSamplerInterface"));
        if (!list || !create || !sampler) return fail("embedding exports missing");
        const Ondra::OndraPluginInfo* record = list() ? list()->get(0) : nullptr;
        if (!record) return fail("empty plug-in list");
        plugin = create(this, record->uniqueId);
        if (!plugin) return fail("createOndraInstance gave nothing");
        plugin->setSampleRate(44100.0f);
        plugin->setBlockSize(512);
        placement = sampler(plugin);
        return placement || fail("no ISamplerEffect");
    }

    bool getEditorSize(int& width, int& height) override {
        EditorRect rect{0, 0, 0, 0};
        placement->getEditorRect(rect);
        width = static_cast<int>(rect.right - rect.left);
        height = static_cast<int>(rect.bottom - rect.top);
        return width > 0 && height > 0;
    }

    bool openEditor(unsigned long parent) override {
        placement->openEditor(reinterpret_cast<void*>(parent));
        return true;
    }

    void closeEditor() override {
        if (placement) placement->closeEditor();
    }

    void idle() override {}

    int findParameter(const std::string& name) override {
        for (int index = 0; index < plugin->getAutomatableCount(); ++index) {
            Ondra::IPluginParameter* parameter = plugin->getAutomatableParameter(index);
            if (parameter && (name == parameter->getKey() || name == parameter->getName() ||
                              name == parameter->getAutomationName()))
                return index;
        }
        return -1;
    }

    void setParameter(int parameter, double normalized) override {
        if (Ondra::IPluginParameter* p = plugin->getAutomatableParameter(parameter))
            p->setNormalized(static_cast<float>(normalized));
    }

    double getParameter(int parameter) override {
        Ondra::IPluginParameter* p = plugin->getAutomatableParameter(parameter);
        return p ? p->getNormalized() : 0.0;
    }

    // OndraCallback
    void beginEdit(int index) override { recordEdit(EditKind::Begin, index, 0.0); }
    void endEdit(int index) override { recordEdit(EditKind::End, index, 0.0); }
    void automate(int index, float value) override { recordEdit(EditKind::Perform, index, value); }
    bool sizeWindow(int width, int height) override {
        recordResize(width, height);
        return true;
    }
    int getPluginType() override { return 6; }

private:
    bool fail(const char* why) {
        lastError = why ? why : "failed";
        return false;
    }

    void* module = nullptr;
    Ondra::OndraOS* plugin = nullptr;
    ISamplerEffect* placement = nullptr;
};

}  // namespace

std::unique_ptr<EditorDoor> makeEmbedDoor() { return std::make_unique<EmbedDoor>(); }

}  // namespace EditorHost
