#pragma once
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

// Points HOME and the XDG folders at a fresh temporary tree for one test.
class TempHome {
public:
    TempHome() {
        root = std::filesystem::temp_directory_path() / ("zonfra-home-" + std::to_string(getpid()) + "-" +
                                                         std::to_string(counter++));
        std::filesystem::create_directories(root / "machine");
        setenv("HOME", root.c_str(), 1);
        setenv("XDG_CONFIG_HOME", (root / "config").c_str(), 1);
        setenv("XDG_CONFIG_DIRS", (root / "machine").string().append(":/etc/xdg").c_str(), 1);
        setenv("XDG_DATA_HOME", (root / "data").c_str(), 1);
        unsetenv("XDG_DESKTOP_DIR");
    }
    ~TempHome() { std::filesystem::remove_all(root); }
    std::filesystem::path root;

private:
    static inline int counter = 0;
};
