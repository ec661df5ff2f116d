#include "adapters/vst3/sdk-helpers/Unit.h"

#include "adapters/vst3/sdk-helpers/StringConvert.h"

namespace Steinberg::Vst {

Unit::Unit(const char* name, UnitID id, UnitID parentId, ProgramListID programListId) {
    info.id = id;
    info.parentUnitId = parentId;
    StringConvert::toString128(name, info.name);
    info.programListId = programListId;
}

}  // namespace Steinberg::Vst
