// Parameters between host and effect, and the flags that keep a host's own value from being
// reported back to it.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "adapters/vst2/OndraVST.h"
#include "adapters/vst2/Vst2Text.h"
#include "adapters/vst2/sdk/HostOpcodes.h"
#include "framework/parameters/UnitType.h"

using namespace Vst2;

Ondra::IPluginParameter* OndraVST::automatable(VstInt32 index) const {
    return plugin && index >= 0 ? plugin->getAutomatableParameter(index) : nullptr;
}

void OndraVST::setParameter(VstInt32 index, float value) {
    if (!plugin || std::isnan(value)) return;
    settingParameter = true;
    if (index < 0 || index > plugin->getParameterCount()) {
        settingParameter = false;
        return;
    }
    if (tellingHost) {
        if (!hostIsSetting) {
            // The host answering our own report with the same value.
            settingParameter = false;
            return;
        }
        tellingHost = false;
    }
    if (Ondra::IPluginParameter* parameter = automatable(index)) {
        const float normalized = std::clamp(value, 0.0f, 1.0f);
        hostIsSetting = true;
        plugin->queueAutomation(parameter, normalized, 0);
        if (plugin->getAutomationGrid() == -1) parameter->setNormalized(normalized);
        hostIsSetting = false;
    }
    settingParameter = false;
}

float OndraVST::getParameter(VstInt32 index) {
    Ondra::IPluginParameter* parameter = automatable(index);
    return parameter ? parameter->getNormalized() : 0.0f;
}

void OndraVST::getParameterLabel(VstInt32 index, char* label) {
    if (!label) return;
    label[0] = 0;
    if (Ondra::IPluginParameter* parameter = automatable(index))
        Vst2Text::copy(label, parameter->getUnitLabel(), Vst2Text::kParameterTextLimit);
}

void OndraVST::getParameterDisplay(VstInt32 index, char* text) {
    if (!text) return;
    text[0] = 0;
    if (Ondra::IPluginParameter* parameter = automatable(index)) {
        char display[Ondra::kParameterTextSize] = {0};
        parameter->getDisplayText(parameter->getValue(), display, 0);
        Vst2Text::copy(text, display, Vst2Text::kParameterTextLimit);
    }
}

void OndraVST::getParameterName(VstInt32 index, char* text) {
    if (!text) return;
    text[0] = 0;
    if (Ondra::IPluginParameter* parameter = automatable(index))
        Vst2Text::copy(text, parameter->getAutomationName(), Vst2Text::kParameterTextLimit);
}

bool OndraVST::canParameterBeAutomated(VstInt32 index) {
    Ondra::IPluginParameter* parameter = automatable(index);
    return parameter && parameter->isAutomatable();
}

bool OndraVST::getParameterProperties(VstInt32 index, VstParameterProperties* properties) {
    if (!plugin || !properties) return false;
    std::memset(properties, 0, sizeof *properties);
    Ondra::IPluginParameter* parameter = automatable(index);
    if (!parameter) return false;
    properties->displayIndex = static_cast<VstInt16>(index);
    Vst2Text::copy(properties->label, parameter->getName(), kVstMaxLabelLen - 1);
    Vst2Text::copy(properties->shortLabel, parameter->getName(), kVstMaxShortLabelLen - 1);
    return true;
}

void OndraVST::parameterChanged(Ondra::IPluginParameter* property) {
    if (hostIsSetting) {
        if (!tellingHost) return;
        hostIsSetting = false;
    }
    if (!property || !property->isAutomatable() || !plugin) return;
    reportToHost(plugin->getParameterIndex(property), property->getNormalized());
}

void OndraVST::reportToHost(int index, float normalized) {
    if (index < 0 || !audioMaster) return;
    tellingHost = true;
    callHost(audioMasterAutomate, index, 0, nullptr, normalized);
    tellingHost = false;
}

void OndraVST::automate(int index, float value) { reportToHost(index, value); }

void OndraVST::beginEdit(int index) {
    if (index >= 0) AudioEffectX::beginEdit(index);
}

void OndraVST::endEdit(int index) {
    if (index >= 0) AudioEffectX::endEdit(index);
}
