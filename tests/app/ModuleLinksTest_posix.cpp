#include "app/ModuleSearch.h"

#include "tests/app/ModuleTree.h"

#include <gtest/gtest.h>

// Trees with links, which ordinary users can make here.

using Names = ModuleTree::Names;

TEST(ModuleSearch, LinksToDirectories_AreFollowed)
{
    ModuleTree tree;
    tree.make_file("elsewhere/a.mod");
    tree.make_directory("plug");
    std::filesystem::create_directory_symlink(tree.path_of("elsewhere"), tree.path_of("plug/link"));
    zmr::ModuleSearch search;
    search.add_tree(tree.file("plug"));

    EXPECT_EQ(tree.files(search, "*.mod"), Names{"plug/link/a.mod"});
}

TEST(ModuleSearch, LinkToADirectoryAbove_Ends)
{
    ModuleTree tree;
    tree.make_directory("plug/a/b");
    std::filesystem::create_directory_symlink(tree.path_of("plug"), tree.path_of("plug/a/b/up"));
    std::filesystem::create_directory_symlink("..", tree.path_of("plug/a/parent"));
    zmr::ModuleSearch search;
    search.add_tree(tree.file("plug"));

    EXPECT_EQ(tree.directories(search), (Names{"plug", "plug/a", "plug/a/b"}));
}

TEST(ModuleSearch, RingOfLinks_EachDirectoryOnceByItsFirstWay)
{
    ModuleTree tree;
    constexpr int kRing = 12;
    for (int from = 0; from < kRing; ++from)
        tree.make_directory("plug/" + std::to_string(from));
    // Each leads to each: more ways than could ever be walked.
    for (int from = 0; from < kRing; ++from)
        for (int to = 0; to < kRing; ++to)
            std::filesystem::create_directory_symlink(
                tree.path_of("plug/" + std::to_string(to)),
                tree.path_of("plug/" + std::to_string(from) + "/" + std::to_string(to)));
    zmr::ModuleSearch search;
    search.add_tree(tree.file("plug"));

    EXPECT_EQ(search.directories().count, 1 + kRing);
}

TEST(ModuleSearch, LinksToNothingAndToThemselves_AreNoDirectories)
{
    ModuleTree tree;
    tree.make_directory("plug");
    std::filesystem::create_directory_symlink("nothing", tree.path_of("plug/broken"));
    std::filesystem::create_directory_symlink("self", tree.path_of("plug/self"));
    zmr::ModuleSearch search;
    search.add_tree(tree.file("plug"));

    EXPECT_EQ(tree.directories(search), Names{"plug"});
}

TEST(ModuleSearch, DirectoryThatMayNotBeRead_IsListedAndEmpty)
{
    ModuleTree tree;
    tree.make_file("plug/closed/a.mod");
    tree.make_file("plug/open/b.mod");
    std::filesystem::permissions(tree.path_of("plug/closed"), std::filesystem::perms::none);
    zmr::ModuleSearch search;
    search.add_tree(tree.file("plug"));
    const Names directories = tree.directories(search);
    const Names files = tree.files(search, "b.mod");
    std::filesystem::permissions(tree.path_of("plug/closed"), std::filesystem::perms::owner_all);

    EXPECT_EQ(directories, (Names{"plug", "plug/closed", "plug/open"}));
    EXPECT_EQ(files, Names{"plug/open/b.mod"});
}
