#pragma once
// The images of the main archive, each drawn by one function in panel units.
#include <vector>

#include "tools/artwork/Painter.h"

namespace Artwork {

struct BitmapRecipe {
    const char* name;       // the archive's name at 100 %
    double width;           // panel units
    double frameHeight;     // panel units
    int frames;             // stacked top to bottom
    void (*drawFrame)(Painter& painter, int frame, int frames);
};

const std::vector<BitmapRecipe>& bitmapRecipes();

void drawBackground(Painter& p, int frame, int frames);
void drawBigDial(Painter& p, int frame, int frames);
void drawSmallDial(Painter& p, int frame, int frames);
void drawMixDial(Painter& p, int frame, int frames);
void drawLedOn(Painter& p, int frame, int frames);
void drawLedOff(Painter& p, int frame, int frames);
void drawLinkButton(Painter& p, int frame, int frames);
void drawModeSwitch(Painter& p, int frame, int frames);
void drawArrowLeft(Painter& p, int frame, int frames);
void drawArrowRight(Painter& p, int frame, int frames);
void drawArrowDown(Painter& p, int frame, int frames);

}  // namespace Artwork
