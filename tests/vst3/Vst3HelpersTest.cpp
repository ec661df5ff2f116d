// The small classes the VST 3 adapter is built on, checked on their own.
#include <gtest/gtest.h>
#include <cstring>
#include <string>

#include "adapters/vst3/sdk-helpers/CPluginFactory.h"
#include "adapters/vst3/sdk-helpers/CPluginView.h"
#include "adapters/vst3/sdk-helpers/StringConvert.h"

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {
std::u16string wide(const char16_t* text) { return text; }
}  // namespace

TEST(Vst3Helpers, TextBetweenUtf8AndSixteenBits) {
    String128 text;
    StringConvert::toString128("Zürich €5", text);
    EXPECT_EQ(wide(text), u"Zürich €5");
    char back[64], tiny[3];
    StringConvert::toUtf8(text, back, sizeof back);
    EXPECT_STREQ(back, "Zürich €5");
    char16 small[4];
    StringConvert::toUtf16("abcdef", small, 4);
    EXPECT_EQ(wide(small), u"abc");
    StringConvert::toUtf8(u"xyz", tiny, sizeof tiny);
    EXPECT_STREQ(tiny, "xy");
    StringConvert::toString128(nullptr, text);
    EXPECT_EQ(text[0], 0);
    StringConvert::toUtf8(nullptr, back, sizeof back);
    EXPECT_STREQ(back, "");
    char field[8];
    std::memset(field, 'x', sizeof field);
    StringConvert::copyField(field, sizeof field, "a long text");
    EXPECT_STREQ(field, "a long ");
    StringConvert::copyField(field, sizeof field, "ab");
    EXPECT_EQ(std::memcmp(field, "ab\0\0\0\0\0\0", 8), 0);
}

// What a host cannot see through the library: a view keeps the size it is given, and the factory leaves
// its caller one reference and none on failure (a view stands in for the effect there).
TEST(Vst3Helpers, AViewKeepsItsSizeAndTheFactoryLeavesTheCallerOneReference) {
    const ViewRect size{0, 0, 640, 480};
    auto* view = new CPluginView(&size);
    ViewRect bigger{0, 0, 800, 600}, got{};
    EXPECT_EQ(view->onSize(&bigger), kResultTrue);
    EXPECT_EQ(view->getSize(&got), kResultTrue);
    EXPECT_EQ(got.bottom, 600);
    EXPECT_EQ(view->getSize(nullptr), kInvalidArgument);
    void* made = view;
    EXPECT_EQ(view->queryInterface(IPlugFrame::iid.bytes, &made), kNoInterface);
    EXPECT_EQ(made, nullptr);

    CPluginFactory factory(PFactoryInfo{});
    PClassInfo2 info{};
    std::memcpy(info.cid, "one class id 16b", 16);
    auto handOut = [](void* context) -> FUnknown* {
        auto* object = static_cast<CPluginView*>(context);
        object->addRef();
        return static_cast<IPlugView*>(object);
    };
    ASSERT_TRUE(factory.registerClass(info, handOut, view));
    EXPECT_EQ(factory.createInstance(info.cid, IPlugView::iid.bytes, &made), kResultOk);
    EXPECT_EQ(made, static_cast<IPlugView*>(view));
    EXPECT_EQ(factory.createInstance(info.cid, IPlugFrame::iid.bytes, &made), kNoInterface);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(view->release(), 1u);  // the caller's one reference: none kept on failure
    EXPECT_EQ(view->release(), 0u);  // gone
}
