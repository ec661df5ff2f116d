#pragma once
#include "effect/FusedFilterStage.h"

// The series form of the fused filter stage for processors with AVX: two cascades that stand at the
// same place of the pipeline share one 256-bit register (the low-pass with its dry twin, the
// second low-pass cascade with the other dry twin, the second high-pass cascade with the all-pass),
// with the arithmetic of each lane unchanged. Both slopes must have the same stage count, 1, 2 or 4.
// Returns false without touching anything when the processor or the shape does not allow it.
bool runWideSeriesFilterStage(FilterStageParts& parts, const FilterStageBuffers& buffers, int samples, int stages);
