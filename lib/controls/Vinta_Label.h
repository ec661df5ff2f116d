#pragma once
// A label that may show a parameter's name.
#include <atomic>

#include "lib/controls/CTextLabel.h"
#include "lib/views/VintaObjectInfo.h"

namespace Vinta {

class Vinta_Label : public CTextLabel {
public:
    class CInfo : public Vinta_ObjectConstructorInfoBase {
    public:
        CView* CreateObject() override;

        CFontDesc* font = nullptr;
        float fontSize = 10.0f;
        int32_t align = 1;
        CColor fontColor = kWhiteCColor;
        bool transparent = true;
        bool mouseEnabled = false;
        uint32_t style = kNoFrame;
        const char* text = nullptr;
    };

    explicit Vinta_Label(const CInfo& info);

    void draw(CDrawContext* context) override;
    void parameterChanged(Ondra::IPluginParameter* changed) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "Vinta_Label"; }

protected:
    ~Vinta_Label() override;

private:
    // The name is copied on the window's thread: the text's buffer may grow.
    std::atomic<bool> nameChanged{false};
};

} // namespace Vinta
