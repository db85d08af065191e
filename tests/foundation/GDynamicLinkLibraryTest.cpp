#include "foundation/GDynamicLinkLibrary.h"

#include "foundation/GFile.h"
#include "foundation/GStreamable.h"

#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

// The program and the module stand on the one dynamic library, as a host and its modules do.

namespace {

constexpr const char* kModule = ZMR_TEST_MODULE;

int number_of(const GDynamicLinkLibrary& library)
{
    const auto function = reinterpret_cast<int (*)()>(library.find_symbol("loading_module_number"));
    return function == nullptr ? -1 : function();
}

}  // namespace

TEST(GDynamicLinkLibrary, NullName_LoadsNothingYet)
{
    GDynamicLinkLibrary library(nullptr, 0);
    EXPECT_EQ(library.module, nullptr);
    EXPECT_EQ(library.find_symbol("loading_module_number"), nullptr);
    EXPECT_TRUE(library.load(kModule, 0)) << GDynamicLinkLibrary::LastError().text;
    EXPECT_NE(library.module, nullptr);
}

TEST(GDynamicLinkLibrary, Classes_RegisterOnLoadAndLeaveOnUnload)
{
    ASSERT_EQ(GMetaClass::FindByName("LoadedThing"), nullptr);
    {
        const GDynamicLinkLibrary library(kModule, 0);
        ASSERT_NE(library.module, nullptr) << GDynamicLinkLibrary::LastError().text;
        const GMetaClass* metaclass = GMetaClass::FindByName("LoadedThing");
        ASSERT_NE(metaclass, nullptr);
        EXPECT_EQ(metaclass->isKindOf(&GStreamable::metaclass_), &GStreamable::metaclass_);
        EXPECT_EQ(metaclass->get_module(), library.module);

        GRTTIObject* object = metaclass->buildObject();
        ASSERT_NE(object, nullptr);
        EXPECT_STREQ(object->getClassName(), "LoadedThing");
        auto* streamable = zmr::class_cast<GStreamable>(object);
        ASSERT_NE(streamable, nullptr);
        GStreamable::destroy(streamable);
    }
    EXPECT_EQ(GMetaClass::FindByName("LoadedThing"), nullptr);
}

TEST(GDynamicLinkLibrary, Symbols_AreFoundByName)
{
    const GDynamicLinkLibrary library(kModule, 0);
    EXPECT_EQ(number_of(library), 4711);
    EXPECT_EQ(library.find_symbol("no_such_function"), nullptr);
    EXPECT_EQ(library.find_symbol(nullptr), nullptr);
}

TEST(GDynamicLinkLibrary, LoadingAgain_UnloadsTheFormer)
{
    GDynamicLinkLibrary library(kModule, 0);
    ASSERT_NE(library.module, nullptr);
    EXPECT_TRUE(library.load(kModule, 0));
    EXPECT_NE(GMetaClass::FindByName("LoadedThing"), nullptr);
    EXPECT_FALSE(library.load("no_such_module_anywhere", 0));
    EXPECT_EQ(library.module, nullptr);
    EXPECT_EQ(GMetaClass::FindByName("LoadedThing"), nullptr);
}

TEST(GDynamicLinkLibrary, SharedByTwo_StaysUntilTheLastOneLetsGo)
{
    const GDynamicLinkLibrary first(kModule, 0);
    {
        const GDynamicLinkLibrary second(kModule, 0);
        EXPECT_EQ(second.module, first.module);
    }
    EXPECT_NE(GMetaClass::FindByName("LoadedThing"), nullptr);
    EXPECT_EQ(number_of(first), 4711);
}

TEST(GDynamicLinkLibrary, WhatIsNoLibrary_SaysWhy)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "text.dll") << "This is no library.";

    for (const std::string& name :
         {std::string(), folder.file("missing.dll"), folder.file("text.dll"), folder.file("")}) {
        const GDynamicLinkLibrary library(name.c_str(), 0);
        EXPECT_EQ(library.module, nullptr) << name;
        EXPECT_FALSE(GDynamicLinkLibrary::LastError().is_empty()) << name;
    }
}

TEST(GDynamicLinkLibrary, LibraryThatWasCutShort_IsRefused)
{
    const TemporaryFolder folder;
    const std::filesystem::path cut = folder.path() / "cut.dll";
    std::filesystem::copy_file(kModule, cut);
    const std::uintmax_t whole = std::filesystem::file_size(cut);
    // Down to nothing, by steps that come into each part of the file. What is behind the last
    // loaded part may be missing.
    int refused = 0;
    for (std::uintmax_t length = whole / 2; length > 0; length = length * 7 / 8) {
        std::filesystem::resize_file(cut, length);
        const GDynamicLinkLibrary library(folder.file("cut.dll").c_str(), 0);
        EXPECT_EQ(library.module, nullptr) << length;
        refused += library.module == nullptr ? 1 : 0;
    }
    EXPECT_GT(refused, 20);
}

TEST(GDynamicLinkLibrary, NamesOutsideAscii_AreLoaded)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("\xC3\xA4 \xE2\x82\xAC.dll");
    std::filesystem::copy_file(kModule,
                               std::filesystem::path(std::u8string(name.begin(), name.end())));
    {
        const GDynamicLinkLibrary library(name.c_str(), 0);
        ASSERT_NE(library.module, nullptr) << GDynamicLinkLibrary::LastError().text;
        EXPECT_EQ(number_of(library), 4711);
    }
    GFile backslashes(name.c_str());
    backslashes.expand();
    backslashes.translate("/", "\\");
    const GDynamicLinkLibrary library(backslashes, 0);
    EXPECT_NE(library.module, nullptr) << GDynamicLinkLibrary::LastError().text;
}
