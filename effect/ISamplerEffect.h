#pragma once

struct EditorRect {
    double left, top, right, bottom;
};

// The embedding program's way to place the effect's editor in a window of its own.
class ISamplerEffect {
public:
    // Leaves `rect` as it is when there is no editor.
    virtual void getEditorRect(EditorRect& rect) = 0;
    virtual void openEditor(void* parent) = 0;
    virtual void closeEditor() = 0;

protected:
    ~ISamplerEffect() = default;
};
