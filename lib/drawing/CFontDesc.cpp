#include "lib/drawing/CFontDesc.h"

#include <cstring>

#include "lib/drawing/ArchiveFile.h"

namespace Vinta {

namespace {

void takeFile(const char* archive, CFontDesc::Face& face) {
    std::vector<uint8_t> bytes = readArchiveFile(archive, face.name.c_str());
    if (bytes.empty())
        return;
    auto* copy = new uint8_t[bytes.size()];
    std::memcpy(copy, bytes.data(), bytes.size());
    face.data = copy;
    face.size = static_cast<uint32_t>(bytes.size());
    face.ownsData = true;
}

void release(CFontDesc::Face& face) {
    if (face.ownsData)
        delete[] face.data;
    face.data = nullptr;
    face.size = 0;
    face.ownsData = false;
}

}  // namespace

CFontDesc::CFontDesc(const char* archiveName, const char* regularName, const char* boldName, int32_t fontWeight,
                     double fontSize)
    : size(fontSize), weight(fontWeight), archive(archiveName != nullptr ? archiveName : "") {
    regular.name = regularName != nullptr ? regularName : "";
    bold.name = boldName != nullptr ? boldName : "";
}

CFontDesc::CFontDesc(const Face& regularFace, const Face& boldFace, int32_t fontWeight, double fontSize)
    : size(fontSize), regular(regularFace), bold(boldFace), weight(fontWeight), loaded(true) {
    regular.ownsData = bold.ownsData = false;
}

CFontDesc::~CFontDesc() {
    release(regular);
    release(bold);
}

void CFontDesc::loadFaces() const {
    if (loaded)
        return;
    loaded = true;
    takeFile(archive.c_str(), regular);
    takeFile(archive.c_str(), bold);
}

const CFontDesc::Face& CFontDesc::face() const {
    loadFaces();
    return style == 1 ? bold : regular;
}

const std::string& CFontDesc::registrationName() const {
    return style == 0 ? bold.name : regular.name;
}

bool CFontDesc::hasData() const {
    loadFaces();
    return regular.data != nullptr || bold.data != nullptr;
}

CFontDesc* const kSystemFont = new CFontDesc("fonts-arial", "arial.ttf", "arialbd.ttf", 1);
CFontDesc* const kBoldFont = new CFontDesc("fonts-arial", "arial.ttf", "arialbd.ttf", 3);
CFontDesc* const kNormalFont = new CFontDesc("fonts-roboto", "Roboto-Regular.ttf", "Roboto-Bold.ttf", 2);

namespace {
// The global fonts live as long as the library: a plug-in library that a host unloads gives them
// back, and so does every program at its end.
struct GlobalFontsRelease {
    ~GlobalFontsRelease() {
        for (CFontDesc* font : {kSystemFont, kBoldFont, kNormalFont}) font->forget();
    }
} globalFontsRelease;
}  // namespace

}  // namespace Vinta
