#include "settings/GHelpObject.h"

#include "platform/Handles.h"

#include <gtest/gtest.h>

namespace {

/// The topic 100 of the module in a file.
unsigned long topic_of(const char* file)
{
    const zmr::OwnedModule module(::LoadLibraryA(file));
    EXPECT_TRUE(module) << file;
    HINSTANCE handle = module.get();
    return GHelpObject(&handle, 100).GetHelpID();
}

}  // namespace

TEST(GHelpObject, NoModule_PlainId)
{
    EXPECT_EQ(GHelpObject().GetHelpID(), 10031u);
    EXPECT_EQ(GHelpObject(nullptr, 7).GetHelpID(), 7u);
}

TEST(GHelpObject, HandleNotKnownYet_PlainIdUntilItIs)
{
    HINSTANCE handle = nullptr;
    const GHelpObject object(&handle, 100);
    EXPECT_EQ(object.GetHelpID(), 100u);

    const zmr::OwnedModule module(::LoadLibraryA(ZMR_HELP_MODULE_THREE));
    ASSERT_TRUE(module);
    handle = module.get();

    EXPECT_EQ(object.GetHelpID(), 100u | 0x300000u);
}

TEST(GHelpObject, SpecialBuild3_ShiftsTheId)
{
    EXPECT_EQ(topic_of(ZMR_HELP_MODULE_THREE), 100u | 0x300000u);
}

TEST(GHelpObject, SpecialBuildInHexadecimal_ShiftsTheId)
{
    EXPECT_EQ(topic_of(ZMR_HELP_MODULE_HEX), 100u | 0x1000000u);
}

TEST(GHelpObject, SpecialBuildThatIsNotWhollyANumber_PlainId)
{
    EXPECT_EQ(topic_of(ZMR_HELP_MODULE_TEXT), 100u);
}

TEST(GHelpObject, VersionWithoutSpecialBuild_PlainId)
{
    EXPECT_EQ(topic_of(ZMR_HELP_MODULE_NONE), 100u);
}

TEST(GHelpObject, ModuleWithoutVersion_PlainId)
{
    HINSTANCE program = ::GetModuleHandleA(nullptr);

    EXPECT_EQ(GHelpObject(&program, 100).GetHelpID(), 100u);
}

TEST(GHelpObject, HandleOfNoModule_PlainId)
{
    HINSTANCE nothing = reinterpret_cast<HINSTANCE>(std::uintptr_t{0x10000});

    EXPECT_EQ(GHelpObject(&nothing, 100).GetHelpID(), 100u);
}
