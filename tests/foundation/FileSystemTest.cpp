#include "foundation/FileSystem.h"

#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

TEST(FileSystem, ParentDirectoryName_IsTwoDots)
{
    EXPECT_STREQ(FileSystem::GetParentDirectoryName(), "..");
    EXPECT_EQ(&FileSystem::GetParentDirectoryName(), &FileSystem::GetParentDirectoryName());
}

TEST(FileSystem, CreateDirectory_SucceedsForAnExistingOne)
{
    const TemporaryFolder folder;
    const GFile directory(folder.file("\xC3\xA4 sub").c_str());

    EXPECT_TRUE(FileSystem::CreateDirectoryA(directory));
    EXPECT_TRUE(directory.isDirectory());
    EXPECT_TRUE(FileSystem::CreateDirectoryA(directory));
    EXPECT_TRUE(FileSystem::CreateDirectoryA(GFile(folder.file("").c_str())));
}

TEST(FileSystem, CreateDirectory_FailsWithoutAParentOrOverAFile)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "file") << "x";

    EXPECT_FALSE(FileSystem::CreateDirectoryA(GFile(folder.file("missing/sub").c_str())));
    EXPECT_FALSE(FileSystem::CreateDirectoryA(GFile(folder.file("file").c_str())));
    EXPECT_FALSE(FileSystem::CreateDirectoryA(GFile("")));
}

TEST(FileSystem, UniqueName_FillsThePlaceHoldersOfTheLastName)
{
    const TemporaryFolder folder;
    GFile file(folder.file("????????.lob").c_str());
    ASSERT_TRUE(FileSystem::UniqueName(file, '?'));

    EXPECT_FALSE(file.exists());
    EXPECT_FALSE(file.isMask());
    const std::string name(file.get_name().text);
    ASSERT_EQ(name.size(), 12u);
    EXPECT_EQ(name.substr(8), ".lob");
    EXPECT_TRUE(std::all_of(name.begin(), name.begin() + 8, [](char byte) {
        return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z');
    }));
}

TEST(FileSystem, UniqueName_LeavesPlaceHoldersOfDirectories)
{
    GFile file("a#b/c#d");
    ASSERT_TRUE(FileSystem::UniqueName(file, '#'));
    EXPECT_EQ(file.view().substr(0, 4), "a#b/");
    EXPECT_EQ(file.get_name().view().find('#'), std::string_view::npos);
}

TEST(FileSystem, UniqueName_WithoutAPlaceHolderChangesNothing)
{
    GFile file("name");
    EXPECT_FALSE(FileSystem::UniqueName(file, '?'));
    EXPECT_STREQ(file, "name");
    file.empty();
    EXPECT_FALSE(FileSystem::UniqueName(file, '?'));
}

TEST(FileSystem, UniqueName_FindsTheLastFreeNameAndThenNone)
{
    const TemporaryFolder folder;
    std::set<std::string> names;
    for (int number = 0; number < 36; ++number) {
        GFile file(folder.file("?").c_str());
        ASSERT_TRUE(FileSystem::UniqueName(file, '?'));
        names.insert(file.text);
        std::ofstream(file.text) << "x";
    }
    EXPECT_EQ(names.size(), 36u);
    GFile file(folder.file("?").c_str());
    const GString before = file;
    EXPECT_FALSE(FileSystem::UniqueName(file, '?'));
    EXPECT_EQ(file, before);
}

TEST(FileSystem, UniqueName_DiffersFromCallToCall)
{
    std::set<std::string> names;
    for (int number = 0; number < 100; ++number) {
        GFile file("????????");
        ASSERT_TRUE(FileSystem::UniqueName(file, '?'));
        names.insert(file.text);
    }
    EXPECT_EQ(names.size(), 100u);
}
