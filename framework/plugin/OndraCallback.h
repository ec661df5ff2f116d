#pragma once

namespace Ondra {

// What an effect sees of its host. The slot order is shared with embedding programs.
// The host families, as getPluginType answers them.
enum PluginType : int { kPluginTypeVST2 = 1, kPluginTypeVST3 = 2, kPluginTypeAAX = 5, kPluginTypeEmbedded = 6 };

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
    // One of PluginType: the host family the adapter serves.
    virtual int getPluginType() { return 0; }
    virtual void updateDisplay() {
        notifyDisplayChanged();
        notifyIoChanged();
    }
};

}  // namespace Ondra
