#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "AudioFile.h"
#include "FactoryPresets.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "framework/presets/VstPresetFiles.h"

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
    // Each refusal: a non-zero exit, its message, and no output left behind.
    void expectRefused(const std::string& arguments, const std::string& message, const std::string& out) {
        const ProcessResult run = runRender(arguments);
        EXPECT_NE(run.status, 0) << arguments;
        EXPECT_NE(run.output.find("zonfra-render: " + message + "\n"), std::string::npos) << arguments << "\n" << run.output;
        EXPECT_FALSE(fs::exists(out)) << arguments;
        EXPECT_FALSE(fs::exists(out + ".partial")) << arguments;
    }
    fs::path folder;
};

void overwrite(const std::string& file, size_t at, const std::string& bytes) {
    std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
    stream.seekp(static_cast<std::streamoff>(at));
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string contents(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

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
    fs::copy_file(in, in + ".fxp");
    std::ofstream(in + ".txt") << "not audio";
    const std::pair<const char*, const char*> cases[] = {
        {"'/nonexistent/file.wav' '%OUT'", "cannot read '/nonexistent/file.wav': No such file or directory"},
        {"'%IN.txt' '%OUT'", "cannot read '%IN.txt': not a WAV, FLAC or AIFF file the renderer can read (libsndfile: "
                             "Format not recognised.)"},
        {"'%IN' '%OUT' --set NOSUCHKEY=1", "unknown parameter key 'NOSUCHKEY' (see --list-params)"},
        {"'%IN' '%OUT' --set LOWPASSFREQ=banana",
         "bad value for LOWPASSFREQ: 'banana' is neither a number nor a text of this parameter"},
        {"'%IN' '%OUT' --set LOWPASSFREQ=99999", "bad value for LOWPASSFREQ: '99999' lies outside 40.000000 .. 22050.000000"},
        {"'%IN' '%OUT' --preset /nonexistent/preset.fxp", "no preset file '/nonexistent/preset.fxp'"},
        {"'%IN' '%OUT' --preset 'No Such Preset'", "unknown preset 'No Such Preset' (see --list-presets)"},
        {"'%IN' '%OUT' --preset '%IN.fxp'", "preset file '%IN.fxp' is not an FXP preset file"},
        {"'%IN' '%OUT' --tempo -5", "--tempo must lie above 0 and up to 999 BPM"},
        {"'%IN' '%OUT' --block 0", "--block must be a whole number from 1 to 65536"},
        {"'%IN'", "expected an input and an output file"},
        {"'%IN' '%OUT' --frobnicate", "unknown option --frobnicate"},
    };
    auto fill = [&](std::string text) {
        for (size_t at = text.find("%IN"); at != std::string::npos; at = text.find("%IN")) text.replace(at, 3, in);
        for (size_t at = text.find("%OUT"); at != std::string::npos; at = text.find("%OUT")) text.replace(at, 4, out);
        return text;
    };
    for (const auto& [arguments, message] : cases) expectRefused(fill(arguments), fill(message), out);
}

TEST_F(RenderTool, DamagedPresetsAreRefused) {
    std::vector<uint8_t> chunk;
    ASSERT_EQ(loadPresetChunk("Filter/Bass Only", chunk), "");
    std::string fxp(Ondra::VstPresetFiles::kProgramHeader, 0);
    Ondra::VstPresetFiles::writeHeader(reinterpret_cast<uint8_t*>(fxp.data()), fxp.size(), "FPCh",
                                       Ondra::fourCharacterId("Vzon"), "Bass Only", static_cast<int>(chunk.size()));
    fxp.append(chunk.begin(), chunk.end());
    const std::string in = impulseFile("in.wav", 44100, 4410, 10), preset = path("p.fxp"), out = path("out.wav");
    std::ofstream(preset, std::ios::binary) << fxp;
    ASSERT_EQ(runRender("'" + in + "' '" + out + "' --preset '" + preset + "'").status, 0) << "intact, it loads";
    fs::remove(out);

    const std::string damaged = "preset '" + preset + "' could not be loaded: its state block is damaged";
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[&] { overwrite(preset, fxp.size() - chunk.size() / 2, {static_cast<char>(fxp[fxp.size() - chunk.size() / 2] ^ 4)}); },
         damaged},  // one byte of the compressed body
        {[&] { overwrite(preset, 60, "MMK-zonfrX"); }, damaged},
        {[&] { overwrite(preset, 0, "CcnX"); }, "preset file '" + preset + "' is not an FXP preset file"},
        {[&] { overwrite(preset, 56, std::string(4, 0)); },
         "preset file '" + preset + "' is damaged: its header gives 0 bytes of state, the file holds " +
             std::to_string(chunk.size())},
        {nullptr, "--preset needs a value, not an empty text"},
    };
    for (const auto& [damage, message] : cases) {
        std::ofstream(preset, std::ios::binary) << fxp;
        if (damage) damage();
        expectRefused("'" + in + "' '" + out + "' --preset '" + (damage ? preset : "") + "'", message, out);
    }
}

TEST_F(RenderTool, SampleRatesOutsideTheSupportedRangeAreRefused) {
    EXPECT_NE(runRender("--help").output.find("8 kHz to 768 kHz (8000..768000 Hz inclusive)"), std::string::npos);
    const std::string out = path("out.wav");
    for (uint32_t rate : {0u, 7999u, 8000u, 768000u, 768001u, 6600000u, 2000000000u}) {
        // The rate field of the header alone is changed, as a damaged or hostile file would have it.
        const std::string in = impulseFile("in.wav", 44100, 4410, 10);
        overwrite(in, 24, {static_cast<char>(rate), static_cast<char>(rate >> 8), static_cast<char>(rate >> 16),
                           static_cast<char>(rate >> 24)});
        // Cutoffs that lie inside the band at both ends of the range.
        const std::string arguments = "'" + in + "' '" + out + "' --tail 0.1 --set LOWPASSFREQ=3000 --set HIGHPASSFREQ=20";
        if (rate == 8000 || rate == 768000) {
            const ProcessResult run = runRender(arguments);
            ASSERT_EQ(run.status, 0) << rate << run.output;
            StereoAudio result;
            ASSERT_EQ(readAudio(out, result), "");
            EXPECT_EQ(result.sampleRate, static_cast<int>(rate));
            fs::remove(out);
        } else {
            expectRefused(arguments,
                          rate == 0 ? "cannot read '" + in + "': not a WAV, FLAC or AIFF file the renderer can read "
                                      "(libsndfile: Internal error : SF_INFO struct incomplete.)"
                                    : "'" + in + "' has a sample rate of " + std::to_string(rate) +
                                          " Hz; the renderer takes 8000 to 768000 Hz",
                          out);
        }
    }
}

TEST_F(RenderTool, TheInputIsNeverOverwritten) {
    const std::string in = impulseFile("in.wav", 44100, 4410, 10), original = contents(in);
    fs::create_directory(folder / "sub");
    fs::create_symlink(in, path("link.wav"));
    fs::create_hard_link(in, path("hard.wav"));
    const std::string partial = path("x.wav.partial");  // the name "x.wav" is written under
    fs::copy_file(in, partial);
    const std::pair<std::string, std::string> cases[] = {
        {in, in}, {in, path("sub/../in.wav")}, {in, path("link.wav")}, {in, path("hard.wav")}, {partial, path("x.wav")},
    };
    for (const auto& [input, output] : cases) {
        const ProcessResult run = runRender("'" + input + "' '" + output + "' --tail 0");
        EXPECT_NE(run.status, 0) << output;
        EXPECT_EQ(run.output, "zonfra-render: writing '" + output + "' would overwrite the input '" + input +
                                  "'; give another output path\n");
        EXPECT_TRUE(contents(input) == original) << output;
    }
}

TEST_F(RenderTool, FilesCutShortRenderWhatIsThereAndWarn) {
    StereoAudio noise;
    noise.left.resize(44100);
    for (size_t i = 0; i < noise.left.size(); ++i) noise.left[i] = static_cast<float>((i * 7919) % 1000) / 2000.0f - 0.25f;
    noise.right = noise.left;
    for (const std::string extension : {"wav", "flac", "aiff"}) {
        const std::string whole = path("whole." + extension), cut = path("cut." + extension), out = path("out.wav");
        ASSERT_EQ(writeAudio(whole, noise), "");
        EXPECT_EQ(runRender("'" + whole + "' '" + out + "' --tail 0").output, "") << "no warning when whole";
        fs::copy_file(whole, cut);
        fs::resize_file(cut, fs::file_size(whole) / 2);
        StereoAudio part, result;
        ASSERT_EQ(readAudio(cut, part), "");
        ASSERT_GT(part.left.size(), 0u);
        ASSERT_LT(part.left.size(), noise.left.size());
        const ProcessResult run = runRender("'" + cut + "' '" + out + "' --tail 0");
        ASSERT_EQ(run.status, 0) << run.output;
        EXPECT_EQ(run.output, "zonfra-render: warning: '" + cut + "' ends after " + std::to_string(part.left.size()) +
                                  " of the 44100 frames its header states; rendering what is there\n");
        ASSERT_EQ(readAudio(out, result), "");
        EXPECT_EQ(result.left.size(), part.left.size()) << extension;
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
