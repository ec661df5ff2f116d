#pragma once

namespace Ondra {

// Something that wants a periodic idle call while it is open: the editors.
class IdleClient {
public:
    virtual bool isOpen() = 0;
    virtual void idle() = 0;

protected:
    ~IdleClient() = default;
};

// The effect's editor object, owned by the plug-in base and destroyed through this class.
class PluginEditor : public IdleClient {
public:
    virtual ~PluginEditor() = default;
};

}  // namespace Ondra
