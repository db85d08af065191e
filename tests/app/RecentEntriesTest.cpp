#include "app/RecentEntries.h"

#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr const char* kSection = "Recent File List";
constexpr const char* kFormat = "File%d";

class RecentEntries : public testing::Test {
protected:
    RecentEntries() { settings_.Initialize(nullptr, file_.c_str()); }

    [[nodiscard]] std::string bytes() const
    {
        std::ifstream in(folder_.path() / "settings.ini", std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    bool write(const std::vector<CString>& names)
    {
        return zmr::write_recent_entries(settings_, kSection, kFormat, names);
    }
    [[nodiscard]] std::vector<CString> read(std::size_t size)
    {
        std::vector<CString> names(size, CString("before"));
        zmr::read_recent_entries(settings_, kSection, kFormat, names);
        return names;
    }

    TemporaryFolder folder_;
    std::string file_ = folder_.file("settings.ini");
    RegistryManager settings_;
};

}  // namespace

TEST_F(RecentEntries, Names_ComeBackInTheirPlaces)
{
    EXPECT_TRUE(write({"one", "two", "three"}));

    EXPECT_EQ(bytes(), "[Recent File List]\r\nFile1=one\r\nFile2=two\r\nFile3=three\r\n");
    EXPECT_EQ(read(3), (std::vector<CString>{"one", "two", "three"}));
}

TEST_F(RecentEntries, EmptyPlaces_TakeANumberAndHaveNoEntry)
{
    EXPECT_TRUE(write({"", "two", "", "four"}));

    EXPECT_EQ(bytes(), "[Recent File List]\r\nFile2=two\r\nFile4=four\r\n");
    EXPECT_EQ(read(4), (std::vector<CString>{"", "two", "", "four"}));
}

TEST_F(RecentEntries, Write_TakesTheFormerEntriesOut)
{
    EXPECT_TRUE(write({"one", "two", "three"}));
    EXPECT_TRUE(write({"new"}));

    EXPECT_EQ(bytes(), "[Recent File List]\r\nFile1=new\r\n");
    EXPECT_EQ(read(3), (std::vector<CString>{"new", "", ""}));
}

TEST_F(RecentEntries, OtherSections_AreLeftAlone)
{
    EXPECT_TRUE(settings_.WriteProfileInt("Settings", "PreviewPages", 2));
    EXPECT_TRUE(write({"one"}));
    EXPECT_TRUE(write({}));

    EXPECT_EQ(bytes(), "[Settings]\r\nPreviewPages=2\r\n");
}

TEST_F(RecentEntries, MissingSettings_AreEmptyPlaces)
{
    EXPECT_EQ(read(2), (std::vector<CString>{"", ""}));
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(RecentEntries, NoPlaces_ReadAndWriteNothing)
{
    EXPECT_TRUE(write({}));
    EXPECT_TRUE(read(0).empty());
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "settings.ini"));
}

TEST_F(RecentEntries, SettingsThatCannotBeWritten_AreTold)
{
    std::filesystem::create_directory(folder_.path() / "settings.ini");

    EXPECT_FALSE(write({"one"}));
}

TEST_F(RecentEntries, LongFormatAndLargeNumber_MakeAWholeEntry)
{
    const std::string format = std::string(300, 'f') + "%d end";

    EXPECT_EQ(zmr::recent_entry(format.c_str(), 2147483647),
              std::string(300, 'f') + "2147483647 end");
    EXPECT_EQ(zmr::recent_entry("plain", 1), "plain");
}

TEST_F(RecentEntries, Import_TakesTheOlderListWhenItIsRead)
{
    RegistryManager older;
    const std::string older_file = folder_.file("older.ini");
    older.Initialize(nullptr, older_file.c_str());
    EXPECT_TRUE(zmr::write_recent_entries(older, kSection, kFormat,
                                          std::array<CString, 2>{"old one", "old two"}));
    settings_.ImportRegistry(nullptr, older_file.c_str());

    EXPECT_EQ(read(2), (std::vector<CString>{"old one", "old two"}));
    RegistryManager later;
    later.Initialize(nullptr, file_.c_str());
    std::array<CString, 2> names;
    zmr::read_recent_entries(later, kSection, kFormat, names);
    EXPECT_STREQ(names[1], "old two");
}
