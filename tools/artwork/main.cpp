// Draws the editor's images into a folder, each at 100 % under its archive name and at 200 % under
// the same name with "@2x" before ".png". The same build draws the same bytes.
//   zonfra-artwork FOLDER [--preview FILE]
// --preview also writes a picture of the whole panel with the controls at sample values, at both
// scales (FILE and FILE with "@2x").
#include <cstdio>
#include <filesystem>
#include <string>

#include "lib/drawing/CBitmap.h"
#include "tools/artwork/Bitmaps.h"
#include "tools/artwork/Preview.h"

namespace {

std::string scaledName(const std::string& name, int scale) {
    return scale == 1 ? name : name.substr(0, name.size() - 4) + "@" + std::to_string(scale) + "x.png";
}

bool render(const Artwork::BitmapRecipe& recipe, int scale, const std::filesystem::path& folder) {
    auto* bitmap = new Vinta::CBitmap(recipe.width * scale, recipe.frameHeight * recipe.frames * scale);
    Artwork::Painter painter(*bitmap, scale);
    for (int frame = 0; frame < recipe.frames; ++frame) {
        painter.setOrigin(0, frame * recipe.frameHeight);
        recipe.drawFrame(painter, frame, recipe.frames);
    }
    const std::string path = (folder / scaledName(recipe.name, scale)).string();
    const bool saved = bitmap->savePNG(path.c_str());
    bitmap->forget();
    if (!saved)
        std::fprintf(stderr, "zonfra-artwork: can't write %s\n", path.c_str());
    return saved;
}

}  // namespace

int main(int argc, char** argv) {
    const bool preview = argc == 4 && std::string(argv[2]) == "--preview";
    if (argc != 2 && !preview) {
        std::fprintf(stderr, "usage: zonfra-artwork FOLDER [--preview FILE]\n");
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    int written = 0;
    for (const Artwork::BitmapRecipe& recipe : Artwork::bitmapRecipes())
        for (int scale : {1, 2}) {
            if (!render(recipe, scale, folder))
                return 1;
            ++written;
        }
    for (int scale : {1, 2})
        if (preview && !Artwork::writePreview(folder, scale, scaledName(argv[3], scale))) {
            std::fprintf(stderr, "zonfra-artwork: can't write the preview\n");
            return 1;
        }
    std::printf("zonfra-artwork: %d images into %s\n", written, folder.string().c_str());
    return 0;
}
