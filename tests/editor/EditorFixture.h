#pragma once
// The effect with its editor open in a window of a virtual X server, driven by host idle calls so
// that nothing runs beside the test's own thread.
#include <gtest/gtest.h>

#include <X11/Xlib.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "editor/CMultiDisplay.h"
#include "editor/CZonfraEditor.h"
#include "EffectHarness.h"
#include "lib/drawing/CBitmap.h"
#include "lib/views/CControl.h"
#include "lib/views/CFrame.h"

class OpenEditor : public ::testing::Test {
protected:
    void SetUp() override {
        if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no X display: run under xvfb-run";
        // One host window for the whole program: the editor opens and closes inside it.
        static Display* const display = XOpenDisplay(nullptr);
        ASSERT_NE(display, nullptr);
        static const Window parent = [] {
            const Window made = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1100, 1000, 0, 0, 0);
            XMapWindow(display, made);
            XSync(display, False);
            return made;
        }();
        CZonfra::editorFactory = [](CZonfra& effect) -> Ondra::PluginEditor* { return new CZonfraEditor(&effect); };
        harness = std::make_unique<EffectHarness>(44100.0f, 512);
        editor = dynamic_cast<CZonfraEditor*>(harness->effect->getEditor());
        ASSERT_NE(editor, nullptr);
        editor->setEventDriver(Vinta::X11::EventDriver::HostIdle);
        ASSERT_TRUE(editor->open(reinterpret_cast<void*>(parent)));
        display_ = editor->getMultiDisplay();
        ASSERT_NE(display_, nullptr);
    }
    void TearDown() override { harness.reset(); }

    Ondra::IPluginParameter* parameter(const char* key) { return harness->effect->findParameter(key); }
    // The control of the panel tied to `key` whose class is `type`.
    Vinta::CControl* control(const char* key, const char* type) {
        Vinta::CFrame* frame = editor->getFrame();
        for (int i = 0; i < frame->getNbViews(); ++i) {
            auto* c = dynamic_cast<Vinta::CControl*>(frame->getView(i));
            if (c && c->isTypeOf(type) && c->getParameter() && std::strcmp(c->getParameter()->getKey(), key) == 0)
                return c;
        }
        return nullptr;
    }
    // Draws the display as a paint would, into a bitmap of the panel's size.
    void paint() {
        auto* target = new Vinta::CBitmap(534, 488);
        display_->getPlot()->draw(target->getDrawContext());
        target->forget();
    }
    // Runs `left` on both channels in host blocks of 512.
    void feed(std::vector<float> left) {
        std::vector<float> right = left;
        harness->run(left, right, 512);
    }

    std::unique_ptr<EffectHarness> harness;
    CZonfraEditor* editor = nullptr;
    ZonfraEditor::CMultiDisplay* display_ = nullptr;
};
