#pragma once

namespace Ondra {

// What an effect sees of its host. The slot order is shared with embedding programs.
class OndraCallback {
public:
    virtual ~OndraCallback() = default;
    virtual void hostIdle() {}
    virtual int query(int, void*) { return 0; }
    virtual void getHostVendorString(char* text) { if (text) text[0] = 0; }
    virtual void getHostProductString(char* text) { if (text) text[0] = 0; }
    virtual int getHostVendorVersion() { return 0; }
    virtual void notifyDisplayChanged() {}
    virtual void notifyIoChanged() {}
    virtual void setNumInputs(int) { notifyIoChanged(); }
    virtual void setNumOutputs(int) { notifyIoChanged(); }
    virtual void setInitialDelay(int) { notifyIoChanged(); }
    virtual void beginEdit(int) {}
    virtual void endEdit(int) {}
    virtual void automate(int, float) {}
    virtual float getHostTempo() { return 120.0f; }
    virtual bool sizeWindow(int, int) { return false; }
    // 1 VST2, 2 VST3, 5 AAX, 6 an embedding program.
    virtual int getPluginType() { return 0; }
    virtual void updateDisplay() {
        notifyDisplayChanged();
        notifyIoChanged();
    }
};

}  // namespace Ondra
