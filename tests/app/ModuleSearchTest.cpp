#include "app/ModuleSearch.h"

#include "foundation/GException.h"
#include "tests/app/ModuleTree.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

using zmr::ModuleSearch;
using Names = ModuleTree::Names;

}  // namespace

TEST(ModuleSearch, NullSubdirectory_OnlyTheOwnAndTheRedirectedDirectories)
{
    ModuleTree tree;
    tree.make_file("bin/a.mod");
    tree.make_file("bin/below/b.mod");
    tree.make_file("elsewhere/c.mod");
    tree.make_file("elsewhere/below/d.mod");
    RedirectionFile redirection;
    tree.redirect(redirection, "*.mod", {"elsewhere"});
    const ModuleSearch search(tree.file("bin"), nullptr, &redirection, "*.mod");

    EXPECT_EQ(tree.directories(search), (Names{"bin", "elsewhere"}));
    EXPECT_EQ(tree.files(search, "*.mod"), (Names{"bin/a.mod", "elsewhere/c.mod"}));
}

TEST(ModuleSearch, Subdirectory_ComesWithAllBelowEachInFrontOfItsOwn)
{
    ModuleTree tree;
    for (const char* name : {"bin/plug/z/1/x", "bin/plug/a/2", "bin/plug/a/1", "bin/other"})
        tree.make_directory(name);
    const ModuleSearch search(tree.file("bin"), "plug", nullptr, "*.mod");

    EXPECT_EQ(tree.directories(search),
              (Names{"bin", "bin/plug", "bin/plug/a", "bin/plug/a/1", "bin/plug/a/2", "bin/plug/z",
                     "bin/plug/z/1", "bin/plug/z/1/x"}));
}

TEST(ModuleSearch, DirectoriesNamedByADottedName_AreFoundAsWell)
{
    ModuleTree tree;
    tree.make_directory("bin/plug/version 1.2");
    tree.make_directory("bin/plug/.hidden");
    const ModuleSearch search(tree.file("bin"), "plug", nullptr, "*.mod");

    EXPECT_EQ(tree.directories(search),
              (Names{"bin", "bin/plug", "bin/plug/.hidden", "bin/plug/version 1.2"}));
}

TEST(ModuleSearch, MissingDirectories_HaveNoFilesAndAreNoFailure)
{
    ModuleTree tree;
    RedirectionFile redirection;
    tree.redirect(redirection, "*.mod", {"missing too"});
    const ModuleSearch search(tree.file("nowhere"), "plug", &redirection, "*.mod");

    EXPECT_EQ(tree.directories(search), (Names{"nowhere", "nowhere/plug", "missing too"}));
    EXPECT_EQ(tree.files(search, "*.mod"), Names{});
}

TEST(ModuleSearch, Redirection_AllItemsThatMatchTheMaskInOrder)
{
    ModuleTree tree;
    RedirectionFile redirection;
    tree.redirect(redirection, "*.mod;*.dat", {"z", "a"});
    tree.redirect(redirection, "*.tga", {"pictures"});
    tree.redirect(redirection, "*.*;*.mod", {"m", "z"});
    const ModuleSearch search(tree.file("bin"), nullptr, &redirection, "*.mod");

    EXPECT_EQ(tree.directories(search), (Names{"bin", "z", "a", "m", "z"}));
}

TEST(ModuleSearch, Redirection_EmptyNamesAreIgnoredAndRelativeOnesMadeFull)
{
    RedirectionFile redirection;
    auto item = std::make_unique<RedirectionItem>("*.mod");
    for (const char* name : {"", "plug ins"})
        item->v_insert(gnewstr(name));
    redirection.v_insert(item.release());
    ModuleSearch search;
    search.add_redirected(redirection, "*.mod");

    ASSERT_EQ(search.directories().count, 1);
    const GFile& directory = search.directories()[0];
    EXPECT_FALSE(directory.isRelativePath());
    EXPECT_EQ(directory.get_name(), "plug ins");
}

TEST(ModuleSearch, FileInTwoDirectories_IsFoundTwice)
{
    ModuleTree tree;
    tree.make_file("bin/same.mod");
    tree.make_file("bin/plug/same.mod");
    const ModuleSearch search(tree.file("bin"), "plug", nullptr, "*.mod");

    EXPECT_EQ(tree.files(search, "*.mod"), (Names{"bin/same.mod", "bin/plug/same.mod"}));
}

TEST(ModuleSearch, DirectoryListedTwice_IsSearchedTwice)
{
    ModuleTree tree;
    tree.make_file("bin/a.mod");
    ModuleSearch search;
    search.add_directory(tree.file("bin"));
    search.add_directory(tree.file("bin"));

    EXPECT_EQ(tree.files(search, "*.mod"), (Names{"bin/a.mod", "bin/a.mod"}));
}

TEST(ModuleSearch, Files_ByMaskInByteOrderAndNoDirectories)
{
    ModuleTree tree;
    for (const char* name : {"bin/z.mod", "bin/B.mod", "bin/a.mod", "bin/a.mod.txt", "bin/scene"})
        tree.make_file(name);
    tree.make_directory("bin/folder.mod");
    ModuleSearch search;
    search.add_directory(tree.file("bin"));

    EXPECT_EQ(tree.files(search, "*.mod"), (Names{"bin/B.mod", "bin/a.mod", "bin/z.mod"}));
    EXPECT_EQ(tree.files(search, "?.mod"), (Names{"bin/B.mod", "bin/a.mod", "bin/z.mod"}));
    EXPECT_EQ(tree.files(search, "scene"), (Names{"bin/scene"}));
    EXPECT_EQ(tree.files(search, ""), Names{});
    EXPECT_EQ(tree.files(search, nullptr), Names{});
}

TEST(ModuleSearch, NamesOutsideAscii_AreFound)
{
    ModuleTree tree;
    tree.make_file("bin/\xC3\xBC/\xE2\x82\xAC.mod");
    const ModuleSearch search(tree.file("bin"), "\xC3\xBC", nullptr, "*.mod");

    EXPECT_EQ(tree.files(search, "*.mod"), (Names{"bin/\xC3\xBC/\xE2\x82\xAC.mod"}));
}

TEST(ModuleSearch, PathsOver260Bytes_AreLeftOut)
{
    ModuleTree tree;
    // One directory whose path has 250 bytes: files in it fit by names of up to nine bytes.
    const std::size_t root = tree.file("").view().size();
    ASSERT_LT(root, 120u);
    const std::string name(249 - root, 'd');
    ASSERT_EQ(tree.file(name).view().size(), 250u);
    tree.make_file(name + "/12345.mod");
    tree.make_file(name + "/123456.mod");
    tree.make_directory(name + "/123456789");
    tree.make_directory(name + "/1234567890");
    ModuleSearch search;
    search.add_tree(tree.file(name));

    EXPECT_EQ(tree.directories(search), (Names{name, name + "/123456789"}));
    EXPECT_EQ(tree.files(search, "*.mod"), (Names{name + "/12345.mod"}));
    search.add_directory(tree.file(name + "/1234567890"));
    EXPECT_EQ(search.directories().count, 2);
}

TEST(ModuleSearch, Action_ItsExceptionGoesThrough)
{
    ModuleTree tree;
    tree.make_file("a.mod");
    ModuleSearch search;
    search.add_directory(tree.file(""));

    EXPECT_THROW(search.for_each_file("*.mod", [](const char*) { throw OutOfMemory_Exception(); }),
                 OutOfMemory_Exception);
}

TEST(ModuleSearch, WhatIsNoLibrary_IsLeftOut)
{
    ModuleTree tree;
    tree.make_file("text.mod");
    std::ofstream(tree.path_of("empty.mod"));
    ModuleSearch search;
    search.add_directory(tree.file(""));
    TGCollection<GDynamicLinkLibrary> modules(0, 4, 1);
    search.load("*.mod", modules);

    EXPECT_EQ(tree.files(search, "*.mod").size(), 2u);
    EXPECT_EQ(modules.count, 0);
}

TEST(ModuleSearch, PathValue_DirectoriesInOrderInFrontOfTheFormerValue)
{
    ModuleTree tree;
    ModuleSearch search;
    search.add_directory(tree.file("b"));
    search.add_directory(tree.file("a"));
    const std::string directories =
        std::string(tree.file("b").view()) + ";" + std::string(tree.file("a").view()) + ";";

    EXPECT_EQ(search.path_value("old;older").view(), directories + "old;older");
    EXPECT_EQ(search.path_value("").view(), directories) << "with no PATH";
}

TEST(ModuleSearch, PathValue_GrowsWithEachCall)
{
    ModuleTree tree;
    ModuleSearch search;
    search.add_directory(tree.file("b"));
    const std::string directory = std::string(tree.file("b").view()) + ";";
    const GString first = search.path_value("old");

    EXPECT_EQ(search.path_value(first.view()).view(), directory + directory + "old");
    EXPECT_EQ(ModuleSearch().path_value("old"), "old") << "no directory adds nothing";
}

TEST(ModuleSearch, AThousandDirectories_AreAllListed)
{
    ModuleTree tree;
    for (int number = 0; number < 1000; ++number)
        tree.make_directory("plug/" + std::to_string(number / 10) + "/" + std::to_string(number));
    ModuleSearch search;
    search.add_tree(tree.file("plug"));

    EXPECT_EQ(search.directories().count, 1 + 100 + 1000);
}
