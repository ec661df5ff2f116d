#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "CORE/files/Paths.h"
#include "TempHome.h"

using namespace Core;

TEST(Paths, NormalisePath) {
    EXPECT_EQ(normalisePath("a\\b//c/./d/../e"), "a/b/c/e");
    EXPECT_EQ(normalisePath("../x/./y"), "../x/y");
    EXPECT_EQ(normalisePath("/a/b/../../c"), "/c");
    EXPECT_EQ(addTrailingSlash(""), "/");
    EXPECT_EQ(addTrailingSlash("a\\"), "a\\");
    EXPECT_EQ(addTrailingSlash("a"), "a/");
}

TEST(Paths, SpecialFoldersFollowTheXdgFolders) {
    TempHome home;
    EXPECT_EQ(getSpecialFolder(0), (home.root / "Desktop").string() + "/");
    EXPECT_EQ(getSpecialFolder(2, "Morvandel"), (home.root / "data").string() + "/Morvandel");
    EXPECT_EQ(getSpecialFolder(3), getSpecialFolder(2));
    EXPECT_EQ(getSpecialFolder(9), "");
    EXPECT_FALSE(getSpecialFolder(1).empty());
    EXPECT_FALSE(getModulePath().empty());

    // A desktop that xdg-user-dirs moved.
    std::filesystem::create_directories(home.root / "config");
    std::ofstream(home.root / "config" / "user-dirs.dirs") << "# written by xdg-user-dirs-update\n"
                                                            << "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n";
    EXPECT_EQ(getSpecialFolder(0), (home.root / "Schreibtisch").string() + "/");
}

TEST(Paths, CreateDirectoryPath) {
    TempHome home;
    const std::string deep = (home.root / "one\\two//three").string();
    EXPECT_TRUE(createDirectoryPath(deep));
    EXPECT_TRUE(std::filesystem::is_directory(home.root / "one/two/three"));
    EXPECT_TRUE(createDirectoryPath(deep));  // already there
    std::ofstream(home.root / "file") << "x";
    EXPECT_FALSE(createDirectoryPath((home.root / "file/sub").string()));
}
