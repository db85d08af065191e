#include "tests/app/modules/LoadedLibrary.h"
#include "tests/app/modules/plugins/PluginExport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

// A program that is not linked with the library: it can go from memory, and come again.

namespace {

constexpr const char* kLibrary = ZMR_LIBRARY;
constexpr const char* kPlugin = ZMR_FIRST_PLUGIN;

/// ZMR_LIBRARY_TURNS makes more of them.
int turns()
{
    const char* const wanted = std::getenv("ZMR_LIBRARY_TURNS");
    return wanted == nullptr ? 20 : std::atoi(wanted);
}

/// The mutexes of the compiler's thread library that were locked once stay behind, with a few
/// words, each time that the library itself goes.
constexpr int kBytesOfLibrary = 256;

void end_plugin_first()
{
    const LoadedLibrary library(kLibrary);
    const LoadedLibrary plugin(kPlugin);
}

void end_library_first()
{
    auto library = std::make_unique<LoadedLibrary>(kLibrary);
    const LoadedLibrary plugin(kPlugin);
    library.reset();
    // It stays as long as the plug-in that needs it.
    EXPECT_TRUE(LoadedLibrary::IsLoaded(kLibrary));
}

void end_plugin_alone()
{
    const LoadedLibrary plugin(kPlugin);
}

}  // namespace

TEST(LibraryLife, LoadedAndUnloaded_IsOutOfMemory)
{
    ASSERT_FALSE(LoadedLibrary::IsLoaded(kPlugin));
    {
        const LoadedLibrary library(kLibrary);
        const LoadedLibrary plugin(kPlugin);
        EXPECT_TRUE(LoadedLibrary::IsLoaded(kPlugin));
    }
    EXPECT_FALSE(LoadedLibrary::IsLoaded(kPlugin));
    EXPECT_FALSE(LoadedLibrary::IsLoaded(kLibrary));
}

TEST(LibraryLife, AgainAndAgainInEachOrder_IsOutOfMemoryEachTime)
{
    for (int turn = 0; turn < turns(); ++turn) {
        for (const auto action : {end_plugin_first, end_library_first, end_plugin_alone}) {
            action();
            ASSERT_FALSE(LoadedLibrary::IsLoaded(kPlugin)) << "turn " << turn;
            ASSERT_FALSE(LoadedLibrary::IsLoaded(kLibrary)) << "turn " << turn;
        }
    }
}

TEST(LibraryLife, LibraryThatWasUsed_IsOutOfMemoryAllTheSame)
{
    for (int turn = 0; turn < turns(); ++turn) {
        {
            const LoadedLibrary plugin(kPlugin);
            const auto use = reinterpret_cast<UseLibrary>(plugin.find_symbol("plugin_use_library"));
            ASSERT_NE(use, nullptr);
            ASSERT_STREQ(use(), "") << "turn " << turn;
        }
        ASSERT_FALSE(LoadedLibrary::IsLoaded(kPlugin)) << "turn " << turn;
        ASSERT_FALSE(LoadedLibrary::IsLoaded(kLibrary)) << "turn " << turn;
    }
}

TEST(LibraryLife, PluginEndsFirst_NothingGrows)
{
    LoadedLibrary::HoldWhatItNeeds(kLibrary);
    EXPECT_EQ(what_grows(end_plugin_first, turns(), kBytesOfLibrary), "");
}

TEST(LibraryLife, LibraryIsLetGoFirst_NothingGrows)
{
    LoadedLibrary::HoldWhatItNeeds(kLibrary);
    EXPECT_EQ(what_grows(end_library_first, turns(), kBytesOfLibrary), "");
}

TEST(LibraryLife, PluginBringsTheLibrary_NothingGrows)
{
    LoadedLibrary::HoldWhatItNeeds(kLibrary);
    EXPECT_EQ(what_grows(end_plugin_alone, turns(), kBytesOfLibrary), "");
}

TEST(LibraryLife, PluginAloneWhileTheLibraryStays_NothingGrows)
{
    const LoadedLibrary library(kLibrary);
    EXPECT_EQ(what_grows(end_plugin_alone, turns()), "");
}
