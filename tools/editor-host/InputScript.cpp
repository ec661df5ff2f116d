#include "tools/editor-host/InputScript.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

#include <chrono>
#include <cstdio>
#include <thread>

namespace EditorHost {

bool parseInputStep(const std::string& option, const char* value, InputStep& step) {
    using Kind = InputStep::Kind;
    const struct {
        const char* name;
        Kind kind;
    } kinds[] = {{"--move", Kind::Move},         {"--click", Kind::Click}, {"--right-click", Kind::RightClick},
                 {"--double-click", Kind::DoubleClick}, {"--key", Kind::Key},     {"--type", Kind::Type},
                 {"--wait", Kind::Wait}};
    for (const auto& [name, kind] : kinds) {
        if (option != name || !value) continue;
        step = {kind, 0, 0, {}};
        if (kind == Kind::Key || kind == Kind::Type) {
            step.text = value;
            return kind == Kind::Type || XStringToKeysym(value) != NoSymbol;
        }
        if (kind == Kind::Wait) return std::sscanf(value, "%d", &step.x) == 1 && step.x >= 0;
        return std::sscanf(value, "%d,%d", &step.x, &step.y) == 2;
    }
    return false;
}

InputScript::InputScript(unsigned long hostWindow) : display(XOpenDisplay(nullptr)), host(hostWindow) {}

InputScript::~InputScript() {
    if (display) XCloseDisplay(display);
}

void InputScript::moveTo(int x, int y) {
    int rootX = 0, rootY = 0;
    Window child = 0;
    XTranslateCoordinates(display, host, DefaultRootWindow(display), x, y, &rootX, &rootY, &child);
    XTestFakeMotionEvent(display, -1, rootX, rootY, CurrentTime);
}

void InputScript::button(unsigned int number) {
    XTestFakeButtonEvent(display, number, True, CurrentTime);
    XTestFakeButtonEvent(display, number, False, CurrentTime);
}

void InputScript::key(unsigned long keysym) {
    const KeyCode code = XKeysymToKeycode(display, keysym);
    if (code == 0) return;
    XTestFakeKeyEvent(display, code, True, CurrentTime);
    XTestFakeKeyEvent(display, code, False, CurrentTime);
}

void InputScript::send(const InputStep& step) {
    if (!display) return;
    using Kind = InputStep::Kind;
    switch (step.kind) {
        case Kind::Move: moveTo(step.x, step.y); break;
        case Kind::Click:
        case Kind::RightClick:
        case Kind::DoubleClick:
            moveTo(step.x, step.y);
            button(step.kind == Kind::RightClick ? 3 : 1);
            if (step.kind == Kind::DoubleClick) button(1);
            break;
        case Kind::Key: key(XStringToKeysym(step.text.c_str())); break;
        case Kind::Type:
            for (char c : step.text) key(static_cast<unsigned char>(c));  // Latin-1 keysyms are the characters
            break;
        case Kind::Wait: std::this_thread::sleep_for(std::chrono::milliseconds(step.x)); break;
    }
    XSync(display, False);
}

void InputScript::run(const std::vector<InputStep>& steps, int pauseMilliseconds) {
    for (const InputStep& step : steps) {
        std::this_thread::sleep_for(std::chrono::milliseconds(pauseMilliseconds));
        send(step);
    }
}

}  // namespace EditorHost
