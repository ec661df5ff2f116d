#pragma once
#include <string>

namespace Core {

// Walks the entries of one folder. Folder names come back with a leading "/"; an entry the flags
// don't ask for comes back as an empty name, which callers skip.
class CFileSearch {
public:
    static constexpr int kHidden = 1;  // report entries starting with "."
    static constexpr int kSystem = 2;  // report entries that are neither files nor folders

    CFileSearch(const std::string& directory, int searchFlags);
    ~CFileSearch();
    CFileSearch(const CFileSearch&) = delete;
    CFileSearch& operator=(const CFileSearch&) = delete;

    // 0 at the end, else 1 with `name` set.
    int next(std::string& name);

private:
    std::string folder;
    int flags;
    void* handle = nullptr;  // DIR*
};

}  // namespace Core
