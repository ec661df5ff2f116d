#include <gtest/gtest.h>

#include "support/ArchiveFiles.h"
#include "support/Samples.h"

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
        const std::vector<TestSupport::ArchiveFile> files = TestSupport::archiveFiles(archive.image);
        ASSERT_EQ(files.size(), archive.files.size());
        for (size_t i = 0; i < files.size(); ++i) {
            EXPECT_EQ(files[i].name, archive.files[i].first);
            EXPECT_EQ(files[i].bytes, TestSupport::fileBytes(fonts + archive.files[i].second));
        }
    }
}
