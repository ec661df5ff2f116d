#pragma once
// What an open editor takes from each finished block, on the audio thread. It reads the effect
// through its const accessors and the block's output; it must neither wait nor allocate.
class CZonfra;

class IEditorTap {
public:
    virtual void audioTap(const CZonfra& effect, const float* left, const float* right, int count) = 0;
    // The effect was reset: the displays start afresh.
    virtual void resetDisplays() = 0;

protected:
    ~IEditorTap() = default;
};
