#pragma once
// The effect's editor. Until its full layout lands it shows the placeholder panel; it keeps the
// GUI scale in the settings and answers the embedding door's placement calls.
#include "effect/ISamplerEffect.h"
#include "lib/editor-base/CVintariaEditor.h"

class CZonfra;

class CZonfraEditor : public Vinta::CVintariaEditor, public ISamplerEffect {
public:
    explicit CZonfraEditor(CZonfra* effect);

    void openHook(Vinta::CFrame* frame) override;
    void saveGuiScale() override;
    void loadGuiScale() override;

    // ISamplerEffect: an embedding program has no run loop to lend, so the frame runs its own thread.
    void getEditorRect(EditorRect& out) override;
    void openEditor(void* parent) override;
    void closeEditor() override;
};
