#pragma once
// One file copied out of an archive image compiled into the library (fonts, bitmaps).
#include <cstdint>
#include <vector>

namespace Vinta {

// The main archive, which holds the editor's bitmaps.
inline constexpr const char* kMainArchive = "main";

// Empty when the image or the file is missing. Opens and closes the process's one archive slot, so
// window thread or start-up only.
std::vector<uint8_t> readArchiveFile(const char* image, const char* name);

}  // namespace Vinta
