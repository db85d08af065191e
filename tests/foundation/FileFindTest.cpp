#include "foundation/FileFind.h"

#include "foundation/GFile.h"

#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;

Names found(const std::string& mask, unsigned char kind, bool bare_names = true)
{
    Names names;
    for (FileFind find(mask.c_str(), kind, bare_names); !find.name.is_empty(); ++find)
        names.emplace_back(find.name.text);
    return names;
}

class FileFindTest : public testing::Test {
protected:
    void make_file(const std::string& name) const
    {
        const std::string full = folder_.file(name);
        std::ofstream(std::filesystem::path(std::u8string(full.begin(), full.end()))) << name;
    }
    void make_directory(const std::string& name) const
    {
        std::filesystem::create_directory(folder_.path() / name);
    }

    TemporaryFolder folder_;
};

}  // namespace

TEST_F(FileFindTest, Files_AreSortedByBytes)
{
    for (const char* name : {"b.txt", "a.txt", "\xC3\xA4.txt", "c", "_"})
        make_file(name);
    make_directory("directory");

    EXPECT_EQ(found(folder_.file("*.*"), FileFind::kFiles),
              (Names{"_", "a.txt", "b.txt", "c", "\xC3\xA4.txt"}));
    EXPECT_EQ(found(folder_.file("*.txt"), FileFind::kFiles),
              (Names{"a.txt", "b.txt", "\xC3\xA4.txt"}));
    EXPECT_EQ(found(folder_.file("?.txt"), FileFind::kFiles).size(), 3u);
    EXPECT_EQ(found(folder_.file("c"), FileFind::kFiles), Names{"c"});
}

TEST_F(FileFindTest, Directories_ComeWithTheParentAndNeverWithTheDirectoryItself)
{
    make_directory("sub");
    make_directory(".hidden");
    make_file("file");

    EXPECT_EQ(found(folder_.file("*.*"), FileFind::kDirectories), (Names{"..", ".hidden", "sub"}));
    EXPECT_EQ(found(folder_.file("s*"), FileFind::kDirectories), Names{"sub"});
    EXPECT_EQ(found(folder_.file("*"), FileFind::kFiles | FileFind::kDirectories),
              (Names{"..", ".hidden", "file", "sub"}));
    EXPECT_EQ(found(folder_.file("*"), 0), Names{});
}

TEST_F(FileFindTest, Paths_StandInFrontWhenAskedFor)
{
    make_file("file");
    make_directory("sub");

    EXPECT_EQ(found(folder_.file("*"), FileFind::kFiles, false), Names{folder_.file("file")});
    const std::string backslash = folder_.file("") + "\\*";
    const Names paths = found(backslash, FileFind::kFiles, false);
    ASSERT_EQ(paths.size(), 1u);
    EXPECT_TRUE(GFile(paths[0].c_str()).exists());
}

TEST_F(FileFindTest, MissingDirectory_HasNoEntries)
{
    EXPECT_EQ(found(folder_.file("missing/*.*"), FileFind::kFiles | FileFind::kDirectories),
              Names{});
    make_file("file");
    EXPECT_EQ(found(folder_.file("file/*.*"), FileFind::kFiles | FileFind::kDirectories), Names{});
    EXPECT_EQ(found(folder_.file(""), FileFind::kFiles), Names{});
    EXPECT_EQ(found("", FileFind::kFiles), Names{});
}

TEST_F(FileFindTest, BehindTheEnd_StaysEmpty)
{
    make_file("file");
    FileFind find(folder_.file("*").c_str(), FileFind::kFiles, true);
    EXPECT_STREQ(find.name, "file");
    ++find;
    EXPECT_TRUE(find.name.is_empty());
    ++find;
    EXPECT_TRUE(find.name.is_empty());
}

TEST_F(FileFindTest, CurrentDirectory_IsMeantWithoutOne)
{
    const std::filesystem::path former = std::filesystem::current_path();
    make_file("only.xyz");
    std::filesystem::current_path(folder_.path());
    const Names names = found("*.xyz", FileFind::kFiles, false);
    std::filesystem::current_path(former);

    EXPECT_EQ(names, Names{"only.xyz"});
}

TEST_F(FileFindTest, EntriesAreThoseOfTheStart)
{
    make_file("a");
    make_file("b");
    FileFind find(folder_.file("*").c_str(), FileFind::kFiles, true);
    std::filesystem::remove(folder_.path() / "b");
    make_file("c");
    ++find;

    EXPECT_STREQ(find.name, "b");
    ++find;
    EXPECT_TRUE(find.name.is_empty());
}
