// Packs files into a resource archive image, by default in the C text form that the plug-in
// compiles in.
//   zonfra-resource-pack OUT [--binary] [--dir FOLDER] [NAME=PATH ...]
// --dir adds every file below FOLDER under its relative path; NAME=PATH adds one file as NAME.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "framework/resources/CResourceArchive.h"

namespace fs = std::filesystem;

namespace {
int fail(const std::string& message) {
    std::fprintf(stderr, "zonfra-resource-pack: %s\n", message.c_str());
    return 1;
}
}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: zonfra-resource-pack OUT [--binary] [--dir FOLDER] [NAME=PATH ...]\n");
        return 2;
    }
    Ondra::CResourceArchive archive;
    bool asText = true;
    int count = 0;
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--binary") {
            asText = false;
        } else if (arg == "--dir" && i + 1 < argc) {
            const fs::path root = argv[++i];
            std::vector<std::string> names;
            std::error_code error;
            for (fs::recursive_directory_iterator it(root, error), end; !error && it != end; it.increment(error))
                if (it->is_regular_file()) names.push_back(fs::relative(it->path(), root).generic_string());
            if (error) return fail("can't read " + root.string());
            std::sort(names.begin(), names.end());  // the same image from the same files
            for (const std::string& name : names) {
                if (name.size() > 255) return fail("name too long: " + name);
                if (!archive.add((root / name).string(), name.c_str())) return fail("can't read " + name);
                ++count;
            }
        } else {
            const size_t equals = arg.find('=');
            if (equals == std::string::npos || equals == 0) return fail("expected NAME=PATH, got " + arg);
            const std::string name = arg.substr(0, equals);
            if (!archive.add(arg.substr(equals + 1), name.c_str())) return fail("can't read " + arg.substr(equals + 1));
            ++count;
        }
    }
    if (!archive.save(argv[1], asText)) return fail(std::string("can't write ") + argv[1]);
    std::printf("zonfra-resource-pack: %d files into %s\n", count, argv[1]);
    return 0;
}
