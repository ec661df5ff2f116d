#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>

#include "AudioFile.h"
#include "FactoryPresets.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "framework/presets/VstPresetFiles.h"
#include "support/Samples.h"

namespace fs = std::filesystem;
using TestSupport::peakIndex;

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
        StereoAudio audio{std::vector<float>(frames), std::vector<float>(frames), rate};
        audio.left[at] = 0.5f;
        audio.right[at] = 0.25f;
        EXPECT_EQ(writeAudio(path(name), audio), "");
        return path(name);
    }
    // A run that must succeed: what it printed.
    std::string succeeds(const std::string& arguments) {
        const ProcessResult run = runRender(arguments);
        EXPECT_EQ(run.status, 0) << arguments << "\n" << run.output;
        return run.output;
    }
    // Each refusal: a non-zero exit, its message, and no output left behind.
    void expectRefused(const std::string& arguments, const std::string& message, const std::string& out) {
        const ProcessResult run = runRender(arguments);
        EXPECT_NE(run.status, 0) << arguments;
        EXPECT_NE(run.output.find("zonfra-render: " + message + "\n"), std::string::npos) << arguments << "\n" << run.output;
        EXPECT_FALSE(fs::exists(out) || fs::exists(out + ".partial")) << arguments;
    }
    fs::path folder;
};

// A shell word, with the space that ends it.
std::string q(const std::string& word) { return "'" + word + "' "; }

StereoAudio load(const std::string& file) {
    StereoAudio audio;
    EXPECT_EQ(readAudio(file, audio), "") << file;
    return audio;
}

void overwrite(const std::string& file, size_t at, const std::string& bytes) {
    std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
    stream.seekp(static_cast<std::streamoff>(at));
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

size_t lineCount(const std::string& text) { return static_cast<size_t>(std::count(text.begin(), text.end(), '\n')); }
}  // namespace

TEST_F(RenderTool, OutputIsAlignedWithTheInputAtEveryRate) {
    for (int rate : {44100, 48000, 96000}) {
        const std::string in = impulseFile("in.wav", rate, static_cast<size_t>(rate / 2), 5000), out = path("out.wav");
        // Bypassed, the plug-in is a pure delay: the impulse must land on its own sample.
        ProcessResult run = runRender(q(in) + q(out) + "--tail 0.25 --set kBypass=1");
        ASSERT_EQ(run.status, 0) << run.output;
        StereoAudio result = load(out);
        EXPECT_EQ(result.sampleRate, rate);
        EXPECT_EQ(result.left.size(), static_cast<size_t>(rate / 2 + rate / 4));
        EXPECT_EQ(peakIndex(result.left), 5000u) << rate;
        EXPECT_TRUE(result.left[5000] == 0.5f && result.right[5000] == 0.25f) << rate;
        // Through the open filters it stays within their few samples of group delay.
        run = runRender(q(in) + q(out) + "--tail 0.25");
        ASSERT_EQ(run.status, 0) << run.output;
        EXPECT_NEAR(static_cast<double>(peakIndex(load(out).left)), 5000.0, 3.0) << rate;
    }
}

TEST_F(RenderTool, MonoInputFeedsBothChannels) {
    const std::string in = path("mono.wav");
    ASSERT_EQ(std::system(("sox -n -r 44100 -c 1 " + q(in) + "synth 0.1 sine 440").c_str()), 0);
    succeeds(q(in) + q(path("out.wav")) + "--tail 0");
    const StereoAudio result = load(path("out.wav"));
    EXPECT_EQ(result.left, result.right);
}

TEST_F(RenderTool, SettingsByValueAndByText) {
    const std::string in = impulseFile("in.wav", 44100, 22050, 100);
    ASSERT_EQ(runRender(q(in) + q(path("a.wav")) + "--tail 0 --set INPUTGAIN=0.5").status, 0);
    ASSERT_EQ(runRender(q(in) + q(path("b.wav")) + "--tail 0 --set 'INPUTGAIN=-6.0206 dB'").status, 0);
    // The shell splits "LFO Shape=Saw" unquoted: not a KEY=VALUE pair.
    ASSERT_EQ(runRender(q(in) + q(path("c.wav")) + "--tail 0 --set FILTERMODE=Notch --set LFO Shape=Saw").status, 2);
    ASSERT_EQ(runRender(q(in) + q(path("c.wav")) + "--tail 0 --set FILTERMODE=Notch --set 'LFO Shape=Saw'").status, 0);
    const StereoAudio a = load(path("a.wav")), b = load(path("b.wav"));
    EXPECT_NEAR(a.left[100], 0.25f, 0.01);
    EXPECT_NEAR(b.left[100], a.left[100], 1e-5);
}

TEST_F(RenderTool, ErrorsExitNonZeroAndLeaveNoOutput) {
    const std::string in = impulseFile("in.wav", 44100, 4410, 10), out = path("never.wav"), io = q(in) + q(out);
    const std::string text = path("notes.txt"), quad = path("quad.wav"), wavAsPreset = path("wav.fxp");
    std::ofstream(text) << "not audio";
    ASSERT_EQ(std::system(("sox -n -r 44100 -c 4 " + q(quad) + "synth 0.1 sine 440").c_str()), 0);
    fs::copy_file(in, wavAsPreset);
    const std::pair<std::string, std::string> cases[] = {
        {q("/nonexistent/file.wav") + q(out), "cannot read '/nonexistent/file.wav': No such file or directory"},
        {q(text) + q(out), "cannot read '" + text +
                               "': not a WAV, FLAC or AIFF file the renderer can read (libsndfile: Format not recognised.)"},
        {q(quad) + q(out), "'" + quad + "' has 4 channels; only mono and stereo are supported"},
        {io + "--set NOSUCHKEY=1", "unknown parameter key 'NOSUCHKEY' (see --list-params)"},
        {io + "--set LOWPASSFREQ=banana", "bad value for LOWPASSFREQ: 'banana' is neither a number nor a text of this parameter"},
        {io + "--set LOWPASSFREQ=99999", "bad value for LOWPASSFREQ: '99999' lies outside 40.000000 .. 22050.000000"},
        {io + "--preset /nonexistent/preset.fxp", "no preset file '/nonexistent/preset.fxp'"},
        {io + "--preset 'No Such Preset'", "unknown preset 'No Such Preset' (see --list-presets)"},
        {io + "--preset " + q(wavAsPreset), "preset file '" + wavAsPreset + "' is not an FXP preset file"},
        {io + "--tempo -5", "--tempo must lie above 0 and up to 999 BPM"},
        {io + "--block 0", "--block must be a whole number from 1 to 65536"},
        {q(in), "expected an input and an output file"},
        {io + "--frobnicate", "unknown option --frobnicate"},
    };
    for (const auto& [arguments, message] : cases) expectRefused(arguments, message, out);
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
    ASSERT_EQ(runRender(q(in) + q(out) + "--preset " + q(preset)).status, 0) << "intact, it loads";
    fs::remove(out);

    const size_t middle = fxp.size() - chunk.size() / 2;  // deep in the compressed body
    const std::string damaged = "preset '" + preset + "' could not be loaded: its state block is damaged";
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[&] { overwrite(preset, middle, {static_cast<char>(fxp[middle] ^ 4)}); }, damaged},
        {[&] { overwrite(preset, 60, "MMK-zonfrX"); }, damaged},
        {[&] { overwrite(preset, 0, "CcnX"); }, "preset file '" + preset + "' is not an FXP preset file"},
        {[&] { overwrite(preset, 56, std::string(4, 0)); }, "preset file '" + preset +
             "' is damaged: its header gives 0 bytes of state, the file holds " + std::to_string(chunk.size())},
        {nullptr, "--preset needs a value, not an empty text"},
    };
    for (const auto& [damage, message] : cases) {
        std::ofstream(preset, std::ios::binary) << fxp;
        if (damage) damage();
        expectRefused(q(in) + q(out) + "--preset " + q(damage ? preset : ""), message, out);
    }
}

TEST_F(RenderTool, SampleRatesOutsideTheSupportedRangeAreRefused) {
    EXPECT_NE(runRender("--help").output.find("8 kHz to 768 kHz (8000..768000 Hz inclusive)"), std::string::npos);
    const std::string out = path("out.wav");
    for (uint32_t rate : {0u, 7999u, 8000u, 768000u, 768001u, 6600000u, 2000000000u}) {
        // Only the header's rate field is changed, as a damaged or hostile file would have it.
        const std::string in = impulseFile("in.wav", 44100, 4410, 10);
        overwrite(in, 24, {char(rate), char(rate >> 8), char(rate >> 16), char(rate >> 24)});
        const std::string arguments = q(in) + q(out) + "--tail 0.1";
        if (rate == 8000 || rate == 768000) {
            succeeds(arguments);
            EXPECT_EQ(load(out).sampleRate, static_cast<int>(rate));
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
    const std::string in = impulseFile("in.wav", 44100, 4410, 10);
    const std::vector<uint8_t> original = TestSupport::fileBytes(in);
    const std::string partial = path("x.wav.partial");  // the name "x.wav" is written under
    fs::copy_file(in, partial);
    fs::create_directory(folder / "sub");
    fs::create_symlink(in, path("link.wav"));
    fs::create_hard_link(in, path("hard.wav"));
    const std::pair<std::string, std::string> cases[] = {
        {in, in}, {in, path("sub/../in.wav")}, {in, path("link.wav")}, {in, path("hard.wav")}, {partial, path("x.wav")},
    };
    for (const auto& [input, output] : cases) {
        const ProcessResult run = runRender(q(input) + q(output) + "--tail 0");
        EXPECT_NE(run.status, 0) << output;
        EXPECT_EQ(run.output, "zonfra-render: writing '" + output + "' would overwrite the input '" + input +
                                  "'; give another output path\n");
        EXPECT_TRUE(TestSupport::fileBytes(input) == original) << output;
    }
}

TEST_F(RenderTool, FilesCutShortRenderWhatIsThereAndWarn) {
    StereoAudio noise;
    for (size_t i = 0; i < 44100; ++i) noise.left.push_back(static_cast<float>((i * 7919) % 1000) / 2000.0f - 0.25f);
    noise.right = noise.left;
    for (const std::string extension : {"wav", "flac", "aiff"}) {
        const std::string whole = path("whole." + extension), cut = path("cut." + extension), out = path("out.wav");
        ASSERT_EQ(writeAudio(whole, noise), "");
        EXPECT_EQ(runRender(q(whole) + q(out) + "--tail 0").output, "") << "no warning when whole";
        fs::copy_file(whole, cut);
        fs::resize_file(cut, fs::file_size(whole) / 2);
        const size_t part = load(cut).left.size();
        ASSERT_TRUE(part > 0 && part < 44100) << part;
        EXPECT_EQ(succeeds(q(cut) + q(out) + "--tail 0"),
                  "zonfra-render: warning: '" + cut + "' ends after " + std::to_string(part) +
                      " of the 44100 frames its header states; rendering what is there\n");
        EXPECT_EQ(load(out).left.size(), part) << extension;
    }
}

TEST_F(RenderTool, ListsAndFactoryPresetsByName) {
    const std::string params = succeeds("--list-params"), list = succeeds("--list-presets");
    EXPECT_EQ(lineCount(params), 1u + 49u);  // a header and 49 rows
    EXPECT_NE(params.find("FilterInteria"), std::string::npos);
    EXPECT_NE(params.find("Bandpass"), std::string::npos);
    EXPECT_EQ(lineCount(list), 133u);
    EXPECT_NE(list.find("Init Preset\n"), std::string::npos);
    EXPECT_NE(list.find("Phaser/Classic Phase\n"), std::string::npos);

    const std::string in = path("noise.wav");
    ASSERT_EQ(std::system(("sox -n -r 44100 -c 2 " + q(in) + "synth 1 whitenoise vol 0.3").c_str()), 0);
    const std::pair<const char*, const char*> renders[] = {
        {"plain.wav", ""},
        {"init.wav", "--preset 'Init Preset'"},
        {"bass.wav", "--preset 'Filter/Bass Only'"},
        {"short.wav", "--preset 'Bass Only'"},
        {"open.wav", "--preset 'Bass Only' --set LOWPASSFREQ=22050"},  // --set goes on top of the preset
    };
    for (const auto& [out, options] : renders) succeeds(q(in) + q(path(out)) + "--tail 0 " + options);
    const StereoAudio plain = load(path("plain.wav")), bass = load(path("bass.wav")), open = load(path("open.wav"));
    EXPECT_EQ(load(path("init.wav")).left, plain.left) << "a new instance is the init preset";
    EXPECT_EQ(load(path("short.wav")).left, bass.left);
    using TestSupport::energy;
    EXPECT_LT(energy(bass.left), 0.05 * energy(plain.left)) << "180 Hz low-pass on white noise";
    EXPECT_GT(energy(open.left), 0.5 * energy(plain.left));
}

TEST_F(RenderTool, FlacAndAiffInAndOutEvenBeyondFullScale) {
    const std::string in = impulseFile("in.wav", 48000, 9600, 100);
    for (const std::string extension : {"flac", "aiff"}) {
        const std::string out = path("out." + extension);
        // Output gain 2 on an impulse of 0.5 and a louder one: the integer format must clip, not fail.
        const ProcessResult run = runRender(q(in) + q(out) + "--tail 0 --set OUTPUTGAIN=2 --set INPUTGAIN=2");
        ASSERT_EQ(run.status, 0) << extension << ": " << run.output;
        const StereoAudio back = load(out);
        EXPECT_EQ(back.sampleRate, 48000);
        EXPECT_EQ(back.left.size(), 9600u);
        EXPECT_EQ(peakIndex(back.left), 100u) << extension;
        EXPECT_GE(std::fabs(back.left[100]), 0.99f) << extension;
        // And the file reads back in as input.
        ASSERT_EQ(runRender(q(out) + q(path("again.wav")) + "--tail 0").status, 0) << extension;
    }
}
