#pragma once
#include <cstdint>
#include <string>

// What the FXP and FXB chunk files share: a big-endian header of fixed length, a magic pair and
// the plug-in's id, then the chunk.
namespace Ondra::VstPresetFiles {

constexpr size_t kProgramHeader = 60;  // FXP: chunk size at 56
constexpr size_t kBankHeader = 160;    // FXB: chunk size at 156

// "CcnK", `fxMagic`, the id, version 1, fxVersion 1, no programs, the program name (FXP only)
// and the chunk size; `header` holds `headerSize` bytes.
void writeHeader(uint8_t* header, size_t headerSize, const char* fxMagic, uint32_t fxID, const char* programName,
                 int chunkSize);

// Reads `headerSize` bytes and the chunk when "CcnK", `fxMagic` and the id agree; the reader
// looks at nothing else. `firstRead` bytes are taken before the checks, as the two forms do.
bool readChunk(const std::string& path, size_t headerSize, size_t firstRead, const char* fxMagic, uint32_t fxID,
               void* (*allocate)(size_t), void** data, int* size);

// Header, then the chunk, into a new file; nothing happens when it can't be opened.
void writeWrapped(const std::string& path, const uint8_t* header, size_t headerSize, const void* data, int size);

// File name of the path without folders and extension, cut to 27 characters.
std::string programNameOf(const std::string& path);

}  // namespace Ondra::VstPresetFiles
