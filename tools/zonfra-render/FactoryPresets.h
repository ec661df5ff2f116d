#pragma once
#include <cstdint>
#include <string>
#include <vector>

// The factory presets of the main archive (compiled into this tool from the same build as the
// plug-in) and preset files on disk.

// "Init Preset" and "Folder/Name" for every factory preset, in archive order.
std::vector<std::string> factoryPresetNames();

// The chunk of a preset given as "Folder/Name", a unique "Name", or a path to an .fxp file.
// Empty on success, else what is wrong.
std::string loadPresetChunk(const std::string& preset, std::vector<uint8_t>& chunk);
