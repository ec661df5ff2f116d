#include "editor/pages/PageAnimation.h"

#include <algorithm>

#include "lib/views/VintaClock.h"

namespace ZonfraPages {

namespace {

double elapsed(uint32_t& lastTick) {
    const uint32_t now = Vinta::getVintaTicks();
    const double ticks = static_cast<double>(now - lastTick);
    lastTick = now;
    return ticks;
}

// An edge this close to its target (squared distance at most 0.5) takes it at once.
void moveEdge(double& edge, double target, double fraction) {
    const double difference = target - edge;
    edge = difference * difference > 0.5 ? edge + difference * fraction : target;
}

}  // namespace

double Vinta_Animation::stepFraction(double seconds) {
    return std::clamp(elapsed(lastTick) / (60.0 * seconds), 0.0, 1.0);
}

double Vinta_Animation::stepDelta() { return std::clamp(elapsed(lastTick) / 60.0, 0.0, 1000.0); }

void Vinta_Animation::restart() { lastTick = Vinta::getVintaTicks(); }

void Vinta_Animation::moveRect(Vinta::CRect& current, const Vinta::CRect& target, double fraction) {
    moveEdge(current.left, target.left, fraction);
    moveEdge(current.top, target.top, fraction);
    moveEdge(current.right, target.right, fraction);
    moveEdge(current.bottom, target.bottom, fraction);
}

void Vinta_Animation::start() { lastTick = startTick = Vinta::getVintaTicks(); }

float Vinta_Animation::value() {
    lastTick = Vinta::getVintaTicks();
    if (durationMs <= 0) return 1.0f;
    uint32_t elapsedMs = lastTick - startTick;
    if (looping) elapsedMs %= static_cast<uint32_t>(durationMs);
    return std::clamp(static_cast<float>(elapsedMs) / static_cast<float>(durationMs), 0.0f, 1.0f);
}

bool Vinta_Animation::finished() const {
    return !looping && static_cast<int64_t>(lastTick - startTick) > durationMs;
}

}  // namespace ZonfraPages
