#include <gtest/gtest.h>
#include <cstdio>
#include <set>

#include "framework/plugin/OndraOS.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "support/PluginLibrary.h"

using CreateInstance = Ondra::OndraOS* (*)(Ondra::OndraCallback*, int);
using GetPluginList = Ondra::OndraPluginList* (*)();
using GetSamplerInterface = void* (*)(Ondra::OndraOS*);

namespace {
struct EmbeddingCallback : Ondra::OndraCallback {
    int getPluginType() override { return Ondra::kPluginTypeEmbedded; }
    void setInitialDelay(int samples) override { latency = samples; }
    int latency = -1;
};

std::set<std::string> exportedSymbols(const std::string& path) {
    std::set<std::string> names;
    const std::string command = "nm -D --defined-only '" + path + "'";
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return names;
    char line[512];
    while (std::fgets(line, sizeof line, pipe)) {
        char address[64], type[8], name[400];
        if (std::sscanf(line, "%63s %7s %399s", address, type, name) == 3) names.insert(name);
    }
    pclose(pipe);
    return names;
}
}  // namespace

TEST(PluginLibrary, ExportsOnlyTheEntryPoints) {
    const std::set<std::string> names = exportedSymbols(TestSupport::PluginLibrary::defaultPath());
    const std::set<std::string> ours = {"createOndraInstance", "getOndraPluginListPTR", "getSamplerInterface"};
    // Later entry families add their own exports; anything else is a leak.
    const std::set<std::string> families = {"GetPluginFactory", "InitDll",       "ExitDll", "ModuleEntry",
                                            "ModuleExit",       "VSTPluginMain", "main",    "MAIN",
                                            "bundleEntry",      "bundleExit"};
    for (const std::string& name : ours) EXPECT_TRUE(names.count(name)) << name;
    for (const std::string& name : names)
        EXPECT_TRUE(ours.count(name) || families.count(name)) << "unexpected export " << name;
}

TEST(PluginLibrary, MakesAnInstanceThatReportsItsLatency) {
    TestSupport::PluginLibrary library;
    ASSERT_TRUE(library.loaded()) << library.error();
    auto getList = library.function<GetPluginList>("getOndraPluginListPTR");
    auto create = library.function<CreateInstance>("createOndraInstance");
    auto sampler = library.function<GetSamplerInterface>("getSamplerInterface");
    ASSERT_TRUE(getList && create && sampler);

    Ondra::OndraPluginList* list = getList();
    ASSERT_EQ(list, getList());
    ASSERT_EQ(list->getCount(), 1);
    const Ondra::OndraPluginInfo* info = list->get(0);
    // Names and versions reach the hosts through this list; the VST 2 and VST 3 tests read them there.
    EXPECT_EQ(info->uniqueId, Ondra::fourCharacterId("Vzon"));
    EXPECT_EQ(info->inputPairs, 1);
    EXPECT_EQ(info->programCount, 1);

    EmbeddingCallback callback;
    Ondra::OndraOS* plugin = create(&callback, info->uniqueId);
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(callback.latency, 221);
    EXPECT_STREQ(plugin->getHostedPluginTypeName(), "Ondra");
    EXPECT_NE(sampler(plugin), nullptr);
    EXPECT_EQ(sampler(nullptr), nullptr);
    // Its sound is the effect's, which the effect's tests hear through the same interface.
    plugin->setSampleRate(48000);
    EXPECT_EQ(plugin->getInitialDelay(), 240);

    delete plugin;
}
