#pragma once
// A font: a size, a style and two whole TrueType files in memory (regular and bold). The faces of
// the global fonts come out of the font archives the first time they are asked for, so nothing
// depends on the order in which the library's images register.
#include <cstdint>
#include <string>
#include <vector>

#include "lib/views/CBaseObject.h"

namespace Vinta {

class CFontDesc : public CBaseObject {
public:
    struct Face {
        const uint8_t* data = nullptr;
        uint32_t size = 0;
        std::string name;
        bool ownsData = false;
    };

    // Faces read from the archive image `archive` by file name on first use.
    CFontDesc(const char* archive, const char* regularName, const char* boldName, int32_t weight, double size = 12.0);
    // Faces given as memory that stays the caller's (null for none).
    CFontDesc(const Face& regular, const Face& bold, int32_t weight, double size = 12.0);
    CFontDesc(const CFontDesc&) = delete;
    CFontDesc& operator=(const CFontDesc&) = delete;

    double getSize() const { return size; }
    void setSize(double value) { size = value; }
    int32_t getStyle() const { return style; }
    void setStyle(int32_t value) { style = value; }
    int32_t getWeight() const { return weight; }
    // 1 to 1, 2 to 3, anything else to 2.
    int32_t getBackendWeight() const { return weight == 1 ? 1 : (weight == 2 ? 3 : 2); }

    // Style 1 draws the bold face, any other style the regular one.
    const Face& face() const;
    // The key under which the face data is registered with nanovg: the bold file's name for style 0,
    // the regular file's name otherwise (so each style has its own key).
    const std::string& registrationName() const;
    // False while neither face has data (missing archive or file).
    bool hasData() const;

protected:
    ~CFontDesc() override;

private:
    void loadFaces() const;

    double size = 12.0;
    int32_t style = 0;
    mutable Face regular;
    mutable Face bold;
    int32_t weight = 0;
    std::string archive;
    mutable bool loaded = false;
};

// Built at start-up, shared by every editor, given back when the library unloads; never forget them.
extern CFontDesc* const kSystemFont;
extern CFontDesc* const kBoldFont;
extern CFontDesc* const kNormalFont;

}  // namespace Vinta
