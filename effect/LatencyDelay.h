#pragma once
#include "framework/plugin/CNChannelBuffer.h"

// Delays two channels in place by the ring's length, as a shift register; `scratch` holds at
// least `samples` floats in its first channel.
void delayInPlace(Ondra::CNChannelBuffer& ring, Ondra::CNChannelBuffer& scratch, float* left, float* right,
                  int samples);
