#pragma once
#include <cstdint>
#include <string>

// Splitting and testing paths. The name helpers accept "/" and "\" alike; a drive prefix is
// skipped and a ":" ends the name. Their results live in a static buffer per function, so the
// next call overwrites them: copy what you keep.
namespace Core {

bool fileExists(const std::string& path);
// 0 for a missing file.
uint64_t fileSize(const std::string& path);

// "C:/a/b.c.d": title "b.c", extension ".d", name "b.c.d".
const char* fileTitle(const char* path);
const char* fileExtension(const char* path);
const char* fileName(const char* path);

// Mode 1 turns "/" into "\", mode 2 "\" into "/". A null `out` uses a static buffer of 260 bytes.
const char* convertSeparators(int mode, const char* path, char* out = nullptr);

// False for the characters a file name can't hold here or on other systems.
bool isLegalFileNameChar(char c);

}  // namespace Core
