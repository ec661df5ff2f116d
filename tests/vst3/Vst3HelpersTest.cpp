// The small classes the VST 3 adapter is built on, checked on their own.
#include <gtest/gtest.h>
#include <cstring>
#include <initializer_list>
#include <string>

#include "adapters/vst3/sdk-helpers/CPluginFactory.h"
#include "adapters/vst3/sdk-helpers/CPluginView.h"
#include "adapters/vst3/sdk-helpers/FUID.h"
#include "adapters/vst3/sdk-helpers/StringConvert.h"
#include "adapters/vst3/sdk-helpers/StringListParameter.h"
#include "adapters/vst3/sdk-helpers/Unit.h"
#include "adapters/vst3/sdk/Vst3Processor.h"

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {
std::u16string wide(const char16_t* text) { return text; }
}  // namespace

TEST(Vst3Helpers, FuidWordsBytesAndText) {
    // The effect's class: "duAdNVCGWRPR" and "Vzon", as hosts store it in their caches.
    const FUID id(0x64754164, 0x4E564347, 0x57525052, 0x567A6F6E);
    EXPECT_EQ(std::string(id.data(), 16), "duAdNVCGWRPRVzon");
    EXPECT_EQ(id.getLong(3), 0x567A6F6Eu);
    EXPECT_EQ(id.getLong(4), 0u);
    char text[FUID::kTextSize];
    id.toString(text);
    EXPECT_STREQ(text, "647541644E56434757525052567A6F6E");
    FUID parsed;
    EXPECT_FALSE(parsed.isValid());
    ASSERT_TRUE(parsed.fromString("647541644e56434757525052567a6f6e"));
    EXPECT_TRUE(parsed == id);
    TUID bytes;
    parsed.toTUID(bytes);
    EXPECT_TRUE(id.matches(bytes) && FUID::fromTUID(bytes) == id);
    EXPECT_FALSE(FUID::fromTUID(nullptr).isValid());
    // Wrong length or a non-digit: refused, the identifier stays.
    for (const char* bad : {"647541644E56434757525052567A6F6", "647541644E56434757525052567A6F6E0",
                            "647541644E56434757525052567A6F6G", "", static_cast<const char*>(nullptr)}) {
        EXPECT_FALSE(parsed.fromString(bad)) << (bad ? bad : "null");
        EXPECT_TRUE(parsed == id);
    }
    // The interface identifiers are the same four-word form.
    EXPECT_TRUE(FUID(IComponent::iid).matches(IComponent::iid.bytes));
    EXPECT_EQ(FUID(IComponent::iid).getLong(0), 0xE831FF31u);
}

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

TEST(Vst3Helpers, ParametersClampReadNumbersAndStepThroughTheirEntries) {
    Parameter gain("Gain", 7, "dB", 0.25);
    EXPECT_EQ(wide(gain.getInfo().shortTitle), u"Gain");  // the title stands in for a missing short one
    EXPECT_TRUE(gain.setNormalized(1.5));
    EXPECT_DOUBLE_EQ(gain.getNormalized(), 1.0);
    EXPECT_FALSE(gain.setNormalized(1.0));
    ParamValue value = 0;
    EXPECT_TRUE(gain.fromString(u"0.5", value));
    EXPECT_DOUBLE_EQ(value, 0.5);
    EXPECT_FALSE(gain.fromString(u"loud", value));

    StringListParameter bypass("Bypass", 0x4D427970, nullptr, ParameterInfo::kCanAutomate | ParameterInfo::kIsBypass);
    for (const char* entry : {"Off", "On"}) bypass.appendString(entry);
    EXPECT_EQ(bypass.getInfo().stepCount, 1);
    for (auto [normalized, plain] : {std::pair{0.0, 0.0}, {0.49, 0.0}, {0.5, 1.0}, {1.0, 1.0}})
        EXPECT_DOUBLE_EQ(bypass.toPlain(normalized), plain) << normalized;
    EXPECT_DOUBLE_EQ(bypass.toNormalized(1), 1.0);
    String128 text;
    bypass.toString(1.0, text);
    EXPECT_EQ(wide(text), u"On");
    bypass.toString(0.0, text);
    EXPECT_EQ(wide(text), u"Off");
    EXPECT_TRUE(bypass.fromString(u"On", value));
    EXPECT_DOUBLE_EQ(value, 1.0);
    EXPECT_FALSE(bypass.fromString(u"Maybe", value));
    StringListParameter three("Mode", 1);
    for (const char* entry : {"A", "B", "C"}) three.appendString(entry);
    EXPECT_DOUBLE_EQ(three.toPlain(0.5), 1);
    EXPECT_DOUBLE_EQ(three.toNormalized(1), 0.5);
}

TEST(Vst3Helpers, PluginViewAnswersItsSizeAndCountsItsReferences) {
    const ViewRect size{0, 0, 640, 480};
    auto* view = new CPluginView(&size);
    ViewRect bigger{0, 0, 800, 600}, got{};
    EXPECT_EQ(view->onSize(&bigger), kResultTrue);
    EXPECT_EQ(view->getSize(&got), kResultTrue);
    EXPECT_EQ(got.bottom, 600);
    EXPECT_EQ(view->getSize(nullptr), kInvalidArgument);
    void* object = nullptr;
    ASSERT_EQ(view->queryInterface(IPlugView::iid.bytes, &object), kResultOk);
    EXPECT_EQ(object, static_cast<IPlugView*>(view));
    EXPECT_EQ(view->queryInterface(IPlugFrame::iid.bytes, &object), kNoInterface);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(view->release(), 1u);
    EXPECT_EQ(view->release(), 0u);  // gone
}

namespace {
struct Counted : FUnknown {
    tresult queryInterface(const TUID interfaceId, void** object) override {
        *object = sameUid(interfaceId, FUnknown::iid) ? this : nullptr;
        if (*object) addRef();
        return *object ? kResultOk : kNoInterface;
    }
    uint32 addRef() override { return ++count; }
    uint32 release() override { return --count; }
    virtual ~Counted() = default;
    uint32 count = 1;
};

FUnknown* handOut(void* context) {
    auto* object = static_cast<Counted*>(context);
    object->addRef();
    return object;
}

PClassInfo2 describedClass(const FUID& id, const char* name) {
    PClassInfo2 info{};
    id.toTUID(info.cid);
    info.cardinality = PClassInfo::kManyInstances;
    StringConvert::copyField(info.category, sizeof info.category, "Audio Module Class");
    StringConvert::copyField(info.name, sizeof info.name, name);
    StringConvert::copyField(info.vendor, sizeof info.vendor, "Vendor");
    return info;
}
}  // namespace

TEST(Vst3Helpers, FactoryDescribesAndCreatesItsClasses) {
    PFactoryInfo about{.flags = PFactoryInfo::kUnicode};
    StringConvert::copyField(about.vendor, sizeof about.vendor, "Maker");
    CPluginFactory factory(about);
    Counted object;
    const FUID id(1, 2, 3, 4);
    EXPECT_TRUE(factory.registerClass(describedClass(id, "Déjà"), handOut, &object));
    EXPECT_FALSE(factory.registerClass(describedClass(id, "Again"), handOut, &object));
    EXPECT_FALSE(factory.registerClass(describedClass(FUID(5, 6, 7, 8), "None"), nullptr));
    ASSERT_EQ(factory.countClasses(), 1);
    PClassInfo plain{};
    EXPECT_EQ(factory.getClassInfo(0, &plain), kResultOk);
    EXPECT_TRUE(id.matches(plain.cid));
    PClassInfoW unicode{};
    EXPECT_EQ(factory.getClassInfoUnicode(0, &unicode), kResultOk);
    EXPECT_EQ(wide(unicode.name), u"Déjà");
    EXPECT_EQ(wide(unicode.vendor), u"Vendor");
    EXPECT_EQ(factory.getClassInfo2(1, nullptr), kInvalidArgument);

    void* made = nullptr;
    EXPECT_EQ(factory.createInstance(id.data(), FUnknown::iid.bytes, &made), kResultOk);
    EXPECT_EQ(made, &object);
    EXPECT_EQ(object.count, 2u);  // the caller's one reference
    EXPECT_EQ(factory.createInstance(FUID(9, 9, 9, 9).data(), FUnknown::iid.bytes, &made), kInvalidArgument);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(factory.createInstance(id.data(), IPlugView::iid.bytes, &made), kNoInterface);
    EXPECT_EQ(object.count, 2u);  // nothing kept on failure
}
