#pragma once
// A knob filmstrip drawn in code, for panels that have no bitmap of their own yet.
namespace Vinta {
class CBitmap;
}

namespace ZonfraEditor {

constexpr int kKnobFrames = 61;
constexpr double kKnobSize = 64.0;

// Frames stacked top down, the pointer sweeping 270 degrees; the caller forgets the bitmap.
Vinta::CBitmap* drawKnobFilmstrip();

}  // namespace ZonfraEditor
