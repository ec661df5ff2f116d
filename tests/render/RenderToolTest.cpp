#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "AudioFile.h"

namespace fs = std::filesystem;

namespace {
struct ProcessResult {
    int status;
    std::string output;
};

ProcessResult runRender(const std::string& arguments) {
    const std::string command = std::string("'") + ZONFRA_RENDER_PATH + "' " + arguments + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    ProcessResult run{-1, ""};
    if (!pipe) return run;
    char buffer[4096];
    while (size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) run.output.append(buffer, n);
    const int status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

class RenderTool : public ::testing::Test {
protected:
    void SetUp() override {
        folder = fs::temp_directory_path() / ("zonfra-render-test-" + std::to_string(getpid()));
        fs::create_directories(folder);
    }
    void TearDown() override { fs::remove_all(folder); }
    std::string path(const std::string& name) const { return (folder / name).string(); }

    // An impulse at `at` in a file of `frames`, written through libsndfile.
    std::string impulseFile(const std::string& name, int rate, size_t frames, size_t at) {
        StereoAudio audio;
        audio.sampleRate = rate;
        audio.left.assign(frames, 0.0f);
        audio.right.assign(frames, 0.0f);
        audio.left[at] = 0.5f;
        audio.right[at] = 0.25f;
        EXPECT_EQ(writeAudio(path(name), audio), "");
        return path(name);
    }
    fs::path folder;
};

size_t peakIndex(const std::vector<float>& samples) {
    size_t peak = 0;
    for (size_t i = 0; i < samples.size(); ++i)
        if (std::fabs(samples[i]) > std::fabs(samples[peak])) peak = i;
    return peak;
}
}  // namespace

TEST_F(RenderTool, OutputIsAlignedWithTheInputAtEveryRate) {
    for (int rate : {44100, 48000, 96000}) {
        const std::string in = impulseFile("in.wav", rate, static_cast<size_t>(rate / 2), 5000);
        const std::string out = path("out.wav");
        // Bypassed, the plug-in is a pure delay: the impulse must land on its own sample.
        ProcessResult run = runRender("'" + in + "' '" + out + "' --tail 0.25 --set kBypass=1");
        ASSERT_EQ(run.status, 0) << run.output;
        StereoAudio result;
        ASSERT_EQ(readAudio(out, result), "");
        EXPECT_EQ(result.sampleRate, rate);
        EXPECT_EQ(result.left.size(), static_cast<size_t>(rate / 2 + rate / 4));
        EXPECT_EQ(peakIndex(result.left), 5000u) << rate;
        EXPECT_EQ(result.left[5000], 0.5f) << rate;
        EXPECT_EQ(result.right[5000], 0.25f) << rate;
        // Through the open filters it stays within their few samples of group delay.
        run = runRender("'" + in + "' '" + out + "' --tail 0.25");
        ASSERT_EQ(run.status, 0) << run.output;
        ASSERT_EQ(readAudio(out, result), "");
        EXPECT_NEAR(static_cast<double>(peakIndex(result.left)), 5000.0, 3.0) << rate;
    }
}

TEST_F(RenderTool, MonoInputFeedsBothChannels) {
    const std::string in = path("mono.wav");
    ASSERT_EQ(std::system(("sox -n -r 44100 -c 1 '" + in + "' synth 0.1 sine 440").c_str()), 0);
    const ProcessResult run = runRender("'" + in + "' '" + path("out.wav") + "' --tail 0");
    ASSERT_EQ(run.status, 0) << run.output;
    StereoAudio result;
    ASSERT_EQ(readAudio(path("out.wav"), result), "");
    for (size_t i = 0; i < result.left.size(); ++i) ASSERT_EQ(result.left[i], result.right[i]) << i;
}

TEST_F(RenderTool, SettingsByValueAndByText) {
    const std::string in = impulseFile("in.wav", 44100, 22050, 100);
    ASSERT_EQ(runRender("'" + in + "' '" + path("a.wav") + "' --tail 0 --set INPUTGAIN=0.5").status, 0);
    ASSERT_EQ(runRender("'" + in + "' '" + path("b.wav") + "' --tail 0 --set 'INPUTGAIN=-6.0206 dB'").status, 0);
    ASSERT_EQ(runRender("'" + in + "' '" + path("c.wav") + "' --tail 0 --set FILTERMODE=Notch --set LFO Shape=Saw")
                  .status,
              2);  // the shell split "LFO Shape=Saw": not a KEY=VALUE pair
    ASSERT_EQ(runRender("'" + in + "' '" + path("c.wav") + "' --tail 0 --set FILTERMODE=Notch --set 'LFO Shape=Saw'")
                  .status,
              0);
    StereoAudio a, b;
    ASSERT_EQ(readAudio(path("a.wav"), a), "");
    ASSERT_EQ(readAudio(path("b.wav"), b), "");
    EXPECT_NEAR(a.left[100], 0.25f, 0.01);
    EXPECT_NEAR(b.left[100], a.left[100], 1e-5);
}

TEST_F(RenderTool, ErrorsExitNonZeroAndLeaveNoOutput) {
    const std::string in = impulseFile("in.wav", 44100, 4410, 10);
    const std::string out = path("never.wav");
    const char* cases[] = {
        "'/nonexistent/file.wav' '%s'",
        "'%IN' '%s' --set NOSUCHKEY=1",
        "'%IN' '%s' --set LOWPASSFREQ=banana",
        "'%IN' '%s' --set LOWPASSFREQ=99999",
        "'%IN' '%s' --preset /nonexistent/preset.fxp",
        "'%IN' '%s' --preset 'No Such Preset'",
        "'%IN' '%s' --preset '%IN.fxp'",  // a file that is no preset
        "'%IN' '%s' --tempo -5",
        "'%IN' '%s' --block 0",
        "'%IN'",
        "'%IN' '%s' --frobnicate",
    };
    fs::copy_file(in, in + ".fxp");
    for (const char* pattern : cases) {
        std::string arguments = pattern;
        for (size_t inAt = arguments.find("%IN"); inAt != std::string::npos; inAt = arguments.find("%IN"))
            arguments.replace(inAt, 3, in);
        const size_t outAt = arguments.find("%s");
        if (outAt != std::string::npos) arguments.replace(outAt, 2, out);
        const ProcessResult run = runRender(arguments);
        EXPECT_NE(run.status, 0) << arguments;
        EXPECT_FALSE(run.output.empty()) << arguments;
        EXPECT_FALSE(fs::exists(out)) << arguments;
        EXPECT_FALSE(fs::exists(out + ".partial")) << arguments;
    }
}

TEST_F(RenderTool, MoreThanTwoChannelsIsAClearError) {
    const std::string in = path("quad.wav");
    ASSERT_EQ(std::system(("sox -n -r 44100 -c 4 '" + in + "' synth 0.1 sine 440").c_str()), 0);
    const ProcessResult run = runRender("'" + in + "' '" + path("out.wav") + "'");
    EXPECT_NE(run.status, 0);
    EXPECT_NE(run.output.find("4 channels"), std::string::npos) << run.output;
    EXPECT_FALSE(fs::exists(path("out.wav")));
}

TEST_F(RenderTool, ListParamsShowsEveryRow) {
    const ProcessResult run = runRender("--list-params");
    ASSERT_EQ(run.status, 0) << run.output;
    size_t lines = 0;
    for (char c : run.output) lines += c == '\n';
    EXPECT_EQ(lines, 1u + 49u);  // a header and 49 rows
    EXPECT_NE(run.output.find("FilterInteria"), std::string::npos);
    EXPECT_NE(run.output.find("Bandpass"), std::string::npos);
}

TEST_F(RenderTool, FactoryPresetsByNameAndPresetFiles) {
    const ProcessResult list = runRender("--list-presets");
    ASSERT_EQ(list.status, 0) << list.output;
    size_t lines = 0;
    for (char c : list.output) lines += c == '\n';
    EXPECT_EQ(lines, 133u);
    EXPECT_NE(list.output.find("Init Preset\n"), std::string::npos);
    EXPECT_NE(list.output.find("Phaser/Classic Phase\n"), std::string::npos);

    ASSERT_EQ(std::system(("sox -n -r 44100 -c 2 '" + path("noise.wav") + "' synth 1 whitenoise vol 0.3").c_str()), 0);
    const std::string in = path("noise.wav");
    ASSERT_EQ(runRender("'" + in + "' '" + path("plain.wav") + "' --tail 0").status, 0);
    ASSERT_EQ(runRender("'" + in + "' '" + path("init.wav") + "' --tail 0 --preset 'Init Preset'").status, 0);
    ASSERT_EQ(runRender("'" + in + "' '" + path("bass.wav") + "' --tail 0 --preset 'Filter/Bass Only'").status, 0);
    const ProcessResult shortName = runRender("'" + in + "' '" + path("short.wav") + "' --tail 0 --preset 'Bass Only'");
    ASSERT_EQ(shortName.status, 0) << shortName.output;
    // --set goes on top of the preset.
    ASSERT_EQ(runRender("'" + in + "' '" + path("open.wav") + "' --tail 0 --preset 'Bass Only' --set LOWPASSFREQ=22050")
                  .status,
              0);
    StereoAudio plain, init, bass, shortBass, open;
    ASSERT_EQ(readAudio(path("plain.wav"), plain), "");
    ASSERT_EQ(readAudio(path("init.wav"), init), "");
    ASSERT_EQ(readAudio(path("bass.wav"), bass), "");
    ASSERT_EQ(readAudio(path("short.wav"), shortBass), "");
    ASSERT_EQ(readAudio(path("open.wav"), open), "");
    EXPECT_EQ(init.left, plain.left) << "a new instance is the init preset";
    EXPECT_EQ(bass.left, shortBass.left);
    auto energy = [](const std::vector<float>& x) {
        double e = 0;
        for (float v : x) e += double(v) * v;
        return e;
    };
    EXPECT_LT(energy(bass.left), 0.05 * energy(plain.left)) << "180 Hz low-pass on white noise";
    EXPECT_GT(energy(open.left), 0.5 * energy(plain.left));
}

TEST_F(RenderTool, FlacAndAiffInAndOutEvenBeyondFullScale) {
    const std::string in = impulseFile("in.wav", 48000, 9600, 100);
    for (const char* extension : {"flac", "aiff"}) {
        const std::string out = path(std::string("out.") + extension);
        // Output gain 2 on an impulse of 0.5 and a louder one: the integer format must clip, not fail.
        const ProcessResult run = runRender("'" + in + "' '" + out + "' --tail 0 --set OUTPUTGAIN=2 --set INPUTGAIN=2");
        ASSERT_EQ(run.status, 0) << extension << ": " << run.output;
        StereoAudio back;
        ASSERT_EQ(readAudio(out, back), "") << extension;
        EXPECT_EQ(back.sampleRate, 48000);
        EXPECT_EQ(back.left.size(), 9600u);
        EXPECT_EQ(peakIndex(back.left), 100u) << extension;
        EXPECT_GE(std::fabs(back.left[100]), 0.99f) << extension;

        // And the file reads back in as input.
        ASSERT_EQ(runRender("'" + out + "' '" + path("again.wav") + "' --tail 0").status, 0) << extension;
    }
}
