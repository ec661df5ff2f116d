#pragma once

// The arithmetic of the 500 Hz control step, kept free of state so each rule can be checked alone.
namespace ModulationMath {

// Per-chunk follower coefficients from times in milliseconds.
float attackCoefficient(float milliseconds);
float releaseCoefficient(float milliseconds);

// Level 0..1 of a chunk from its largest squared sample: -24 dB and below give 0, full level 1.
float envelopeLevel(float maxSquare);

// How far the envelope may move a cutoff set at `cutoffParam`: full reach up to 100 Hz, almost
// none at the top.
float envelopeReachScale(float cutoffParam);

// The LFO as a factor on a cutoff: strength s from -3 to 3, mean m from -1 to 1.
float applyLfo(float cutoff, float mean, float strength);

// One chunk of cutoff glide toward `modulated`; steep slopes move slower by `inertia`.
float glideStep(float cutoff, float modulated, int slopeDb, float inertia);

// The inertia parameter's value (0..1) as the glide's inertia: 0.001 to 1, rising fast from 0.
float inertiaFromRow(float value);

struct ResonanceShape {
    float gainDb;
    float bandwidth;
};
// Resonance peak settings at a cutoff, with the peak narrowed and lowered toward the top.
ResonanceShape resonanceShape(float resonance, float cutoff, float widthParam);

// Sample period of the LFO's sync restart for sync index 1..24, 0 when it has no meaning.
int syncPeriodSamples(int syncIndex, float tempo, float sampleRate);

// Rate reducer control from the low-pass position.
float rateLinkControl(float lowModulated, float amount, bool flip);

// Moves a normalised position toward (a >= 0) or down by (a < 0) the filter position.
float linkTowardFilter(float normalized, float filterPosition, float amount);

}  // namespace ModulationMath
