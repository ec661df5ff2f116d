#pragma once
// The effect's editor: the 534 x 488 panel on the drawn background, every control tied to its
// parameter, the display with the response plot and meters, and the audio tap feeding them.
#include <atomic>
#include <memory>

#include "CORE/strings/CString.h"
#include "effect/IEditorTap.h"
#include "effect/ISamplerEffect.h"
#include "framework/parameters/ParameterProperty.h"
#include "lib/editor-base/CVintariaEditor.h"

class CZonfra;

namespace ZonfraEditor {
class CMultiDisplay;
}

namespace Resko {
class CReskoSession;
class CUpdateNotification;
}  // namespace Resko

class CZonfraEditor : public Vinta::CVintariaEditor,
                      public ISamplerEffect,
                      public IEditorTap {
public:
    static constexpr double kWidth = 534.0;
    static constexpr double kHeight = 488.0;

    explicit CZonfraEditor(CZonfra* effect);
    ~CZonfraEditor() override;

    void openHook(Vinta::CFrame* frame) override;
    void close() override;
    void onIdleHook() override;
    void saveGuiScale() override;
    void loadGuiScale() override;

    // IEditorTap, audio thread: meters, spectrum and moved cutoffs; never waits, never allocates.
    void audioTap(const CZonfra& effect, const float* left, const float* right, int count) override;
    void resetDisplays() override;

    // ISamplerEffect: an embedding program has no run loop to lend, so the frame runs its own thread.
    void getEditorRect(EditorRect& out) override;
    void openEditor(void* parent) override;
    void closeEditor() override;

    Ondra::ParameterProperty& getReadoutParameter() { return readoutParameter; }
    Ondra::ParameterProperty& getInfoPageParameter() { return infoPageParameter; }
    // While open; null otherwise.
    ZonfraEditor::CMultiDisplay* getMultiDisplay() const { return multiDisplay.load(std::memory_order_acquire); }
    // The text of the control under the pointer, kept in the read-out parameter; empty when none.
    void updateHoverText();
    // While open and the update check is on; null otherwise.
    Resko::CUpdateNotification* getUpdateNotification() const { return updateNotification; }

private:
    // The shared bitmap for this editor's scale, chosen as the window opens.
    Vinta::CBitmap* bitmap(int id) const;
    void buildDials(Vinta::CFrame* frame);
    void buildSwitches(Vinta::CFrame* frame);
    // The update check lives exactly as long as the window: nothing of it runs in a host that never
    // opens one, and closing stops a running download.
    void openUpdateClient(Vinta::CFrame* frame);
    void closeUpdateClient();

    CZonfra* effect;
    Ondra::ParameterProperty readoutParameter;
    Ondra::ParameterProperty infoPageParameter;
    Core::CStringBufferd<4> emptyText;
    Core::CStringBufferd<192> hoverText;
    std::atomic<ZonfraEditor::CMultiDisplay*> multiDisplay{nullptr};
    // Taps begun and ended. Only the thread that runs the effect writes them (one at a time), so
    // ending one is a plain store; only beginning needs the full fence.
    std::atomic<uint32_t> tapsBegun{0};
    std::atomic<uint32_t> tapsEnded{0};
    std::unique_ptr<Resko::CReskoSession> updateSession;
    Resko::CUpdateNotification* updateNotification = nullptr;

    ZonfraEditor::CMultiDisplay* beginTap();
    void endTap();
};
