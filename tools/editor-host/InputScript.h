#pragma once
// Pointer and key input as a person gives it, sent through XTest on a connection of its own, so
// a thread can give it while the host's thread turns its loop. Points are pixels of the host window.
#include <string>
#include <vector>

struct _XDisplay;

namespace EditorHost {

struct InputStep {
    enum class Kind { Move, Click, RightClick, DoubleClick, Key, Type, Wait };
    Kind kind = Kind::Wait;
    int x = 0, y = 0;  // Move and the clicks; Wait keeps its milliseconds in x
    std::string text;  // Key: a keysym name ("Return", "Down", "a"); Type: text as its unshifted keys
};

// The step an option of zonfra-editor-host stands for ("--click" with "X,Y" and so on); false
// when `option` is none of them or its value does not parse.
bool parseInputStep(const std::string& option, const char* value, InputStep& step);

class InputScript {
public:
    explicit InputScript(unsigned long hostWindow);
    ~InputScript();
    InputScript(const InputScript&) = delete;
    InputScript& operator=(const InputScript&) = delete;

    bool valid() const { return display != nullptr; }
    void send(const InputStep& step);
    // Each step after `pauseMilliseconds`, so the editor can answer the one before.
    void run(const std::vector<InputStep>& steps, int pauseMilliseconds);

private:
    void moveTo(int x, int y);
    void button(unsigned int number);
    void key(unsigned long keysym);

    _XDisplay* display = nullptr;
    unsigned long host = 0;
};

}  // namespace EditorHost
