#include "settings/RegistryManager.h"

#include "platform/StringTable.h"
#include "settings/SettingsBatch.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

/// A manager whose settings lie in a file, and one of an older installation.
class RegistryManagerInAFile : public testing::Test {
protected:
    RegistryManagerInAFile() { manager_.Initialize(nullptr, file_.c_str()); }

    [[nodiscard]] static std::string bytes_of(const std::string& file)
    {
        std::ifstream in(std::filesystem::path(std::u8string(file.begin(), file.end())),
                         std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static void set_bytes(const std::string& file, const std::string& bytes)
    {
        std::ofstream out(std::filesystem::path(std::u8string(file.begin(), file.end())),
                          std::ios::binary);
        out << bytes;
    }
    /// The manager of the older installation itself.
    [[nodiscard]] RegistryManager older() const
    {
        RegistryManager manager;
        manager.Initialize(nullptr, older_file_.c_str());
        return manager;
    }
    void import() { manager_.ImportRegistry(nullptr, older_file_.c_str()); }
    /// Reads a binary value; what it is, or one byte 255 when there is none.
    [[nodiscard]] static std::vector<unsigned char> binary(RegistryManager& manager,
                                                           const char* section, const char* entry)
    {
        unsigned char* data = nullptr;
        unsigned bytes = 77;
        if (!manager.GetProfileBinary(section, entry, &data, &bytes)) {
            EXPECT_EQ(data, nullptr);
            EXPECT_EQ(bytes, 0u);
            return {255};
        }
        std::vector<unsigned char> value(data, data + bytes);
        ::operator delete(data);
        return value;
    }

    TemporaryFolder folder_;
    std::string file_ = folder_.file("settings.ini");
    std::string older_file_ = folder_.file("older.ini");
    RegistryManager manager_;
};

const std::vector<unsigned char> kNothing{255};

}  // namespace

TEST(RegistryManager, NewOne_HasNoNames)
{
    const RegistryManager manager;

    EXPECT_EQ(manager.GetSection(), nullptr);
    EXPECT_STREQ(manager.GetRegistryKey(), "");
    EXPECT_STREQ(manager.GetProfileName(), "");
    EXPECT_STREQ(manager.GetRootKey(), "software\\\\");
}

TEST(RegistryManager, Get_IsOneObject)
{
    EXPECT_EQ(RegistryManager::get(), RegistryManager::get());
    EXPECT_NE(RegistryManager::get(), nullptr);
}

TEST(RegistryManager, Initialize_SetsAllNamesAndTheFirstSection)
{
    RegistryManager manager;
    manager.Initialize("Company", "Program");

    EXPECT_STREQ(manager.GetRegistryKey(), "Company");
    EXPECT_STREQ(manager.GetProfileName(), "Program");
    EXPECT_STREQ(manager.GetRootKey(), "software\\Company\\Program");
    EXPECT_STREQ(manager.GetSection(), "tmp");
}

TEST(RegistryManager, NullArguments_AreNamesThatAreUnset)
{
    RegistryManager manager;
    manager.Initialize(nullptr, nullptr);
    manager.SetRegistryKey(nullptr);
    manager.SetSection(nullptr);

    EXPECT_EQ(manager.GetSection(), nullptr);
    EXPECT_STREQ(manager.GetRootKey(), "software\\\\");
}

TEST(RegistryManager, SetSection_TheFormerTextStaysValid)
{
    RegistryManager manager;
    manager.SetSection("one");
    const char* const former = manager.GetSection();
    manager.SetSection("two");
    EXPECT_STREQ(manager.GetSection(), "two");

    EXPECT_STREQ(former, "one");
    manager.SetSection(former);
    EXPECT_STREQ(manager.GetSection(), "one");
}

TEST(RegistryManager, SetSectionOfAMissingText_IsEmpty)
{
    RegistryManager manager;
    manager.SetSection(64999u);

    EXPECT_STREQ(manager.GetSection(), "");
}

TEST(RegistryManager, SetRegistryKeyOfAMissingText_IsEmpty)
{
    RegistryManager manager;
    manager.Initialize("key", "app");
    manager.SetRegistryKey(64999u);

    EXPECT_STREQ(manager.GetRegistryKey(), "");
    EXPECT_STREQ(manager.GetProfileName(), "app");
}

TEST(RegistryManager, SetRegistryKeyOfATextOfTheProgram_IsCutTo255Bytes)
{
    const auto former = zmr::set_string_lookup([](UINT id, std::string& text) {
        text = id == 50'001 ? "Company" : std::string(400, 'c');
        return id == 50'001 || id == 50'002;
    });
    RegistryManager manager;
    manager.Initialize(nullptr, "app");
    manager.SetRegistryKey(50'001u);
    EXPECT_STREQ(manager.GetRootKey(), "software\\Company\\app");
    manager.SetRegistryKey(50'002u);
    zmr::set_string_lookup(former);

    EXPECT_EQ(manager.GetRegistryKey().view(), std::string(255, 'c'));
}

TEST(RegistryManager, Copies_ShareTheNamesOfThatMoment)
{
    RegistryManager one;
    one.Initialize("key", "app");
    RegistryManager copy;
    copy = one;
    const RegistryManager other(one);
    one.Initialize("another", "name");

    EXPECT_STREQ(copy.GetRootKey(), "software\\key\\app");
    EXPECT_STREQ(other.GetRootKey(), "software\\key\\app");
    EXPECT_STREQ(copy.GetSection(), "tmp");
}

TEST_F(RegistryManagerInAFile, AbsentValues_AreTheDefaultsAndNothingIsMade)
{
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 5), 5u);
    EXPECT_EQ(static_cast<std::int32_t>(manager_.GetProfileIntA("s", "e", -5)), -5);
    EXPECT_STREQ(manager_.GetProfileStringA("s", "e", " d "), " d ");
    EXPECT_STREQ(manager_.GetProfileStringA("s", "e", nullptr), "");
    EXPECT_STREQ(manager_.GetProfileStringA("s", "e"), "");
    EXPECT_EQ(binary(manager_, "s", "e"), kNothing);
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(RegistryManagerInAFile, Values_ComeBackInBothForms)
{
    const std::vector<unsigned char> bytes{0x3C, 0, 255};
    manager_.SetSection("two");
    EXPECT_EQ(manager_.WriteProfileInt("one", "int", 5), 1);
    EXPECT_EQ(manager_.WriteProfileInt("int", 6), 1);
    EXPECT_EQ(manager_.WriteProfileStringA("one", "text", "a b"), 1);
    EXPECT_EQ(manager_.WriteProfileStringA("text", "c"), 1);
    EXPECT_EQ(manager_.WriteProfileBinary("one", "binary", bytes.data(), 3), 1);
    EXPECT_EQ(manager_.WriteProfileBinary("binary", bytes.data(), 2), 1);

    EXPECT_EQ(manager_.GetProfileIntA("one", "int", 0), 5u);
    EXPECT_EQ(manager_.GetProfileIntA("int", 0), 6u);
    EXPECT_EQ(manager_.GetProfileIntA("two", "int", 0), 6u);
    EXPECT_STREQ(manager_.GetProfileStringA("one", "text", ""), "a b");
    EXPECT_STREQ(manager_.GetProfileStringA("two", "text", ""), "c");
    EXPECT_EQ(binary(manager_, "one", "binary"), bytes);
    unsigned char* data = nullptr;
    unsigned count = 0;
    EXPECT_EQ(manager_.GetProfileBinary("binary", &data, &count), 1);
    EXPECT_EQ(count, 2u);
    ::operator delete(data);
    EXPECT_EQ(bytes_of(file_),
              "[one]\r\nint=5\r\ntext=a b\r\nbinary=MDAAPP\r\n"
              "[two]\r\nint=6\r\ntext=c\r\nbinary=MDAA\r\n");
}

TEST_F(RegistryManagerInAFile, MinusOne_ComesBackThrough32Bits)
{
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", -1));

    const unsigned value = manager_.GetProfileIntA("s", "e", 0);
    EXPECT_EQ(value, 4294967295u);
    EXPECT_EQ(long{static_cast<std::int32_t>(value)}, -1L);
}

TEST_F(RegistryManagerInAFile, NullEntry_RemovesTheWholeSection)
{
    set_bytes(file_, "[s]\na=1\n; c\n[t]\nb=2\n");

    EXPECT_TRUE(manager_.WriteProfileStringA("s", nullptr, nullptr));
    EXPECT_EQ(bytes_of(file_), "; c\n[t]\nb=2\n");
}

TEST_F(RegistryManagerInAFile, NullValue_RemovesTheEntry)
{
    set_bytes(file_, "[s]\na=1\nb=2\n");

    EXPECT_TRUE(manager_.WriteProfileStringA("s", "a", nullptr));
    EXPECT_TRUE(manager_.WriteProfileStringA("s", "missing", nullptr));
    EXPECT_EQ(bytes_of(file_), "[s]\nb=2\n");
}

TEST_F(RegistryManagerInAFile, NullNames_ReadAsMissingAndWriteNothing)
{
    set_bytes(file_, "[s]\na=1\n");
    const unsigned char byte = 1;
    const char* const null = nullptr;
    unsigned char* data = nullptr;
    unsigned bytes = 0;

    EXPECT_EQ(manager_.GetProfileIntA(null, "a", 5), 5u);
    EXPECT_EQ(manager_.GetProfileIntA("s", null, 5), 5u);
    EXPECT_STREQ(manager_.GetProfileStringA(null, "a", "d"), "d");
    EXPECT_STREQ(manager_.GetProfileStringA("s", null, "d"), "d");
    EXPECT_FALSE(manager_.GetProfileBinary(null, "a", &data, &bytes));
    EXPECT_FALSE(manager_.GetProfileBinary("s", null, &data, &bytes));
    EXPECT_FALSE(manager_.GetProfileBinary("s", "a", nullptr, &bytes));
    EXPECT_FALSE(manager_.GetProfileBinary("s", "a", &data, nullptr));
    EXPECT_FALSE(manager_.WriteProfileInt(null, "a", 2));
    EXPECT_FALSE(manager_.WriteProfileInt("s", null, 2));
    EXPECT_FALSE(manager_.WriteProfileStringA(null, "a", "2"));
    EXPECT_FALSE(manager_.WriteProfileStringA(null, null, null));
    EXPECT_FALSE(manager_.WriteProfileBinary(null, "a", &byte, 1));
    EXPECT_FALSE(manager_.WriteProfileBinary("s", null, &byte, 1));
    EXPECT_FALSE(manager_.WriteProfileBinary("s", "a", nullptr, 1));
    EXPECT_EQ(bytes_of(file_), "[s]\na=1\n");
}

TEST_F(RegistryManagerInAFile, BinaryOfZeroBytes_IsNotThereAfterwards)
{
    EXPECT_TRUE(manager_.WriteProfileBinary("s", "e", nullptr, 0));

    EXPECT_EQ(bytes_of(file_), "[s]\r\ne=\r\n");
    EXPECT_EQ(binary(manager_, "s", "e"), kNothing);
}

TEST_F(RegistryManagerInAFile, BinaryTextOfOddLength_IsRefused)
{
    set_bytes(file_, "[s]\nodd=MDA\nforeign=M!\n");

    EXPECT_EQ(binary(manager_, "s", "odd"), kNothing);
    EXPECT_EQ(binary(manager_, "s", "foreign"), kNothing);
}

TEST_F(RegistryManagerInAFile, LargeBinary_ComesBackWhole)
{
    std::vector<unsigned char> bytes(100 * 1024);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i * 31 >> 3);
    ASSERT_TRUE(
        manager_.WriteProfileBinary("s", "e", bytes.data(), static_cast<unsigned>(bytes.size())));

    EXPECT_EQ(binary(manager_, "s", "e"), bytes);
}

TEST_F(RegistryManagerInAFile, LongText_IsCutAt4095Bytes)
{
    const std::string text(5000, 't');
    EXPECT_TRUE(manager_.WriteProfileStringA("s", "e", text.c_str()));

    EXPECT_EQ(manager_.GetProfileStringA("s", "e", "").GetLength(), 4095);
}

TEST_F(RegistryManagerInAFile, ThereAreNoKeysOfTheRegistry)
{
    EXPECT_EQ(manager_.GetAppRegistryKey(true), nullptr);
    EXPECT_EQ(manager_.GetSectionKey("s", true), nullptr);
    EXPECT_EQ(manager_.GetSectionKey(nullptr, false), nullptr);
}

TEST_F(RegistryManagerInAFile, AnotherInitialize_ChangesWhereCallsGo)
{
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 1));
    manager_.Initialize(nullptr, older_file_.c_str());
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 0u);
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 2));

    manager_.Initialize(nullptr, file_.c_str());
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 1u);
}

TEST_F(RegistryManagerInAFile, WhatAnotherProgramWrote_IsSeenAtOnce)
{
    set_bytes(file_, "[s]\ne=1\n");
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 1u);
    set_bytes(file_, "[s]\ne=2\n");

    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 2u);
}

TEST_F(RegistryManagerInAFile, Import_IsArmedOnTheFirstStartOnly)
{
    older().WriteProfileInt("s", "e", 7);
    import();
    EXPECT_EQ(manager_.GetProfileIntA("RegistryImport", "Imported", 0), 1u);
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 7u);
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 8));

    import();  // as a second start does
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 8u);
}

TEST_F(RegistryManagerInAFile, ImportOfAnInteger_TakesOneThatDiffersFromTheDefault)
{
    older().WriteProfileInt("s", "same", 5);
    older().WriteProfileInt("s", "other", 6);
    EXPECT_TRUE(manager_.WriteProfileInt("s", "same", 1));
    EXPECT_TRUE(manager_.WriteProfileInt("s", "other", 2));
    import();

    EXPECT_EQ(manager_.GetProfileIntA("s", "same", 5), 1u);
    EXPECT_EQ(manager_.GetProfileIntA("s", "other", 5), 6u);
    RegistryManager current;
    current.Initialize(nullptr, file_.c_str());
    EXPECT_EQ(current.GetProfileIntA("s", "same", 0), 1u);
    EXPECT_EQ(current.GetProfileIntA("s", "other", 0), 6u);
}

TEST_F(RegistryManagerInAFile, ImportOfAText_TakesOneThatIsNotEmpty)
{
    older().WriteProfileStringA("s", "empty", "");
    older().WriteProfileStringA("s", "text", "default");
    EXPECT_TRUE(manager_.WriteProfileStringA("s", "empty", "new"));
    EXPECT_TRUE(manager_.WriteProfileStringA("s", "text", "new"));
    import();

    EXPECT_STREQ(manager_.GetProfileStringA("s", "empty", "default"), "new");
    EXPECT_STREQ(manager_.GetProfileStringA("s", "text", "default"), "default");
    RegistryManager current;
    current.Initialize(nullptr, file_.c_str());
    EXPECT_STREQ(current.GetProfileStringA("s", "text", ""), "default");
}

TEST_F(RegistryManagerInAFile, ImportOfBinary_TakesAnyThatIsThere)
{
    const unsigned char old_bytes[] = {1, 2};
    const unsigned char new_bytes[] = {3};
    older().WriteProfileBinary("s", "both", old_bytes, 2);
    EXPECT_TRUE(manager_.WriteProfileBinary("s", "both", new_bytes, 1));
    EXPECT_TRUE(manager_.WriteProfileBinary("s", "new", new_bytes, 1));
    import();

    EXPECT_EQ(binary(manager_, "s", "both"), (std::vector<unsigned char>{1, 2}));
    EXPECT_EQ(binary(manager_, "s", "new"), (std::vector<unsigned char>{3}));
    EXPECT_EQ(binary(manager_, "s", "none"), kNothing);
}

TEST_F(RegistryManagerInAFile, Import_TakesOnlyWhatIsReadAndLeavesTheOlderFile)
{
    older().WriteProfileInt("s", "read", 1);
    older().WriteProfileInt("s", "unread", 2);
    const std::string before = bytes_of(older_file_);
    import();
    EXPECT_EQ(manager_.GetProfileIntA("s", "read", 0), 1u);
    EXPECT_TRUE(manager_.WriteProfileInt("s", "written", 3));

    EXPECT_EQ(bytes_of(older_file_), before);
    EXPECT_EQ(bytes_of(file_), "[RegistryImport]\r\nImported=1\r\n[s]\r\nread=1\r\nwritten=3\r\n");
}

TEST_F(RegistryManagerInAFile, WhileItImports_TheOldValueWinsEachTimeItIsRead)
{
    older().WriteProfileInt("s", "e", 1);
    import();
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 1u);
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 2));

    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 1u);
}

TEST_F(RegistryManagerInAFile, ImportReads_LeaveTheCurrentNames)
{
    older().WriteProfileInt("s", "e", 1);
    import();
    static_cast<void>(manager_.GetProfileIntA("s", "e", 0));
    static_cast<void>(manager_.GetProfileStringA("s", "e", ""));
    static_cast<void>(binary(manager_, "s", "missing"));

    EXPECT_EQ(manager_.GetProfileName().view(), file_);
    EXPECT_STREQ(manager_.GetRegistryKey(), "");
}

TEST_F(RegistryManagerInAFile, ImportFromTheSameName_IsStillTwoPlaces)
{
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 4));
    manager_.ImportRegistry(nullptr, file_.c_str());

    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 4u);
}

TEST_F(RegistryManagerInAFile, ImportFromNullNames_FindsNothing)
{
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 4));
    manager_.ImportRegistry("no such key of this program", nullptr);

    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 4u);
    EXPECT_STREQ(manager_.GetProfileStringA("s", "none", ""), "");
    EXPECT_EQ(binary(manager_, "s", "e"), kNothing);
}

TEST_F(RegistryManagerInAFile, ImportIntoAFileThatCannotBeWritten_StillGivesTheOldValues)
{
    older().WriteProfileInt("s", "e", 7);
    std::filesystem::create_directory(folder_.path() / "settings.ini");
    import();

    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 7u);
}

TEST_F(RegistryManagerInAFile, Batch_IsWrittenAtItsCommit)
{
    zmr::SettingsBatch batch(manager_);
    EXPECT_TRUE(manager_.WriteProfileInt("s", "a", 1));
    EXPECT_TRUE(manager_.WriteProfileStringA("s", "b", "2"));
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "settings.ini"));
    EXPECT_EQ(manager_.GetProfileIntA("s", "a", 0), 1u);

    EXPECT_TRUE(batch.commit());
    EXPECT_EQ(bytes_of(file_), "[s]\r\na=1\r\nb=2\r\n");
}

TEST_F(RegistryManagerInAFile, BatchWithoutACommit_CommitsAtItsEnd)
{
    {
        const zmr::SettingsBatch batch(manager_);
        EXPECT_TRUE(manager_.WriteProfileInt("s", "a", 1));
    }
    EXPECT_EQ(manager_.GetProfileIntA("s", "a", 0), 1u);
}

TEST_F(RegistryManagerInAFile, BatchWithinABatch_EndsWithTheOuterOne)
{
    zmr::SettingsBatch batch(manager_);
    {
        zmr::SettingsBatch inner(manager_);
        EXPECT_TRUE(manager_.WriteProfileInt("s", "a", 1));
        EXPECT_TRUE(inner.commit());
    }
    EXPECT_EQ(bytes_of(file_), "");

    EXPECT_TRUE(batch.commit());
    EXPECT_EQ(bytes_of(file_), "[s]\r\na=1\r\n");
}

TEST_F(RegistryManagerInAFile, BatchWhoseFileCannotBeWritten_SaysSo)
{
    std::filesystem::create_directory(folder_.path() / "settings.ini");
    zmr::SettingsBatch batch(manager_);

    EXPECT_FALSE(manager_.WriteProfileInt("s", "a", 1));
    EXPECT_TRUE(batch.commit());
    const TemporaryFolder gone;
    manager_.Initialize(nullptr, gone.file("missing/settings.ini").c_str());
    zmr::SettingsBatch other(manager_);
    EXPECT_TRUE(manager_.WriteProfileInt("s", "a", 1));
    EXPECT_FALSE(other.commit());
}

TEST_F(RegistryManagerInAFile, BatchWhileTheNamesChange_KeepsEachValueInItsFile)
{
    zmr::SettingsBatch batch(manager_);
    EXPECT_TRUE(manager_.WriteProfileInt("s", "a", 1));
    manager_.Initialize(nullptr, older_file_.c_str());
    EXPECT_TRUE(manager_.WriteProfileInt("s", "b", 2));
    EXPECT_TRUE(batch.commit());

    EXPECT_EQ(bytes_of(file_), "[s]\r\na=1\r\n");
    EXPECT_EQ(bytes_of(older_file_), "[s]\r\nb=2\r\n");
}
