#pragma once
// Plain records from which the editors build their views: the caller fills one on the stack and
// hands it to the builder, which leaves the new view in `object`.
#include <cstdint>

#include "lib/views/VintaTypes.h"

namespace Ondra {
class IPluginParameter;
}

namespace Vinta {

class CBitmap;
class CView;

// What a record builds.
enum ViewKind : int32_t {
    kKindParamDisplay = 100,   // 100, 101 and 103 to 107: a Vinta_ParamDisplay from the text record
    kKindParamDisplayB = 101,
    kKindParamDisplayFirst = 103,
    kKindParamDisplayLast = 107,
    kKindTextEdit = 109,       // 109 and 110: the record's own CreateObject
    kKindCreateObject = 110,
};

class Vinta_ObjectConstructorInfoBase {
public:
    virtual ~Vinta_ObjectConstructorInfoBase() = default;
    // Builds the view and stores it in `object` (null on failure); the caller gets its reference.
    virtual CView* CreateObject() { return object = nullptr; }

    int32_t kind = 0;
    CRect rect;
    int32_t tag = 0;
    CView* object = nullptr;
    Ondra::IPluginParameter* parameter = nullptr;
    Ondra::IPluginParameter* visibilityParameter = nullptr;
    Ondra::IPluginParameter* enableParameter = nullptr;
    CView* parentFrame = nullptr;
};

// Base of records of controls drawn from a filmstrip bitmap.
class CMultiBMPControlInfo : public Vinta_ObjectConstructorInfoBase {
public:
    int32_t frameCount = 0;
    double frameHeight = 0.0;
    CBitmap* bitmap = nullptr;
    CPoint handleOffset;
};

} // namespace Vinta
