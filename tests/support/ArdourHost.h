#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include "AudioFile.h"

// Ardour 7 as a real host for the adapters' tests: its plug-in scanners and a headless session
// (ardour7-lua with tests/support/render_in_ardour.lua) that puts the plug-in on a track, sets one
// parameter through the host and exports the result.
// Skips the test where Ardour (`present` says whether the tool needed is there) cannot host the plug-in.
#ifdef ZONFRA_SANITIZED
#define ZONFRA_SKIP_WITHOUT_ARDOUR(present) GTEST_SKIP() << "a sanitized plug-in cannot load into Ardour"
#else
#define ZONFRA_SKIP_WITHOUT_ARDOUR(present) if (!(present)) GTEST_SKIP() << "Ardour is not installed"
#endif

namespace TestSupport::Ardour {

bool installed();
// Runs the command with its error output, collecting both; the shell's status.
int run(const std::string& command, std::string& output);

struct Session {
    std::string environment;  // HOME and the plug-in paths, as "NAME='value' ..."
    std::string pluginType;   // "VST3" or "LXVST"
    std::filesystem::path folder;
};
// Renders noise through the plug-in with parameter 1 at `value` (as the host takes it) into
// `exported`. Ardour's tool now and then dies of a signal on its own, with its own plug-ins too;
// a crash of ours would repeat, so another try tells the two apart. Empty on success, else the log.
std::string render(const Session& session, const std::string& name, const std::string& value, StereoAudio& exported);

// Noise rendered open keeps its highs; the same at a 500 Hz low-pass loses them but is not silent.
void expectLowPassedNoise(const StereoAudio& open, const StereoAudio& lowPassed);

}  // namespace TestSupport::Ardour
