#pragma once
#include <cstddef>

#include "adapters/vst3/sdk/Vst3Base.h"
#include "adapters/vst3/sdk/Vst3View.h"

namespace Steinberg::Vst {

struct ParameterInfo {
    enum ParameterFlags : int32 {
        kNoFlags = 0,
        kCanAutomate = 1 << 0,
        kIsReadOnly = 1 << 1,
        kIsWrapAround = 1 << 2,
        kIsList = 1 << 3,
        kIsHidden = 1 << 4,
        kIsProgramChange = 1 << 15,
        kIsBypass = 1 << 16,
    };
    ParamID id;
    String128 title;
    String128 shortTitle;
    String128 units;
    int32 stepCount;
    ParamValue defaultNormalizedValue;
    UnitID unitId;
    int32 flags;
};
static_assert(offsetof(ParameterInfo, stepCount) == 772);
static_assert(offsetof(ParameterInfo, defaultNormalizedValue) == 776);
static_assert(sizeof(ParameterInfo) == 792);

struct UnitInfo {
    UnitID id;
    UnitID parentUnitId;
    String128 name;
    ProgramListID programListId;
};
static_assert(sizeof(UnitInfo) == 268);

struct ProgramListInfo {
    ProgramListID id;
    String128 name;
    int32 programCount;
};

class IComponentHandler : public FUnknown {
public:
    virtual tresult beginEdit(ParamID id) = 0;
    virtual tresult performEdit(ParamID id, ParamValue valueNormalized) = 0;
    virtual tresult endEdit(ParamID id) = 0;
    virtual tresult restartComponent(int32 flags) = 0;
    static constexpr Uid iid = makeUid(0x93A0BEA3, 0x0BD045DB, 0x8E890B0C, 0xC1E46AC6);

protected:
    ~IComponentHandler() = default;
};

class IEditController : public IPluginBase {
public:
    virtual tresult setComponentState(IBStream* state) = 0;
    virtual tresult setState(IBStream* state) = 0;
    virtual tresult getState(IBStream* state) = 0;
    virtual int32 getParameterCount() = 0;
    virtual tresult getParameterInfo(int32 paramIndex, ParameterInfo& info) = 0;
    virtual tresult getParamStringByValue(ParamID id, ParamValue valueNormalized, String128 string) = 0;
    virtual tresult getParamValueByString(ParamID id, TChar* string, ParamValue& valueNormalized) = 0;
    virtual ParamValue normalizedParamToPlain(ParamID id, ParamValue valueNormalized) = 0;
    virtual ParamValue plainParamToNormalized(ParamID id, ParamValue plainValue) = 0;
    virtual ParamValue getParamNormalized(ParamID id) = 0;
    virtual tresult setParamNormalized(ParamID id, ParamValue value) = 0;
    virtual tresult setComponentHandler(IComponentHandler* handler) = 0;
    virtual IPlugView* createView(FIDString name) = 0;
    static constexpr Uid iid = makeUid(0xDCD7BBE3, 0x7742448D, 0xA874AACC, 0x979C759E);

protected:
    ~IEditController() = default;
};

class IEditController2 : public FUnknown {
public:
    virtual tresult setKnobMode(KnobMode mode) = 0;
    virtual tresult openHelp(TBool onlyCheck) = 0;
    virtual tresult openAboutBox(TBool onlyCheck) = 0;
    static constexpr Uid iid = makeUid(0x7F4EFE59, 0xF3204967, 0xAC27A3AE, 0xAFB63038);

protected:
    ~IEditController2() = default;
};

class IUnitInfo : public FUnknown {
public:
    virtual int32 getUnitCount() = 0;
    virtual tresult getUnitInfo(int32 unitIndex, UnitInfo& info) = 0;
    virtual int32 getProgramListCount() = 0;
    virtual tresult getProgramListInfo(int32 listIndex, ProgramListInfo& info) = 0;
    virtual tresult getProgramName(ProgramListID listId, int32 programIndex, String128 name) = 0;
    virtual tresult getProgramInfo(ProgramListID listId, int32 programIndex, CString attributeId,
                                   String128 attributeValue) = 0;
    virtual tresult hasProgramPitchNames(ProgramListID listId, int32 programIndex) = 0;
    virtual tresult getProgramPitchName(ProgramListID listId, int32 programIndex, int16 midiPitch, String128 name) = 0;
    virtual UnitID getSelectedUnit() = 0;
    virtual tresult selectUnit(UnitID unitId) = 0;
    virtual tresult getUnitByBus(MediaType type, BusDirection direction, int32 busIndex, int32 channel,
                                 UnitID& unitId) = 0;
    virtual tresult setUnitProgramData(int32 listOrUnitId, int32 programIndex, IBStream* data) = 0;
    static constexpr Uid iid = makeUid(0x3D4BD6B5, 0x913A4FD2, 0xA886E768, 0xA5EB92C1);

protected:
    ~IUnitInfo() = default;
};

class IUnitHandler : public FUnknown {
public:
    virtual tresult notifyUnitSelection(UnitID unitId) = 0;
    virtual tresult notifyProgramListChange(ProgramListID listId, int32 programIndex) = 0;
    static constexpr Uid iid = makeUid(0x4B5147F8, 0x4654486B, 0x8DAB30BA, 0x163A3C56);

protected:
    ~IUnitHandler() = default;
};

class IProgramListData : public FUnknown {
public:
    virtual tresult programDataSupported(ProgramListID listId) = 0;
    virtual tresult getProgramData(ProgramListID listId, int32 programIndex, IBStream* data) = 0;
    virtual tresult setProgramData(ProgramListID listId, int32 programIndex, IBStream* data) = 0;
    static constexpr Uid iid = makeUid(0x8683B01F, 0x7B354F70, 0xA2651DEC, 0x353AF4FF);

protected:
    ~IProgramListData() = default;
};

class IMidiMapping : public FUnknown {
public:
    virtual tresult getMidiControllerAssignment(int32 busIndex, int16 channel, CtrlNumber midiControllerNumber,
                                                ParamID& id) = 0;
    static constexpr Uid iid = makeUid(0xDF0FF9F7, 0x49B74669, 0xB63AB732, 0x7ADBF5E5);

protected:
    ~IMidiMapping() = default;
};

}  // namespace Steinberg::Vst
