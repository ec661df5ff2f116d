#pragma once
// A picture of the whole panel made from the drawn images, with the controls at sample values:
// for judging the artwork together, before the editor exists.
#include <filesystem>

namespace Artwork {

// Reads the images from `folder` (at the given scale) and writes the picture to `file`.
bool writePreview(const std::filesystem::path& folder, int scale, const std::filesystem::path& file);

}  // namespace Artwork
