#include "settings/RegistryManager.h"

#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

/// A user whose folder of settings is a temporary one.
class SettingsPlace : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(setenv("XDG_CONFIG_HOME", folder_.file("config").c_str(), 1), 0);
        // The rights of files bind any other user than the superuser.
        constexpr uid_t kNobody = 65534;
        if (geteuid() == 0) {
            ASSERT_EQ(chown(folder_.path().c_str(), kNobody, static_cast<gid_t>(-1)), 0);
            ASSERT_EQ(seteuid(kNobody), 0);
            is_superuser_ = true;
        }
    }
    void TearDown() override
    {
        unsetenv("XDG_CONFIG_HOME");
        if (is_superuser_) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }
    [[nodiscard]] std::string bytes(const std::string& name) const
    {
        std::ifstream in(folder_.file(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    TemporaryFolder folder_;
    RegistryManager manager_;
    bool is_superuser_ = false;
};

}  // namespace

TEST_F(SettingsPlace, WithARegistryKey_IsAFileOfTheUser)
{
    manager_.Initialize("Company\\Line", "Program");
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 5), 5u);
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "config"));

    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 1));
    EXPECT_EQ(bytes("config/Company/Line/Program.ini"), "[s]\r\ne=1\r\n");
    EXPECT_EQ(manager_.GetAppRegistryKey(false), nullptr);
}

TEST_F(SettingsPlace, NameWithoutAFolder_LiesInTheUsersFolder)
{
    manager_.Initialize(nullptr, "program.ini");

    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 1));
    EXPECT_EQ(bytes("config/program.ini"), "[s]\r\ne=1\r\n");
}

TEST_F(SettingsPlace, WithoutConfiguredFolder_IsBelowTheHome)
{
    const std::string former_home = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "";
    unsetenv("XDG_CONFIG_HOME");
    setenv("HOME", folder_.file("home").c_str(), 1);
    manager_.Initialize("Company", "Program");

    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 1));
    setenv("HOME", former_home.c_str(), 1);
    EXPECT_EQ(bytes("home/.config/Company/Program.ini"), "[s]\r\ne=1\r\n");
}

TEST_F(SettingsPlace, BeforeInitialize_ReadsGiveDefaultsAndWritesFalse)
{
    EXPECT_EQ(manager_.GetProfileIntA("e", 5), 5u);
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 5), 5u);
    EXPECT_STREQ(manager_.GetProfileStringA("s", "e", "d"), "d");
    EXPECT_FALSE(manager_.WriteProfileInt("e", 1));
    EXPECT_FALSE(manager_.WriteProfileInt("s", "e", 1));
    EXPECT_FALSE(manager_.WriteProfileStringA("s", nullptr, nullptr));
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(SettingsPlace, SymbolicLink_StaysAndItsFileIsWritten)
{
    std::ofstream(folder_.file("real.ini")) << "[s]\ne=1\n";
    std::filesystem::create_symlink("real.ini", folder_.path() / "link.ini");
    manager_.Initialize(nullptr, folder_.file("link.ini").c_str());

    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 2));
    EXPECT_TRUE(std::filesystem::is_symlink(folder_.path() / "link.ini"));
    EXPECT_EQ(bytes("real.ini"), "[s]\ne=2\n");
}

TEST_F(SettingsPlace, RightsOfTheFile_AreKept)
{
    const std::string name = folder_.file("private.ini");
    std::ofstream(name) << "[s]\ne=1\n";
    ASSERT_EQ(chmod(name.c_str(), 0600), 0);
    manager_.Initialize(nullptr, name.c_str());

    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 2));
    EXPECT_EQ(std::filesystem::status(name).permissions(), std::filesystem::perms(0600));
}

TEST_F(SettingsPlace, ReadOnlyFile_IsReadAndNotWritten)
{
    const std::string name = folder_.file("fixed.ini");
    std::ofstream(name) << "[s]\ne=1\n";
    ASSERT_EQ(chmod(name.c_str(), 0444), 0);
    manager_.Initialize(nullptr, name.c_str());

    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 1u);
    EXPECT_FALSE(manager_.WriteProfileInt("s", "e", 2));
    EXPECT_FALSE(manager_.WriteProfileStringA("s", nullptr, nullptr));
    EXPECT_EQ(bytes("fixed.ini"), "[s]\ne=1\n");
}

TEST_F(SettingsPlace, ReadOnlyFolder_IsReadAndNotWritten)
{
    std::ofstream(folder_.file("fixed.ini")) << "[s]\ne=1\n";
    ASSERT_EQ(chmod(folder_.path().c_str(), 0555), 0);
    manager_.Initialize(nullptr, folder_.file("fixed.ini").c_str());

    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 1u);
    EXPECT_FALSE(manager_.WriteProfileInt("s", "e", 2));
    ASSERT_EQ(chmod(folder_.path().c_str(), 0755), 0);
    EXPECT_EQ(bytes("fixed.ini"), "[s]\ne=1\n");
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "fixed.ini.new"));
}

TEST_F(SettingsPlace, FileWithoutTheRightToRead_IsNotWritten)
{
    const std::string name = folder_.file("closed.ini");
    std::ofstream(name) << "[s]\ne=1\n";
    ASSERT_EQ(chmod(name.c_str(), 0200), 0);
    manager_.Initialize(nullptr, name.c_str());

    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 5), 5u);
    EXPECT_FALSE(manager_.WriteProfileInt("s", "e", 2));
    ASSERT_EQ(chmod(name.c_str(), 0600), 0);
    EXPECT_EQ(bytes("closed.ini"), "[s]\ne=1\n");
}
