#include "framework/plugin/OndraOS.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cmath>

namespace Ondra {

namespace {
std::atomic<int> gAutomationGrid{-1};

// Grid index -> note-length code; code -> length in beats.
constexpr int kGridCodes[4] = {5, 4, 3, 0};
double beatsOfCode(int code) {
    static const double beats[6] = {4.0, 2.0, 1.0, 0.5, 0.25, 0.125};
    return code >= 0 && code < 6 ? beats[code] : 1.0;
}
}  // namespace

OndraOS::OndraOS(OndraCallback* hostCallback) : callback(hostCallback) {
    // Events are queued on the audio thread: keep room for every parameter of any effect.
    automationQueue.reserve(256);
}

OndraOS::~OndraOS() {
    delete editor;
    editor = nullptr;
}

int OndraOS::getParameterIndex(IPluginParameter* parameter) {
    if (!parameter) return -1;
    const int count = getAutomatableCount();
    for (int i = 0; i < count; ++i) {
        IPluginParameter* p = getAutomatableParameter(i);
        if (p == parameter) return i;
    }
    return -1;
}

void OndraOS::processMidiEvents(std::vector<OndraMidiEvent>& events) {
    decodeMidiEvents(events);
    for (auto& e : events) handleMidiEvent(e);
}

void OndraOS::setInitialDelay(int samples) {
    latency = samples;
    if (callback) callback->setInitialDelay(samples);
}

void OndraOS::beginEdit(IPluginParameter* parameter) {
    if (parameter && parameter->isAutomatable()) beginEdit(getParameterIndex(parameter));
}

void OndraOS::endEdit(IPluginParameter* parameter) {
    if (parameter && parameter->isAutomatable()) endEdit(getParameterIndex(parameter));
}

void OndraOS::automate(IPluginParameter* parameter) {
    if (parameter && parameter->isAutomatable())
        automate(getParameterIndex(parameter), static_cast<float>(parameter->normalizedFromValue()));
}

void OndraOS::setBypass(bool on) {
    bypassed = on;
    if (on)
        suspend();
    else
        resume();
}

void OndraOS::setNumInputPairs(int pairs) {
    numInputPairs = pairs;
    if (callback) callback->setNumInputs(pairs * 2);
}

void OndraOS::setNumOutputPairs(int pairs) {
    numOutputPairs = pairs;
    if (callback) callback->setNumOutputs(pairs * 2);
}

const char* OndraOS::getHostedPluginTypeName() {
    static const char* const names[7] = {"-", "VST2", "VST3", "RTAS", "AU", "AAX", "Ondra"};
    if (!callback) return "NO_CALLBACK";
    const int type = callback->getPluginType();
    return type >= 0 && type <= 6 ? names[type] : "";
}

void OndraOS::setAutomationGrid(int grid) { gAutomationGrid.store(grid, std::memory_order_relaxed); }

int OndraOS::getAutomationGrid() { return gAutomationGrid.load(std::memory_order_relaxed); }

bool OndraOS::queueAutomation(IPluginParameter* parameter, float normalized, int delay, int extra) {
    if (parameter) {
        const float plain = static_cast<float>(parameter->toValue(std::clamp(normalized, 0.0f, 1.0f)));
        auto same = std::find_if(automationQueue.begin(), automationQueue.end(),
                                 [parameter](const OndraAutomationEvent& e) { return e.parameter == parameter; });
        if (same != automationQueue.end()) {
            same->delay = delay;
            same->value = plain;
            same->extra = extra;
            same->pending = true;
        } else if (automationQueue.size() < automationQueue.capacity()) {
            automationQueue.push_back({delay, plain, extra, parameter, true});
        }
    }
    return getAutomationGrid() != -1;
}

void OndraOS::beginAutomationBlock(const OndraAudioBlock& timeLine, int samples) {
    const int grid = getAutomationGrid();
    if (grid < 0 || grid > 3) {
        for (auto& e : automationQueue) e.delay = std::min(e.delay, samples - 1);
        return;
    }
    int delay = 0;
    if (timeLine.transportPlaying && timeLine.tempo > 0) {
        const double length = (60.0 / timeLine.tempo) * sampleRate * beatsOfCode(kGridCodes[grid]);
        const double position = timeLine.samplePos / length;
        double distance = (1.0 - (position - std::floor(position))) * length;
        if (distance >= length) distance = 0;
        delay = distance < samples ? static_cast<int>(std::lround(distance)) : 0;
    }
    for (auto& e : automationQueue) e.delay = delay;
}

void OndraOS::sliceAutomation(int& samples) {
    if (automationQueue.empty()) return;
    int next = INT_MAX;
    for (const auto& e : automationQueue)
        if (e.pending && e.delay > 0) next = std::min(next, e.delay);
    if (next < samples) samples = std::max(next, 1);
    for (size_t i = automationQueue.size(); i-- > 0;) {
        OndraAutomationEvent& e = automationQueue[i];
        if (!e.pending || e.delay > 0) continue;
        e.pending = false;
        if (!handleAutomationEvent(getParameterIndex(e.parameter), e.extra) && e.parameter)
            e.parameter->setValue(e.value);
    }
    for (auto& e : automationQueue) e.delay -= samples;
}

void OndraOS::endAutomationBlock() { automationQueue.clear(); }

}  // namespace Ondra
