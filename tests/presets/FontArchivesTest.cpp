#include <gtest/gtest.h>

#include <fstream>
#include <vector>

#include "CORE/files/ModuleResources.h"
#include "framework/resources/ResourceAccess.h"

namespace {
std::vector<uint8_t> fileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), {});
}
}  // namespace

TEST(FontArchives, HoldTheFacesUnderTheirNames) {
    const std::string fonts = ZONFRA_FONT_FOLDER;
    const struct {
        const char* image;
        std::vector<std::pair<std::string, std::string>> files;
    } archives[] = {
        {"fonts-arial",
         {{"arial.ttf", "/liberation/LiberationSans-Regular.ttf"}, {"arialbd.ttf", "/liberation/LiberationSans-Bold.ttf"}}},
        {"fonts-roboto",
         {{"Roboto-Bold.ttf", "/roboto/unhinted/RobotoTTF/Roboto-Bold.ttf"},
          {"Roboto-Regular.ttf", "/roboto/unhinted/RobotoTTF/Roboto-Regular.ttf"}}},
        {"fonts-entypo", {{"entypo.ttf", "/fonts-entypo/entypo.ttf"}}},
    };
    for (const auto& archive : archives) {
        SCOPED_TRACE(archive.image);
        const Core::ModuleResource* image = Core::findModuleResource(archive.image);
        ASSERT_NE(image, nullptr);
        ASSERT_TRUE(Ondra::openResources(image->data, image->size));
        ASSERT_EQ(Ondra::getResourceCount(), static_cast<int>(archive.files.size()));
        for (size_t i = 0; i < archive.files.size(); ++i) {
            EXPECT_EQ(Ondra::getResourceName(static_cast<int>(i)), archive.files[i].first);
            int size = 0;
            void* block = Ondra::getResource(archive.files[i].first.c_str(), &size);
            ASSERT_NE(block, nullptr);
            const std::vector<uint8_t> expected = fileBytes(fonts + archive.files[i].second);
            EXPECT_EQ(std::vector<uint8_t>(static_cast<uint8_t*>(block), static_cast<uint8_t*>(block) + size), expected);
            Ondra::freeResource(block);
        }
        Ondra::closeResources();
    }
}
