// What the system's private-profile functions write, this library reads, and the other way round.
#include "settings/IniStore.h"
#include "settings/RegistryManager.h"

#include "platform/Windows.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace {

class ProfileFunctions : public testing::Test {
protected:
    void set_file(const std::string& bytes)
    {
        std::ofstream(path(), std::ios::binary) << bytes;
        forget();
    }
    [[nodiscard]] std::string file() const
    {
        std::ifstream in(path(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    [[nodiscard]] std::filesystem::path path() const { return folder_.path() / "settings.ini"; }

    /// The system keeps the last file in memory.
    void forget() const { ::WritePrivateProfileStringA(nullptr, nullptr, nullptr, name_.c_str()); }
    [[nodiscard]] std::string system_text(const std::string& section,
                                          const std::string& entry) const
    {
        forget();
        char text[4096];
        ::GetPrivateProfileStringA(section.c_str(), entry.c_str(), "none", text, sizeof text,
                                   name_.c_str());
        return text;
    }
    [[nodiscard]] unsigned system_int(const char* entry) const
    {
        forget();
        return ::GetPrivateProfileIntA("s", entry, 77, name_.c_str());
    }
    void system_write(const char* section, const char* entry, const char* text) const
    {
        EXPECT_TRUE(::WritePrivateProfileStringA(section, entry, text, name_.c_str()));
        forget();
    }
    [[nodiscard]] std::string our_text(const std::string& section, const std::string& entry)
    {
        std::string text;
        return store_.read_text(section.c_str(), entry.c_str(), text) ? text : "none";
    }

    TemporaryFolder folder_;
    std::string name_ = folder_.file("settings.ini");
    zmr::IniStore store_{zmr::FileSystemDevice::Real(), name_};
};

}  // namespace

TEST_F(ProfileFunctions, OfAnOddFile_BothReadTheSame)
{
    set_file(
        "; comment\r\ntop=0\r\n\r\n[One]\r\nk=1\r\nK=2\r\n  sp = a b \t\r\nq=\"x\"\r\nq2=' x '\r\n"
        "half=\"x\r\nbare\r\nempty=\r\neq=a=b\r\n=noname\r\n#no=comment\r\nb=[x]\r\n[one]\r\nk="
        "3\r\n"
        "late=4\r\n[ two ]\r\nk=5\r\n[three] x\r\nk=6\r\n[fo]ur]\r\nk=7\r\n[open\r\nk=8\r\n"
        "lf=9\n[five]\ncr=1\r[six]\rk=2");
    for (const char* const section :
         {"", "one", "ONE", " one ", "two", "three", "fo]ur", "fo", "open", "five", "six", "seven"})
        for (const char* const entry : {"top", "k", "sp", " sp ", "q", "q2", "half", "bare",
                                        "empty", "eq", "", "#no", "b", "late", "lf", "cr", "none"})
            EXPECT_EQ(our_text(section, entry), system_text(section, entry))
                << section << '/' << entry;
}

TEST_F(ProfileFunctions, OfIntegers_BothReadTheSame)
{
    const std::vector<std::string> numbers = {
        "12",    "-12", "+12", "0x1F",        "abc",        "12abc", " 12",        "",
        "\"7\"", "'8'", "- 5", "99999999999", "4294967295", "-1",    "010",        "0b11",
        "0o17",  "1.9", "-",   "4294967297",  "-0x10",      "0x",    "2147483648", "-2147483649"};
    std::string bytes = "[s]\r\n";
    for (std::size_t i = 0; i < numbers.size(); ++i)
        bytes += std::to_string(i) + "=" + numbers[i] + "\r\n";
    set_file(bytes);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const std::string entry = std::to_string(i);
        std::uint32_t value = 77;
        static_cast<void>(store_.read_int("s", entry.c_str(), value));  // else the default stays
        EXPECT_EQ(value, system_int(entry.c_str())) << numbers[i];
    }
}

TEST_F(ProfileFunctions, WhatWeWrite_TheyRead)
{
    const std::vector<std::string> values = {"v",   "a b", "\"q\"", "",    "a=b",
                                             "[x]", "; c", "'",     "-12", "\xC3\xA4"};
    for (std::size_t i = 0; i < values.size(); ++i)
        ASSERT_TRUE(store_.write_text(i % 2 == 0 ? "even" : "Odd \xC3\xA4",
                                      ("entry " + std::to_string(i)).c_str(), values[i].c_str()));
    ASSERT_TRUE(store_.remove_entry("even", "entry 0"));
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::string section = i % 2 == 0 ? "even" : "Odd \xC3\xA4";
        const std::string entry = "entry " + std::to_string(i);
        EXPECT_EQ(system_text(section, entry), our_text(section, entry));
    }
    EXPECT_EQ(system_text("even", "entry 0"), "none");
    EXPECT_EQ(system_text("even", "entry 2"), "q");
}

TEST_F(ProfileFunctions, WhatTheyWrite_WeRead)
{
    system_write("s", "text", "a b");
    system_write("s", "quoted", "\" x \"");
    system_write("s", "empty", "");
    system_write("t", "number", "-5");
    system_write("t", "\xC3\xA4", "\xE4\xB8\xAD");
    system_write("s", "text", "changed");

    EXPECT_EQ(our_text("s", "text"), "changed");
    EXPECT_EQ(our_text("s", "quoted"), " x ");
    EXPECT_EQ(our_text("s", "empty"), "");
    EXPECT_EQ(our_text("t", "number"), "-5");
    EXPECT_EQ(our_text("t", "\xC3\xA4"), "\xE4\xB8\xAD");
}

TEST_F(ProfileFunctions, ByTurns_BothSeeAllChanges)
{
    for (int i = 0; i < 20; ++i) {
        const std::string entry = "entry " + std::to_string(i);
        if (i % 2 == 0)
            system_write("s", entry.c_str(), "x");
        else
            EXPECT_TRUE(store_.write_text("s", entry.c_str(), "x"));
    }
    for (int i = 0; i < 20; ++i) {
        const std::string entry = "entry " + std::to_string(i);
        EXPECT_EQ(our_text("s", entry), "x");
        EXPECT_EQ(system_text("s", entry), "x");
    }
    system_write("s", nullptr, nullptr);
    EXPECT_EQ(our_text("s", "entry 0"), "none");
    EXPECT_TRUE(store_.write_text("s", "again", "y"));
    EXPECT_TRUE(store_.remove_section("s"));
    EXPECT_EQ(system_text("s", "again"), "none");
}

TEST_F(ProfileFunctions, Utf16File_BothReadAndWrite)
{
    set_file(std::string("\xFF\xFE[\0s\0]\0\r\0\n\0a\0=\0\xE4\0\r\0\n\0", 24));
    EXPECT_EQ(our_text("s", "a"), "\xC3\xA4");
    EXPECT_EQ(system_text("s", "a"), "\xC3\xA4");

    EXPECT_TRUE(store_.write_text("s", "b", "\xE4\xB8\xAD"));
    EXPECT_EQ(system_text("s", "b"), "\xE4\xB8\xAD");
    system_write("s", "c", "\xC3\xB6");
    EXPECT_EQ(our_text("s", "c"), "\xC3\xB6");
}

TEST_F(ProfileFunctions, ReadOnlyFile_IsReadAndNotWritten)
{
    set_file("[s]\r\ne=1\r\n");
    ASSERT_TRUE(::SetFileAttributesW(path().c_str(), FILE_ATTRIBUTE_READONLY));

    EXPECT_EQ(our_text("s", "e"), "1");
    EXPECT_FALSE(store_.write_text("s", "e", "2"));
    EXPECT_EQ(file(), "[s]\r\ne=1\r\n");
    EXPECT_TRUE(::SetFileAttributesW(path().c_str(), FILE_ATTRIBUTE_NORMAL));
}

TEST_F(ProfileFunctions, BeforeInitialize_SettingsAreThoseOfTheSystemsOwnFile)
{
    RegistryManager manager;
    constexpr const char* kSection = "ZMR_GV test of settings";

    EXPECT_EQ(manager.GetProfileIntA("entry", 5), 5u);
    EXPECT_FALSE(manager.WriteProfileInt("entry", 1));
    EXPECT_EQ(manager.GetProfileIntA(kSection, "entry", 5), 5u);
    ASSERT_TRUE(manager.WriteProfileInt(kSection, "entry", 6));
    EXPECT_EQ(::GetProfileIntA(kSection, "entry", 0), 6u);
    EXPECT_EQ(manager.GetProfileIntA(kSection, "entry", 5), 6u);
    EXPECT_TRUE(manager.WriteProfileStringA(kSection, nullptr, nullptr));
    EXPECT_EQ(manager.GetProfileIntA(kSection, "entry", 5), 5u);
}

TEST_F(ProfileFunctions, NameWithoutAFolder_IsTheSystemsFile)
{
    constexpr const char* kFile = "ZMR_GV test of settings.ini";
    RegistryManager manager;
    manager.Initialize(nullptr, kFile);
    EXPECT_TRUE(manager.WriteProfileInt("s", "e", 6));
    ::WritePrivateProfileStringA(nullptr, nullptr, nullptr, kFile);

    EXPECT_EQ(::GetPrivateProfileIntA("s", "e", 0, kFile), 6u);
    char folder[MAX_PATH];
    ASSERT_NE(::GetWindowsDirectoryA(folder, sizeof folder), 0u);
    EXPECT_TRUE(::DeleteFileA((std::string(folder) + "\\" + kFile).c_str()));
    EXPECT_TRUE(::DeleteFileA((std::string(folder) + "\\" + kFile + ".lock").c_str()));
}
