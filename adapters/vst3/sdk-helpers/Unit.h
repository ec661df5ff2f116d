#pragma once
#include "adapters/vst3/sdk/Vst3Controller.h"

namespace Steinberg::Vst {

// One entry of the unit tree a controller describes through IUnitInfo.
class Unit {
public:
    // The name in UTF-8.
    Unit(const char* name, UnitID id, UnitID parentId = kNoParentUnitId,
         ProgramListID programListId = kNoProgramListId);

    const UnitInfo& getInfo() const { return info; }
    UnitID getId() const { return info.id; }

private:
    UnitInfo info{};
};

}  // namespace Steinberg::Vst
