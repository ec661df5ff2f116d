#include "CORE/files/CFileSearch.h"

#include <dirent.h>
#include <sys/stat.h>

namespace Core {

CFileSearch::CFileSearch(const std::string& directory, int searchFlags) : folder(directory), flags(searchFlags) {
    while (folder.size() > 1 && (folder.back() == '/' || folder.back() == '\\')) folder.pop_back();
    handle = opendir(folder.c_str());
}

CFileSearch::~CFileSearch() {
    if (handle) closedir(static_cast<DIR*>(handle));
}

int CFileSearch::next(std::string& name) {
    name.clear();
    if (!handle) return 0;
    dirent* entry = readdir(static_cast<DIR*>(handle));
    if (!entry) return 0;
    const std::string entryName = entry->d_name;
    if (entryName == "." || entryName == "..") return 1;
    if (entryName[0] == '.' && !(flags & kHidden)) return 1;

    struct stat info {};
    if (stat((folder + "/" + entryName).c_str(), &info) != 0) return 1;
    if (S_ISDIR(info.st_mode)) {
        name = "/" + entryName;
    } else if (S_ISREG(info.st_mode) || (flags & kSystem)) {
        name = entryName;
    }
    return 1;
}

}  // namespace Core
