#include "settings/IniStore.h"

#include "tests/TemporaryFolder.h"
#include "tests/store/FaultyFileSystem.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using zmr::IniStore;
using namespace std::string_literals;

namespace {

constexpr const char* kName = "settings.ini";

/// A store on a file in memory.
class IniStoreInMemory : public testing::Test {
protected:
    [[nodiscard]] std::string file() { return system_.bytes(kName); }
    void set_file(const std::string& bytes) { system_.set_bytes(kName, bytes); }
    [[nodiscard]] std::string text(const char* section, const char* entry)
    {
        std::string value = "none";
        return store_.read_text(section, entry, value) ? value : "none";
    }
    [[nodiscard]] std::int64_t number(const std::string& value)
    {
        set_file("[s]\nn=" + value + "\n");
        std::uint32_t found = 0;
        return store_.read_int("s", "n", found) ? found : std::int64_t{-1};
    }

    zmr::FaultyFileSystem system_;
    IniStore store_{system_, kName};
};

/// Files in memory that others hold for a while.
class BusyFileSystem final : public zmr::FileSystemDevice {
public:
    int refused_opens = 0;  ///< Of the settings file itself.
    int refused_locks = 0;
    int refused_renames = 0;

    std::unique_ptr<zmr::FileDevice> open(const std::string& name, zmr::FileAccess access,
                                          zmr::FileCreate create, zmr::FileShare share,
                                          zmr::FileError& error) override
    {
        if (name == kName && refuse(refused_opens)) {
            error = {zmr::FileErrorKind::InUse, 32};
            return nullptr;
        }
        auto file = files_.open(name, access, create, share, error);
        if (file == nullptr || name != kName + ".lock"s)
            return file;
        // Who else holds the lock is another device on the same file.
        if (refused_locks > 0) {
            holder_ = files_.open(name, access, create, share, error);
            EXPECT_FALSE(holder_->lock(0, 1, zmr::FileLockKind::Exclusive));
        }
        return std::make_unique<Watched>(std::move(file), *this);
    }
    zmr::FileError rename(const std::string& from, const std::string& to) override
    {
        if (refuse(refused_renames))
            return {zmr::FileErrorKind::AccessDenied, 5};
        return files_.rename(from, to);
    }
    zmr::FileError remove(const std::string& name) override { return files_.remove(name); }
    zmr::FileError sync_directory_of(const std::string& name) override
    {
        return files_.sync_directory_of(name);
    }

private:
    static bool refuse(int& count) { return count > 0 && count-- > 0; }

    /// Lets the other holder go after so many tries.
    class Watched final : public zmr::FileDevice {
    public:
        Watched(std::unique_ptr<zmr::FileDevice> file, BusyFileSystem& system)
            : file_(std::move(file)), system_(system)
        {
        }
        zmr::FileError read_at(std::uint64_t position, void* data, std::size_t size,
                               std::size_t& done) const override
        {
            return file_->read_at(position, data, size, done);
        }
        zmr::FileError write_at(std::uint64_t position, const void* data, std::size_t size) override
        {
            return file_->write_at(position, data, size);
        }
        zmr::FileError length(std::uint64_t& bytes) const override { return file_->length(bytes); }
        zmr::FileError set_length(std::uint64_t bytes) override { return file_->set_length(bytes); }
        zmr::FileError sync() override { return file_->sync(); }
        zmr::FileError lock(std::uint64_t position, std::uint64_t size,
                            zmr::FileLockKind kind) override
        {
            if (!refuse(system_.refused_locks))
                system_.holder_.reset();
            return file_->lock(position, size, kind);
        }
        void unlock(std::uint64_t position, std::uint64_t size) override
        {
            file_->unlock(position, size);
        }
        bool is_locked_by_other(std::uint64_t position, std::uint64_t size) const override
        {
            return file_->is_locked_by_other(position, size);
        }
        zmr::FileError identity(zmr::FileIdentity& identity) const override
        {
            return file_->identity(identity);
        }
        void advise_random() override { file_->advise_random(); }

    private:
        std::unique_ptr<zmr::FileDevice> file_;
        BusyFileSystem& system_;
    };

    zmr::FaultyFileSystem files_;
    std::unique_ptr<zmr::FileDevice> holder_;
};

}  // namespace

TEST_F(IniStoreInMemory, MissingFile_ReadsNothingAndMakesNoFile)
{
    std::uint32_t value = 7;
    zmr::SettingsBytes bytes;
    unsigned size = 0;

    EXPECT_EQ(text("s", "e"), "none");
    EXPECT_FALSE(store_.read_int("s", "e", value));
    EXPECT_FALSE(store_.read_binary("s", "e", bytes, size));
    EXPECT_EQ(value, 7u);
    EXPECT_FALSE(system_.has(kName));
}

TEST_F(IniStoreInMemory, Write_MakesTheFile)
{
    EXPECT_TRUE(store_.write_text("s", "e", "value"));

    EXPECT_EQ(file(), "[s]\r\ne=value\r\n");
    EXPECT_EQ(text("s", "e"), "value");
}

TEST_F(IniStoreInMemory, RemovalFromAMissingFile_IsTrueAndMakesNone)
{
    EXPECT_TRUE(store_.remove_entry("s", "e"));
    EXPECT_TRUE(store_.remove_section("s"));
    EXPECT_FALSE(system_.has(kName));
}

TEST_F(IniStoreInMemory, WriteThatChangesNothing_WritesNothing)
{
    EXPECT_TRUE(store_.write_text("s", "e", "value"));
    const auto before = system_.operations();

    EXPECT_TRUE(store_.write_text("s", "e", "value"));
    EXPECT_EQ(system_.operations(), before);
}

TEST_F(IniStoreInMemory, Integers_AreReadAsTheSystemDoes)
{
    EXPECT_EQ(number("12"), 12);
    EXPECT_EQ(number(" \t12"), 12);
    EXPECT_EQ(number("+12"), 12);
    EXPECT_EQ(number("-12"), 4294967284);
    EXPECT_EQ(number("12abc"), 12);
    EXPECT_EQ(number("1.9"), 1);
    EXPECT_EQ(number("010"), 10);
    EXPECT_EQ(number("0x1F"), 31);
    EXPECT_EQ(number("-0x10"), 4294967280);
    EXPECT_EQ(number("0o17"), 15);
    EXPECT_EQ(number("0b11"), 3);
    EXPECT_EQ(number("\"7\""), 7);
    EXPECT_EQ(number("- 5"), 0);
    EXPECT_EQ(number("-"), 0);
    EXPECT_EQ(number("abc"), 0);
    EXPECT_EQ(number("4294967295"), 4294967295);
    EXPECT_EQ(number("4294967297"), 1);
    EXPECT_EQ(number("99999999999"), 1215752191);
}

TEST_F(IniStoreInMemory, EmptyIntegers_AreMissing)
{
    EXPECT_EQ(number(""), -1);
    EXPECT_EQ(number("\"\""), -1);
}

TEST_F(IniStoreInMemory, NegativeInteger_ComesBackAsItsBits)
{
    EXPECT_TRUE(store_.write_int("s", "n", -1));
    EXPECT_TRUE(store_.write_int("s", "least", std::numeric_limits<std::int32_t>::min()));

    EXPECT_EQ(file(), "[s]\r\nn=-1\r\nleast=-2147483648\r\n");
    std::uint32_t value = 0;
    EXPECT_TRUE(store_.read_int("s", "n", value));
    EXPECT_EQ(value, 0xFFFFFFFFu);
    EXPECT_TRUE(store_.read_int("s", "least", value));
    EXPECT_EQ(value, 0x80000000u);
}

TEST_F(IniStoreInMemory, LongText_IsCutWhenItIsRead)
{
    const std::string value(9000, 'v');
    EXPECT_TRUE(store_.write_text("s", "e", value.c_str()));

    EXPECT_EQ(text("s", "e"), value.substr(0, 4095));
    EXPECT_EQ(file(), "[s]\r\ne=" + value + "\r\n");
}

TEST_F(IniStoreInMemory, LongText_IsCutBetweenCharacters)
{
    std::string value;
    while (value.size() < 5000)
        value += "\xC3\xA4";
    EXPECT_TRUE(store_.write_text("s", "e", value.c_str()));

    EXPECT_EQ(text("s", "e"), value.substr(0, 4094));
}

TEST_F(IniStoreInMemory, LargeBinary_IsNotCut)
{
    std::vector<unsigned char> bytes(100 * 1024);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i * 7 + i / 256);
    ASSERT_TRUE(store_.write_binary("s", "e", bytes));

    zmr::SettingsBytes found;
    unsigned size = 0;
    ASSERT_TRUE(store_.read_binary("s", "e", found, size));
    EXPECT_EQ(std::vector<unsigned char>(found.get(), found.get() + size), bytes);
}

TEST_F(IniStoreInMemory, OddOrForeignBinaryText_IsRefused)
{
    set_file("[s]\nodd=ABC\nforeign=AZ\nempty=\nlower=ab\n");
    for (const char* const entry : {"odd", "foreign", "empty", "lower"}) {
        zmr::SettingsBytes bytes;
        unsigned size = 5;
        EXPECT_FALSE(store_.read_binary("s", entry, bytes, size)) << entry;
        EXPECT_EQ(bytes, nullptr);
        EXPECT_EQ(size, 5u);
    }
}

TEST_F(IniStoreInMemory, FileAboveTheLimit_ReadsNothingAndIsNotWritten)
{
    set_file("[s]\ne=1\n" + std::string(zmr::SettingsFile::kMostBytes, ';'));
    const std::string before = file();

    EXPECT_EQ(text("s", "e"), "none");
    EXPECT_FALSE(store_.write_text("s", "e", "2"));
    EXPECT_EQ(file(), before);
}

TEST_F(IniStoreInMemory, WriteAboveTheLimit_IsRefused)
{
    const std::vector<unsigned char> bytes(zmr::SettingsFile::kMostBytes / 2);
    EXPECT_TRUE(store_.write_text("s", "e", "1"));

    EXPECT_FALSE(store_.write_binary("s", "big", bytes));
    EXPECT_EQ(file(), "[s]\r\ne=1\r\n");
}

TEST_F(IniStoreInMemory, FileWithZeroBytes_IsReadAndNotWritten)
{
    const std::string damaged = "[s]\ne=1\n\0\0\0\0"s;
    set_file(damaged);

    EXPECT_EQ(text("s", "e"), "1");
    EXPECT_FALSE(store_.write_text("s", "e", "2"));
    EXPECT_FALSE(store_.remove_section("s"));
    store_.begin();
    EXPECT_FALSE(store_.write_text("s", "e", "2"));
    EXPECT_TRUE(store_.commit());
    EXPECT_EQ(file(), damaged);
}

TEST_F(IniStoreInMemory, ValueWithAZeroByte_EndsThere)
{
    set_file("[s]\ne=12\0 34\n"s);

    EXPECT_EQ(text("s", "e"), "12");
}

TEST_F(IniStoreInMemory, FailingRead_GivesWhatIsThereAndForbidsWriting)
{
    const std::string before = "[s]\ne=1\n";
    set_file(before);
    system_.fail_reads_from(1);

    EXPECT_FALSE(store_.write_text("s", "e", "2"));
    system_.heal();
    EXPECT_EQ(file(), before);
    EXPECT_EQ(text("s", "e"), "1");
}

TEST_F(IniStoreInMemory, Utf16File_KeepsItsEncoding)
{
    set_file("\xFF\xFE[\0s\0]\0\n\0e\0=\0\xE4\0\n\0"s);

    EXPECT_EQ(text("s", "e"), "\xC3\xA4");
    EXPECT_TRUE(store_.write_text("s", "f", "\xC3\xB6"));
    EXPECT_EQ(file(), "\xFF\xFE[\0s\0]\0\n\0e\0=\0\xE4\0\n\0f\0=\0\xF6\0\n\0"s);
    EXPECT_FALSE(store_.write_text("s", "f", "\xFF"));
}

TEST_F(IniStoreInMemory, BrokenUtf16File_IsReadAndNotWritten)
{
    const std::string broken =
        "\xFF\xFE[\0s\0]\0\n\0e\0=\0"s
        "1\0\n\0\x3D\xD8"s;
    set_file(broken);

    EXPECT_EQ(text("s", "e"), "1");
    EXPECT_FALSE(store_.write_text("s", "e", "2"));
    EXPECT_EQ(file(), broken);
}

TEST_F(IniStoreInMemory, ChangeThatPutsAMarkInFront_IsRefused)
{
    const std::string before = "first=1\n\xFF\xFEsecond=2\n";
    set_file(before);

    EXPECT_FALSE(store_.remove_entry("", "first"));
    EXPECT_EQ(file(), before);
    EXPECT_TRUE(store_.write_text("", "first", "3"));
}

TEST_F(IniStoreInMemory, Batch_IsOneUpdateAndItsReadsSeeIt)
{
    EXPECT_TRUE(store_.write_text("s", "old", "1"));
    const auto before = system_.operations();
    store_.begin();
    EXPECT_TRUE(store_.remove_section("s"));
    EXPECT_TRUE(store_.write_text("s", "a", "1"));
    EXPECT_TRUE(store_.write_int("s", "b", 2));

    EXPECT_EQ(text("s", "a"), "1");
    EXPECT_EQ(text("s", "old"), "none");
    EXPECT_EQ(system_.operations(), before);
    EXPECT_EQ(file(), "[s]\r\nold=1\r\n");
    EXPECT_TRUE(store_.commit());
    EXPECT_EQ(file(), "[s]\r\na=1\r\nb=2\r\n");
    EXPECT_EQ(system_.operations() - before, 5u);  // of one update
}

TEST_F(IniStoreInMemory, Batch_KeepsWhatOthersWroteMeanwhile)
{
    IniStore other(system_, kName);
    store_.begin();
    EXPECT_TRUE(store_.write_text("s", "mine", "1"));
    EXPECT_TRUE(other.write_text("s", "theirs", "2"));

    EXPECT_TRUE(store_.commit());
    EXPECT_EQ(text("s", "mine"), "1");
    EXPECT_EQ(text("s", "theirs"), "2");
}

TEST_F(IniStoreInMemory, RefusedWriteInABatch_LeavesTheRest)
{
    store_.begin();
    EXPECT_TRUE(store_.write_text("s", "a", "1"));
    EXPECT_FALSE(store_.write_text("s", "b", "x\ny"));

    EXPECT_TRUE(store_.commit());
    EXPECT_EQ(file(), "[s]\r\na=1\r\n");
}

// An update makes the new file, writes and syncs it, renames it and syncs the folder.
constexpr std::uint64_t kRename = 4;
constexpr std::uint64_t kLastOperation = 5;

TEST_F(IniStoreInMemory, FaultAtAnyOperation_LeavesTheFormerOrTheNewFile)
{
    for (std::uint64_t operation = 1; operation <= kLastOperation; ++operation) {
        ASSERT_TRUE(store_.write_text("s", "e", "before"));
        system_.fail_at(operation, zmr::FileErrorKind::DiskFull, false);

        EXPECT_FALSE(store_.write_text("s", "e", "after")) << operation;
        system_.heal();
        EXPECT_EQ(file(), operation <= kRename ? "[s]\r\ne=before\r\n" : "[s]\r\ne=after\r\n");
        EXPECT_FALSE(system_.has("settings.ini.new"));
    }
}

TEST_F(IniStoreInMemory, KillAtAnyOperation_LeavesTheFormerOrTheNewFile)
{
    for (std::uint64_t operation = 1; operation <= kLastOperation; ++operation)
        for (std::uint32_t seed = 0; seed < 20; ++seed) {
            ASSERT_TRUE(store_.write_text("s", "e", "before"));
            system_.stop_at(operation, seed);
            EXPECT_FALSE(store_.write_text("s", "e", "after"));
            system_.end_process();

            EXPECT_EQ(file(), operation <= kRename ? "[s]\r\ne=before\r\n" : "[s]\r\ne=after\r\n");
        }
}

TEST_F(IniStoreInMemory, PowerCutBeforeTheRename_LeavesTheFormerFile)
{
    for (std::uint64_t operation = 1; operation <= kRename; ++operation)
        for (std::uint32_t seed = 0; seed < 50; ++seed) {
            ASSERT_TRUE(store_.write_text("s", "e", "before"));
            system_.stop_at(operation, seed);
            EXPECT_FALSE(store_.write_text("s", "e", std::string(3000, 'a').c_str()));
            system_.lose_power(seed);

            EXPECT_EQ(text("s", "e"), "before");
        }
}

TEST_F(IniStoreInMemory, PowerCutAfterATrueAnswer_LosesNothing)
{
    for (std::uint32_t seed = 0; seed < 50; ++seed) {
        const std::string value = std::to_string(seed);
        ASSERT_TRUE(store_.write_text("s", "e", value.c_str()));
        system_.lose_power(seed);

        EXPECT_EQ(text("s", "e"), value);
    }
}

TEST(IniStore, LockThatOthersHoldForAWhile_IsWaitedFor)
{
    BusyFileSystem system;
    IniStore store(system, kName);
    system.refused_locks = 20;

    EXPECT_TRUE(store.write_text("s", "e", "1"));
    EXPECT_EQ(system.refused_locks, 0);
}

TEST(IniStore, ReadersThatHoldTheFile_AreWaitedFor)
{
    BusyFileSystem system;
    IniStore store(system, kName);
    ASSERT_TRUE(store.write_text("s", "e", "1"));
    system.refused_renames = 20;
    system.refused_opens = 3;

    EXPECT_TRUE(store.write_text("s", "e", "2"));
    EXPECT_EQ(system.refused_renames, 0);
    EXPECT_EQ(system.refused_opens, 0);
    std::string text;
    EXPECT_TRUE(store.read_text("s", "e", text));
    EXPECT_EQ(text, "2");
}

TEST(IniStore, WriterThatHoldsTheFile_IsWaitedForByReaders)
{
    BusyFileSystem system;
    IniStore store(system, kName);
    ASSERT_TRUE(store.write_text("s", "e", "1"));
    system.refused_opens = 5;

    std::string text;
    EXPECT_TRUE(store.read_text("s", "e", text));
    EXPECT_EQ(system.refused_opens, 0);
}

TEST(IniStore, FileInAFolderThatIsMissing_IsNotWritten)
{
    const TemporaryFolder folder;
    IniStore store(zmr::FileSystemDevice::Real(), folder.file("missing/f.ini"));

    EXPECT_FALSE(store.write_text("s", "e", "1"));
    std::string text;
    EXPECT_FALSE(store.read_text("s", "e", text));
}

TEST(IniStore, FolderOfThatName_IsNotWritten)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "f.ini");
    IniStore store(zmr::FileSystemDevice::Real(), folder.file("f.ini"));

    EXPECT_FALSE(store.write_text("s", "e", "1"));
}

TEST(IniStore, NameOutsideAscii_Works)
{
    const TemporaryFolder folder;
    IniStore store(zmr::FileSystemDevice::Real(), folder.file("\xC3\xA4 \xE4\xB8\xAD.ini"));

    EXPECT_TRUE(store.write_text("\xC3\xA4", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80"));
    std::string text;
    EXPECT_TRUE(store.read_text("\xC3\xA4", "\xE4\xB8\xAD", text));
    EXPECT_EQ(text, "\xF0\x9F\x98\x80");
}
