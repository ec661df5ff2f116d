#pragma once

namespace Ondra {

enum UnitType : int {
    kUnitTime = 0,
    kUnitFraction = 1,
    kUnitPercent = 2,
    kUnitGain = 3,
    kUnitDecibel = 4,
    kUnitFrequency = 5,
    kUnitBipolar = 6,
    kUnitSemitones = 7,
    kUnitSwitch = 8,
    kUnitBalance = 9,
    kUnitNumber = 10,
    kUnitText = 11,
    kUnitNote = 12,
    kUnitWhole = 13,
    kUnitRatio = 14,
};

// Every text out-parameter of the parameter model must hold this many bytes.
constexpr int kParameterTextSize = 128;

const char* unitLabelOf(int unitType);
// The type's own text of a value; `precise` picks the form with decimals.
void formatUnitValue(int unitType, float value, float minimum, float maximum, bool precise, char* out);
// The plain value a text means for a type. Type 11 is handled by the parameter.
float valueFromUnitText(int unitType, const char* text, float minimum, float maximum);

}  // namespace Ondra
