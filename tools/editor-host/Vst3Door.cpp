// The VST 3 door: the module's factory, one single-component effect, a component handler that
// records edits, and a plug frame that lends the view this host's run loop.
#include <dlfcn.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <vector>

#include "adapters/vst3/sdk/Vst3Controller.h"
#include "adapters/vst3/sdk/Vst3Processor.h"
#include "adapters/vst3/sdk/Vst3View.h"
#include "tools/editor-host/EditorDoor.h"

namespace EditorHost {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

// Host objects live as long as the door; their counts only keep the plug-in honest.
template <typename Interface>
class HostObject : public Interface {
public:
    tresult queryInterface(const TUID interfaceId, void** object) override {
        if (sameUid(interfaceId, FUnknown::iid) || sameUid(interfaceId, Interface::iid)) {
            *object = this;
            return kResultOk;
        }
        *object = nullptr;
        return kNoInterface;
    }
    uint32 addRef() override { return 2; }
    uint32 release() override { return 1; }
    virtual ~HostObject() = default;
};

std::string ascii(const char16_t* text) {
    std::string out;
    for (; text && *text; ++text) out += static_cast<char>(*text < 128 ? *text : '?');
    return out;
}

using Clock = std::chrono::steady_clock;

class Vst3Door;

class RunLoop : public HostObject<Linux::IRunLoop> {
public:
    tresult registerEventHandler(Linux::IEventHandler* handler, Linux::FileDescriptor fd) override {
        if (!handler) return kInvalidArgument;
        handler->addRef();
        handlers.push_back({handler, fd});
        return kResultOk;
    }
    tresult unregisterEventHandler(Linux::IEventHandler* handler) override {
        for (auto it = handlers.begin(); it != handlers.end(); ++it)
            if (it->handler == handler) {
                it->handler->release();
                handlers.erase(it);
                return kResultOk;
            }
        return kInvalidArgument;
    }
    tresult registerTimer(Linux::ITimerHandler* handler, Linux::TimerInterval milliseconds) override {
        if (!handler || milliseconds == 0) return kInvalidArgument;
        handler->addRef();
        timers.push_back({handler, std::chrono::milliseconds(milliseconds), Clock::now()});
        return kResultOk;
    }
    tresult unregisterTimer(Linux::ITimerHandler* handler) override {
        for (auto it = timers.begin(); it != timers.end(); ++it)
            if (it->handler == handler) {
                it->handler->release();
                timers.erase(it);
                return kResultOk;
            }
        return kInvalidArgument;
    }

    // One turn: readable descriptors first, then the timers that are due. A handler may
    // unregister itself (or others) while it runs, so each turn works on a copy.
    void turn() {
        std::vector<pollfd> watched;
        for (const Handler& h : handlers) watched.push_back({h.fd, POLLIN, 0});
        if (!watched.empty() && poll(watched.data(), watched.size(), 0) > 0)
            for (const pollfd& p : watched)
                if (p.revents & POLLIN)
                    for (const Handler& h : std::vector<Handler>(handlers))
                        if (h.fd == p.fd) h.handler->onFDIsSet(p.fd);
        const auto now = Clock::now();
        for (const Timer& t : std::vector<Timer>(timers)) {
            auto live =
                std::find_if(timers.begin(), timers.end(), [&](const Timer& x) { return x.handler == t.handler; });
            if (live == timers.end() || now < live->due) continue;
            live->due = now + live->interval;
            t.handler->onTimer();
        }
    }
    size_t registrations() const { return handlers.size() + timers.size(); }

private:
    struct Handler {
        Linux::IEventHandler* handler;
        int fd;
    };
    struct Timer {
        Linux::ITimerHandler* handler;
        std::chrono::milliseconds interval;
        Clock::time_point due;
    };
    std::vector<Handler> handlers;
    std::vector<Timer> timers;
};

class Vst3Door final : public EditorDoor {
public:
    // Without the run loop the host is one that has none to lend: the editor runs on its own.
    explicit Vst3Door(bool lendsRunLoop) : lendRunLoop(lendsRunLoop) {}
    ~Vst3Door() override { unload(); }

    bool load(const std::string& path) override {
        module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!module) return fail(dlerror());
        if (auto entry = reinterpret_cast<bool (*)(void*)>(dlsym(module, "ModuleEntry"))) entry(module);
        auto get = reinterpret_cast<IPluginFactory* (*)()>(dlsym(module, "GetPluginFactory"));
        factory = get ? get() : nullptr;
        if (!factory) return fail("no plug-in factory");
        PClassInfo info{};
        void* object = nullptr;
        if (factory->getClassInfo(0, &info) != kResultOk ||
            factory->createInstance(info.cid, IComponent::iid.bytes, &object) != kResultOk || !object)
            return fail("no component");
        component = static_cast<IComponent*>(object);
        processor = query<IAudioProcessor>(component);
        controller = query<IEditController>(component);
        if (!processor || !controller || component->initialize(nullptr) != kResultOk) return fail("no controller");
        controller->setComponentHandler(&handler);
        SpeakerArrangement stereo = SpeakerArr::kStereo;
        processor->setBusArrangements(&stereo, 1, &stereo, 1);
        ProcessSetup setup{kRealtime, kSample32, kBlock, 44100.0};
        processor->setupProcessing(setup);
        component->setActive(true);
        processor->setProcessing(true);
        return true;
    }

    bool getEditorSize(int& width, int& height) override {
        ViewRect size{};
        IPlugView* probe = view ? view : controller->createView("editor");
        if (!probe) return false;
        probe->getSize(&size);
        if (probe != view) probe->release();
        width = size.right - size.left;
        height = size.bottom - size.top;
        return true;
    }

    bool openEditor(unsigned long parent) override {
        if (view) return false;
        view = controller->createView("editor");
        if (!view) return fail("createView gave no view");
        if (view->isPlatformTypeSupported(kPlatformTypeX11EmbedWindowID) != kResultTrue) return fail("no X11 views");
        if (pendingScale > 0.0) setScaleOn(pendingScale);
        view->setFrame(&plugFrame);
        if (view->attached(reinterpret_cast<void*>(parent), kPlatformTypeX11EmbedWindowID) != kResultOk) {
            view->setFrame(nullptr);
            view->release();
            view = nullptr;
            return fail("attached failed");
        }
        return true;
    }

    void closeEditor() override {
        if (!view) return;
        view->removed();
        view->setFrame(nullptr);
        view->release();
        view = nullptr;
    }

    void idle() override { runLoop.turn(); }

    int findParameter(const std::string& name) override {
        for (int32 index = 0; index < controller->getParameterCount(); ++index) {
            ParameterInfo info{};
            if (controller->getParameterInfo(index, info) != kResultOk) continue;
            if (ascii(info.title) == name || ascii(info.shortTitle) == name) return static_cast<int>(info.id);
        }
        return -1;
    }

    // Hosts deliver a parameter to the processor inside a block and tell the controller beside it.
    void setParameter(int parameter, double normalized) override {
        Changes changes(static_cast<ParamID>(parameter), normalized);
        std::vector<float> left(kBlock), right(kBlock), outLeft(kBlock), outRight(kBlock);
        float* inputs[2] = {left.data(), right.data()};
        float* outputs[2] = {outLeft.data(), outRight.data()};
        AudioBusBuffers input{2, 0, {inputs}};
        AudioBusBuffers output{2, 0, {outputs}};
        ProcessData data{kRealtime, kSample32, kBlock, 1, 1, &input, &output, &changes, nullptr,
                         nullptr, nullptr, nullptr};
        processor->process(data);
        controller->setParamNormalized(static_cast<ParamID>(parameter), normalized);
    }

    double getParameter(int parameter) override {
        return controller->getParamNormalized(static_cast<ParamID>(parameter));
    }

    bool setContentScale(double scale) override {
        if (!view) {
            pendingScale = scale;
            return true;
        }
        return setScaleOn(scale);
    }

    int sendWheel(float distance) override { return view && view->onWheel(distance) == kResultTrue ? 1 : 0; }
    int sendKey(int virtualKey, bool down) override {
        if (!view) return 0;
        const int16 code = static_cast<int16>(virtualKey);
        return (down ? view->onKeyDown(0, code, 0) : view->onKeyUp(0, code, 0)) == kResultTrue ? 1 : 0;
    }
    size_t hostRegistrations() const override { return runLoop.registrations(); }

private:
    static constexpr int32 kBlock = 64;

    class Handler : public HostObject<IComponentHandler> {
    public:
        explicit Handler(Vst3Door& owner) : door(owner) {}
        tresult beginEdit(ParamID id) override {
            door.recordEdit(EditKind::Begin, static_cast<int>(id), 0.0);
            return kResultOk;
        }
        tresult performEdit(ParamID id, ParamValue value) override {
            door.recordEdit(EditKind::Perform, static_cast<int>(id), value);
            return kResultOk;
        }
        tresult endEdit(ParamID id) override {
            door.recordEdit(EditKind::End, static_cast<int>(id), 0.0);
            return kResultOk;
        }
        tresult restartComponent(int32) override { return kResultOk; }
        Vst3Door& door;
    };

    // The plug frame answers resize requests at once and hands out the run loop.
    class Frame : public HostObject<IPlugFrame> {
    public:
        explicit Frame(Vst3Door& owner) : door(owner) {}
        tresult queryInterface(const TUID interfaceId, void** object) override {
            if (door.lendRunLoop && sameUid(interfaceId, Linux::IRunLoop::iid)) {
                *object = static_cast<Linux::IRunLoop*>(&door.runLoop);
                return kResultOk;
            }
            return HostObject<IPlugFrame>::queryInterface(interfaceId, object);
        }
        tresult resizeView(IPlugView* resized, ViewRect* size) override {
            if (!resized || !size) return kInvalidArgument;
            door.recordResize(size->right - size->left, size->bottom - size->top);
            return resized->onSize(size);
        }
        Vst3Door& door;
    };

    class Queue : public HostObject<IParamValueQueue> {
    public:
        Queue(ParamID parameter, double normalized) : id(parameter), value(normalized) {}
        ParamID getParameterId() override { return id; }
        int32 getPointCount() override { return 1; }
        tresult getPoint(int32 index, int32& offset, ParamValue& point) override {
            if (index != 0) return kInvalidArgument;
            offset = 0;
            point = value;
            return kResultOk;
        }
        tresult addPoint(int32, ParamValue, int32&) override { return kResultFalse; }
        ParamID id;
        double value;
    };

    class Changes : public HostObject<IParameterChanges> {
    public:
        Changes(ParamID id, double value) : queue(id, value) {}
        int32 getParameterCount() override { return 1; }
        IParamValueQueue* getParameterData(int32 index) override { return index == 0 ? &queue : nullptr; }
        IParamValueQueue* addParameterData(const ParamID&, int32&) override { return nullptr; }
        Queue queue;
    };

    template <typename Interface>
    static Interface* query(FUnknown* object) {
        void* result = nullptr;
        if (!object || object->queryInterface(Interface::iid.bytes, &result) != kResultOk) return nullptr;
        return static_cast<Interface*>(result);
    }

    bool setScaleOn(double scale) {
        auto* scaling = query<IPlugViewContentScaleSupport>(view);
        if (!scaling) return false;
        const bool taken = scaling->setContentScaleFactor(static_cast<float>(scale)) == kResultOk;
        scaling->release();
        return taken;
    }

    bool fail(const char* why) {
        lastError = why ? why : "failed";
        return false;
    }

    void unload() {
        closeEditor();
        if (component) {
            processor->setProcessing(false);
            component->setActive(false);
            controller->setComponentHandler(nullptr);
            component->terminate();
        }
        if (controller) controller->release();
        if (processor) processor->release();
        if (component) component->release();
        if (factory) factory->release();
        if (module) {
            if (auto exit = reinterpret_cast<bool (*)()>(dlsym(module, "ModuleExit"))) exit();
            dlclose(module);
        }
        component = nullptr;
        processor = nullptr;
        controller = nullptr;
        factory = nullptr;
        module = nullptr;
    }

    void* module = nullptr;
    IPluginFactory* factory = nullptr;
    IComponent* component = nullptr;
    IAudioProcessor* processor = nullptr;
    IEditController* controller = nullptr;
    IPlugView* view = nullptr;
    double pendingScale = 0.0;
    bool lendRunLoop;
    Handler handler{*this};
    RunLoop runLoop;
    Frame plugFrame{*this};
};

}  // namespace

std::unique_ptr<EditorDoor> makeVst3Door(bool lendRunLoop) { return std::make_unique<Vst3Door>(lendRunLoop); }

}  // namespace EditorHost
