#pragma once
// One plug-in instance loaded through one of the library's doors (VST3, VST2, the embedding
// interface), seen the way a host sees it: the editor's size, opening it in a window, the host's
// share of the event loop, parameters, and what the plug-in told the host.
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace EditorHost {

enum class EditKind { Begin, Perform, End };

struct EditEvent {
    EditKind kind;
    int parameter;  // the door's parameter number: VST3 id, VST2 or embedding index
    double value;   // normalized; 0 for begin and end
};

class EditorDoor {
public:
    virtual ~EditorDoor() = default;

    // Loads the library and makes one instance; false with `error()` set when it cannot.
    virtual bool load(const std::string& libraryPath) = 0;
    virtual bool getEditorSize(int& width, int& height) = 0;
    // `parent` is the host's X11 window.
    virtual bool openEditor(unsigned long parent) = 0;
    virtual void closeEditor() = 0;
    // The host's turn of its event loop: run-loop handlers and timers (VST3), effEditIdle (VST2).
    virtual void idle() = 0;
    // The parameter whose host-visible name or key is `name`, -1 when none.
    virtual int findParameter(const std::string& name) = 0;
    // Sets a parameter from the host side, the way this host interface delivers it.
    virtual void setParameter(int parameter, double normalized) = 0;
    virtual double getParameter(int parameter) = 0;
    // A host's content scale (VST3); false where the door has none.
    virtual bool setContentScale(double) { return false; }
    // Wheel and keys sent through the host interface (VST3 view, VST2 opcodes): 1 taken, 0 not,
    // -1 where the door has no such way. `virtualKey` uses the VST key codes.
    virtual int sendWheel(float) { return -1; }
    virtual int sendKey(int, bool) { return -1; }
    // Handlers and timers the plug-in keeps registered with this host (VST3 run loop).
    virtual size_t hostRegistrations() const { return 0; }

    const std::string& error() const { return lastError; }
    // Edits reported to the host so far; they may come from the editor's own thread.
    std::vector<EditEvent> takeEdits();
    // Sizes the plug-in asked its host window to take.
    std::vector<std::pair<int, int>> takeResizeRequests();

protected:
    void recordEdit(EditKind kind, int parameter, double value);
    void recordResize(int width, int height);

    std::string lastError;

private:
    std::mutex lock;
    std::vector<EditEvent> edits;
    std::vector<std::pair<int, int>> resizes;
};

// "vst3", "vst2" or "embed", or "vst3-no-runloop" (a VST 3 host without IRunLoop); null for
// anything else.
std::unique_ptr<EditorDoor> makeDoor(const std::string& kind);

}  // namespace EditorHost
