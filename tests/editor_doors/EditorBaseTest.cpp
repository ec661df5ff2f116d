#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "framework/plugin/OndraCallback.h"
#include "framework/plugin/OndraOS.h"
#include "lib/editor-base/CVintariaEditor.h"

namespace {

struct SizeRecorder : Ondra::OndraCallback {
    bool sizeWindow(int, int) override { return ++calls, true; }
    int calls = 0;
};

struct Editor : Vinta::CVintariaEditor {
    using CVintariaEditor::CVintariaEditor;
    Core::Threads::CCriticalSection& closeLock() { return lock; }
};

TEST(EditorBase, ScaledSizeAndPointsFollowTheClampedGuiScale) {
    SizeRecorder host;
    Ondra::OndraOS plugin(&host);
    Editor editor(&plugin);
    editor.setEditorSize(534, 488);
    struct Case { double scale, wanted; int width, height; };
    for (const Case c : {Case{1.0, 1.0, 534, 488}, Case{1.25, 1.25, 667, 610}, Case{1.5, 1.5, 801, 732},
                         Case{2.0, 2.0, 1068, 976}, Case{0.5, 1.0, 534, 488}, Case{3.0, 2.0, 1068, 976},
                         Case{std::nan(""), 2.0, 1068, 976}}) {
        SCOPED_TRACE(c.scale);
        editor.setGuiScale(c.scale);
        EXPECT_EQ(editor.getGuiScale(), c.wanted);
        int32_t width = 0, height = 0;
        ASSERT_TRUE(editor.getRect(width, height));
        EXPECT_EQ(std::pair(width, height), std::pair(c.width, c.height));
        EXPECT_EQ(editor.getRectPointer().getWidth(), c.width);
    }
    // Window points reach the tree divided by the scale.
    EXPECT_EQ(editor.toFrame(Vinta::CPoint{250, 100}), (Vinta::CPoint{125, 50}));
    EXPECT_EQ(editor.toWindow(Vinta::CRect{10, 20, 30, 40}).bottom, 80);
    EXPECT_FALSE(editor.isOpen());
    EXPECT_EQ(host.calls, 0) << "a closed editor only stores its scale";
    EXPECT_FALSE(editor.open(nullptr));
    EXPECT_EQ(Vinta::CVintariaEditor::getOpenEditorCount(), 0);
}

TEST(EditorBase, IdleReturnsAtOnceWhileACloseHoldsTheLock) {
    Ondra::OndraOS plugin(nullptr);
    Editor editor(&plugin);
    std::thread closing([&] {
        editor.closeLock().enter();
        std::thread idling([&] { editor.idle(); });
        idling.join();  // hangs if idle waits for the lock
        editor.closeLock().leave();
    });
    closing.join();
}

}  // namespace
