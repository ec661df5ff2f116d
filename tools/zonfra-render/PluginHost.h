#pragma once
#include <string>

#include "framework/plugin/OndraCallback.h"
#include "framework/plugin/OndraOS.h"

// The plug-in library loaded the way a host loads it, with one effect instance.
class PluginHost : public Ondra::OndraCallback {
public:
    PluginHost() = default;
    ~PluginHost() override;
    PluginHost(const PluginHost&) = delete;
    PluginHost& operator=(const PluginHost&) = delete;

    // Empty on success, else what went wrong.
    std::string load(const std::string& libraryPath);
    Ondra::OndraOS* effect() const { return instance; }

    void setTempo(double bpm) { tempo = static_cast<float>(bpm); }
    float getHostTempo() override { return tempo; }
    int getPluginType() override { return Ondra::kPluginTypeEmbedded; }
    void getHostProductString(char* text) override;

private:
    void* library = nullptr;
    Ondra::OndraOS* instance = nullptr;
    float tempo = 120.0f;
};
