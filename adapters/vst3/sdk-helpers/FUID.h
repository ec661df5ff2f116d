#pragma once
#include "adapters/vst3/sdk/Vst3Types.h"

namespace Steinberg {

// A class identifier: four 32-bit words, each stored most significant byte first, as hosts on
// Linux read a TUID. Also its 32-digit hexadecimal text, the form module descriptions carry.
class FUID {
public:
    static constexpr int kTextSize = 33;  // 32 digits and the terminator

    FUID() = default;
    FUID(uint32 l1, uint32 l2, uint32 l3, uint32 l4);
    explicit FUID(const Uid& uid);
    // A null pointer gives the empty identifier.
    static FUID fromTUID(const char* tuid);

    void toTUID(TUID out) const;
    const char* data() const { return bytes; }
    // Word 0 to 3; 0 for any other index.
    uint32 getLong(int index) const;
    bool isValid() const;

    // Upper-case digits, word by word.
    void toString(char (&text)[kTextSize]) const;
    // Exactly 32 hexadecimal digits of either case; anything else leaves the identifier as it was.
    bool fromString(const char* text);

    bool matches(const char* tuid) const;
    bool operator==(const FUID& other) const;

private:
    char bytes[16] = {};
};

}  // namespace Steinberg
