#pragma once
// What the view tree asks of the editor that owns its frame. The editor base implements it.
namespace Ondra {
class IPluginParameter;
}

namespace Vinta {

class IVintaEditor {
public:
    virtual ~IVintaEditor() = default;
    // Gestures on a parameter, handed on to the plug-in.
    virtual void beginEdit(Ondra::IPluginParameter* parameter) = 0;
    virtual void endEdit(Ondra::IPluginParameter* parameter) = 0;
    virtual void performEdit(Ondra::IPluginParameter* parameter) = 0;
    virtual double getSampleRate() = 0;
    virtual void setGuiScale(double scale) = 0;
    virtual double getGuiScale() const = 0;
    virtual void saveGuiScale() = 0;
};

} // namespace Vinta
