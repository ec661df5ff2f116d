// Questions answered later (a dialog while the host's loop goes on): nothing happens on disk until
// the answer comes, and then the operation finishes through its completion.
#include "editor_presets/PresetFolderFixture.h"

namespace {

struct PresetAnswerLater : PresetFolder {
    ZonfraPresets::CPresetInterface::Answer pending;
    std::vector<bool> outcomes;
    const ZonfraPresets::CPresetInterface::Done record = [this](bool ok) { outcomes.push_back(ok); };

    void SetUp() override {
        PresetFolder::SetUp();
        saveWithCutoff("One", 0.2f);
        presets.setCurrentByName((folder / "One.fxp").string());
        presets.setQuestion([this](const auto&, const auto&, auto answer) { pending = std::move(answer); });
    }
};

TEST_F(PresetAnswerLater, OperationsWaitForTheAnswerAndFinishThroughTheirCompletion) {
    const std::string before = readAll(folder / "One.fxp");
    cutoff()->setNormalized(0.6f);
    EXPECT_FALSE(presets.saveCurrent(record));
    EXPECT_TRUE(pending && outcomes.empty());
    EXPECT_EQ(readAll(folder / "One.fxp"), before);
    std::exchange(pending, nullptr)(true);
    EXPECT_EQ(outcomes, std::vector<bool>{true});
    EXPECT_NE(readAll(folder / "One.fxp"), before);

    EXPECT_FALSE(presets.remove(presets.getCurrentIndex(), record));
    std::exchange(pending, nullptr)(false);
    EXPECT_TRUE(fs::exists(folder / "One.fxp"));
    EXPECT_EQ(presets.restoreFactoryPresets([this](int written) { outcomes.push_back(written > 0); }), 0);
    std::exchange(pending, nullptr)(true);
    EXPECT_EQ(outcomes, (std::vector<bool>{true, false, true}));
}

}  // namespace
