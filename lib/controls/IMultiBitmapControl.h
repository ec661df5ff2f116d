#pragma once
// A control drawn from a filmstrip: frames of equal height stacked in one bitmap.
#include <cstdint>

namespace Vinta {

class IMultiBitmapControl {
public:
    virtual ~IMultiBitmapControl() = default;
    virtual void setHeightOfOneImage(double height) { heightOfOneImage = height; }
    virtual double getHeightOfOneImage() const { return heightOfOneImage; }
    virtual void setNumSubPixmaps(int32_t count) { subPixmaps = count; }
    virtual int32_t getNumSubPixmaps() const { return subPixmaps; }

protected:
    double heightOfOneImage = 0.0;
    int32_t subPixmaps = 0;
};

} // namespace Vinta
