#include "settings/RegistryManager.h"

#include "platform/Handles.h"
#include "settings/LibraryIds.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

constexpr const char* kTestKey = "ZMR_GV test of settings";

/// A registry whose current user has nothing but an empty key "software".
class RegistryManagerInTheRegistry : public testing::Test {
protected:
    void SetUp() override
    {
        clear();
        HKEY key = nullptr;
        ASSERT_EQ(::RegCreateKeyExA(HKEY_CURRENT_USER, kTestKey, 0, nullptr, 0, KEY_ALL_ACCESS,
                                    nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        user_.reset(key);
        ASSERT_EQ(::RegCreateKeyExA(user_.get(), "software", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                    &key, nullptr),
                  ERROR_SUCCESS);
        const zmr::OwnedRegistryKey software(key);
        ASSERT_EQ(::RegOverridePredefKey(HKEY_CURRENT_USER, user_.get()), ERROR_SUCCESS);
        manager_.Initialize("Company", "Program");
    }
    void TearDown() override
    {
        EXPECT_EQ(::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr), ERROR_SUCCESS);
        user_.reset();
        clear();
    }
    static void clear() { ::RegDeleteTreeA(HKEY_CURRENT_USER, kTestKey); }

    /// Stores a value as another program might.
    void store(const char* entry, DWORD type, const void* data, DWORD size)
    {
        const zmr::OwnedRegistryKey key(manager_.GetSectionKey("s", true));
        ASSERT_EQ(::RegSetValueExA(key.get(), entry, 0, type, static_cast<const BYTE*>(data), size),
                  ERROR_SUCCESS);
    }
    /// The type of a stored value, with its bytes.
    [[nodiscard]] std::string stored(const char* entry, DWORD& type)
    {
        const zmr::OwnedRegistryKey key(manager_.GetSectionKey("s", false));
        char bytes[64];
        DWORD size = sizeof bytes;
        if (::RegQueryValueExA(key.get(), entry, nullptr, &type, reinterpret_cast<BYTE*>(bytes),
                               &size) != ERROR_SUCCESS)
            return "none";
        return {bytes, size};
    }
    [[nodiscard]] bool has_key(const char* path) const
    {
        HKEY key = nullptr;
        const bool is_there =
            ::RegOpenKeyExA(user_.get(), path, 0, KEY_READ, &key) == ERROR_SUCCESS;
        const zmr::OwnedRegistryKey owned(key);
        return is_there;
    }
    [[nodiscard]] DWORD keys_below(const char* path) const
    {
        HKEY key = nullptr;
        DWORD count = 0;
        EXPECT_EQ(::RegOpenKeyExA(user_.get(), path, 0, KEY_READ, &key), ERROR_SUCCESS);
        const zmr::OwnedRegistryKey owned(key);
        EXPECT_EQ(::RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, &count, nullptr, nullptr,
                                     nullptr, nullptr, nullptr, nullptr, nullptr),
                  ERROR_SUCCESS);
        return count;
    }
    [[nodiscard]] std::vector<unsigned char> binary(const char* entry, bool& is_found)
    {
        unsigned char* data = nullptr;
        unsigned bytes = 0;
        is_found = manager_.GetProfileBinary("s", entry, &data, &bytes) != 0;
        EXPECT_EQ(data != nullptr, is_found);
        std::vector<unsigned char> value(data, data + (is_found ? bytes : 0));
        ::operator delete(data);
        return value;
    }

    zmr::OwnedRegistryKey user_;
    RegistryManager manager_;
};

}  // namespace

TEST_F(RegistryManagerInTheRegistry, AbsentValues_AreTheDefaultsAndNoKeyIsMade)
{
    bool is_found = true;

    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 5), 5u);
    EXPECT_STREQ(manager_.GetProfileStringA("s", "e", "d"), "d");
    EXPECT_STREQ(manager_.GetProfileStringA("s", "e", nullptr), "");
    EXPECT_TRUE(binary("e", is_found).empty());
    EXPECT_FALSE(is_found);
    EXPECT_EQ(keys_below("software"), 0u);
}

TEST_F(RegistryManagerInTheRegistry, Values_LieBelowTheirNamesWithTheirTypes)
{
    const unsigned char bytes[] = {1, 0, 2};
    EXPECT_TRUE(manager_.WriteProfileInt("s", "int", -2));
    EXPECT_TRUE(manager_.WriteProfileStringA("s", "text", "a b"));
    EXPECT_TRUE(manager_.WriteProfileBinary("s", "binary", bytes, 3));

    EXPECT_TRUE(has_key("software\\Company\\Program\\s"));
    DWORD type = 0;
    EXPECT_EQ(stored("int", type), "\xFE\xFF\xFF\xFF");
    EXPECT_EQ(type, REG_DWORD);
    EXPECT_EQ(stored("text", type), std::string("a b\0", 4));
    EXPECT_EQ(type, REG_SZ);
    EXPECT_EQ(stored("binary", type), std::string("\x01\x00\x02", 3));
    EXPECT_EQ(type, REG_BINARY);
}

TEST_F(RegistryManagerInTheRegistry, Values_ComeBackInBothForms)
{
    const unsigned char bytes[] = {0x3C, 0};
    manager_.SetSection("two");
    EXPECT_TRUE(manager_.WriteProfileInt("e", 6));
    EXPECT_TRUE(manager_.WriteProfileStringA("t", " x "));
    EXPECT_TRUE(manager_.WriteProfileBinary("b", bytes, 2));

    EXPECT_EQ(manager_.GetProfileIntA("e", 0), 6u);
    EXPECT_EQ(manager_.GetProfileIntA("TWO", "E", 0), 6u);
    EXPECT_STREQ(manager_.GetProfileStringA("two", "t", ""), " x ");
    unsigned char* data = nullptr;
    unsigned count = 0;
    EXPECT_TRUE(manager_.GetProfileBinary("b", &data, &count));
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(data[0], 0x3C);
    ::operator delete(data);
}

TEST_F(RegistryManagerInTheRegistry, MinusOne_ComesBackThrough32Bits)
{
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", -1));

    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 4294967295u);
    EXPECT_EQ(static_cast<std::int32_t>(manager_.GetProfileIntA("s", "e", 0)), -1);
}

TEST_F(RegistryManagerInTheRegistry, SectionOfATextOfTheLibrary_IsThatText)
{
    manager_.SetSection(unsigned{ZMR_IDS_FAULT});
    const std::string section = manager_.GetSection();

    EXPECT_FALSE(section.empty());
    EXPECT_TRUE(manager_.WriteProfileInt("e", 1));
    EXPECT_EQ(manager_.GetProfileIntA(section.c_str(), "e", 0), 1u);
}

TEST_F(RegistryManagerInTheRegistry, TextReadAsAnInteger_IsItsFirstFourBytesOrTheDefault)
{
    EXPECT_TRUE(manager_.WriteProfileStringA("s", "short", "abc"));
    EXPECT_TRUE(manager_.WriteProfileStringA("s", "long", "abcd"));

    EXPECT_EQ(manager_.GetProfileIntA("s", "short", 5), 0x00636261u);
    EXPECT_EQ(manager_.GetProfileIntA("s", "long", 5), 5u);
}

TEST_F(RegistryManagerInTheRegistry, IntegerOfFewerBytes_HasZerosAbove)
{
    store("two", REG_BINARY, "\x01\x02", 2);
    store("none", REG_BINARY, "", 0);

    EXPECT_EQ(manager_.GetProfileIntA("s", "two", 5), 0x0201u);
    EXPECT_EQ(manager_.GetProfileIntA("s", "none", 5), 0u);
}

TEST_F(RegistryManagerInTheRegistry, TextWithoutATerminator_EndsWhereItsBytesEnd)
{
    store("open", REG_BINARY, "abc", 3);
    store("early", REG_BINARY, "ab\0cd", 5);
    store("none", REG_SZ, "", 0);

    EXPECT_STREQ(manager_.GetProfileStringA("s", "open", "d"), "abc");
    EXPECT_STREQ(manager_.GetProfileStringA("s", "early", "d"), "ab");
    EXPECT_STREQ(manager_.GetProfileStringA("s", "none", "d"), "");
}

TEST_F(RegistryManagerInTheRegistry, LargeValues_ComeBackWhole)
{
    std::vector<unsigned char> bytes(1024 * 1024);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i * 31 >> 3);
    ASSERT_TRUE(
        manager_.WriteProfileBinary("s", "big", bytes.data(), static_cast<unsigned>(bytes.size())));
    const std::string text(100'000, 't');
    ASSERT_TRUE(manager_.WriteProfileStringA("s", "text", text.c_str()));

    bool is_found = false;
    EXPECT_EQ(binary("big", is_found), bytes);
    EXPECT_EQ(manager_.GetProfileStringA("s", "text", "").view(), text);
}

TEST_F(RegistryManagerInTheRegistry, BinaryOfZeroBytes_IsThere)
{
    EXPECT_TRUE(manager_.WriteProfileBinary("s", "e", nullptr, 0));

    bool is_found = false;
    EXPECT_TRUE(binary("e", is_found).empty());
    EXPECT_TRUE(is_found);
}

TEST_F(RegistryManagerInTheRegistry, TextOutsideAscii_ComesBack)
{
    EXPECT_TRUE(manager_.WriteProfileStringA("s", "\xC3\xA4", "\xE4\xB8\xAD \xF0\x9F\x98\x80"));

    EXPECT_STREQ(manager_.GetProfileStringA("s", "\xC3\xA4", ""), "\xE4\xB8\xAD \xF0\x9F\x98\x80");
}

TEST_F(RegistryManagerInTheRegistry, NullEntry_RemovesTheWholeSection)
{
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 1));
    EXPECT_TRUE(manager_.WriteProfileInt("t", "e", 1));

    EXPECT_TRUE(manager_.WriteProfileStringA("s", nullptr, nullptr));
    EXPECT_FALSE(has_key("software\\Company\\Program\\s"));
    EXPECT_EQ(manager_.GetProfileIntA("t", "e", 0), 1u);
}

TEST_F(RegistryManagerInTheRegistry, RemovalOfAMissingSection_MakesItsPathAndIsFalse)
{
    EXPECT_FALSE(manager_.WriteProfileStringA("s", nullptr, nullptr));

    EXPECT_TRUE(has_key("software\\Company\\Program"));
    EXPECT_FALSE(has_key("software\\Company\\Program\\s"));
}

TEST_F(RegistryManagerInTheRegistry, RemovalOfASectionWithKeysBelow_IsFalseAndLeavesIt)
{
    EXPECT_TRUE(manager_.WriteProfileInt("s\\below", "e", 1));

    EXPECT_FALSE(manager_.WriteProfileStringA("s", nullptr, nullptr));
    EXPECT_EQ(manager_.GetProfileIntA("s\\below", "e", 0), 1u);
}

TEST_F(RegistryManagerInTheRegistry, RemovalOfTheEmptySection_DoesNotRemoveTheApplication)
{
    EXPECT_TRUE(manager_.WriteProfileInt("", "e", 1));

    EXPECT_FALSE(manager_.WriteProfileStringA("", nullptr, nullptr));
    EXPECT_EQ(manager_.GetProfileIntA("", "e", 0), 1u);
}

TEST_F(RegistryManagerInTheRegistry, NullValueOfAnAbsentSection_MakesTheSectionAndIsFalse)
{
    EXPECT_FALSE(manager_.WriteProfileStringA("s", "e", nullptr));

    EXPECT_TRUE(has_key("software\\Company\\Program\\s"));
}

TEST_F(RegistryManagerInTheRegistry, NullValue_RemovesTheEntry)
{
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 1));

    EXPECT_TRUE(manager_.WriteProfileStringA("s", "e", nullptr));
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 5), 5u);
}

TEST_F(RegistryManagerInTheRegistry, WithoutTheKeySoftware_AllFailsAndNothingIsMade)
{
    ASSERT_EQ(::RegDeleteKeyA(user_.get(), "software"), ERROR_SUCCESS);
    const unsigned char byte = 1;
    bool is_found = true;

    EXPECT_EQ(manager_.GetAppRegistryKey(true), nullptr);
    EXPECT_EQ(manager_.GetSectionKey("s", true), nullptr);
    EXPECT_FALSE(manager_.WriteProfileInt("s", "e", 1));
    EXPECT_FALSE(manager_.WriteProfileStringA("s", "e", "1"));
    EXPECT_FALSE(manager_.WriteProfileStringA("s", "e", nullptr));
    EXPECT_FALSE(manager_.WriteProfileStringA("s", nullptr, nullptr));
    EXPECT_FALSE(manager_.WriteProfileBinary("s", "e", &byte, 1));
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 5), 5u);
    EXPECT_STREQ(manager_.GetProfileStringA("s", "e", "d"), "d");
    EXPECT_TRUE(binary("e", is_found).empty());
    EXPECT_FALSE(is_found);
    EXPECT_FALSE(has_key("software"));
}

TEST_F(RegistryManagerInTheRegistry, Keys_AreOpenedAndMadeAsAsked)
{
    EXPECT_EQ(manager_.GetAppRegistryKey(false), nullptr);
    EXPECT_EQ(manager_.GetSectionKey("s", false), nullptr);
    EXPECT_EQ(keys_below("software"), 0u);

    const zmr::OwnedRegistryKey section(manager_.GetSectionKey("s", true));
    EXPECT_NE(section.get(), nullptr);
    EXPECT_TRUE(has_key("software\\Company\\Program\\s"));
    const zmr::OwnedRegistryKey application(manager_.GetAppRegistryKey(false));
    EXPECT_NE(application.get(), nullptr);
}

TEST_F(RegistryManagerInTheRegistry, NullNames_ReadAsMissingAndWriteNothing)
{
    const unsigned char byte = 1;
    const char* const null = nullptr;

    EXPECT_FALSE(manager_.WriteProfileInt(null, "e", 1));
    EXPECT_FALSE(manager_.WriteProfileInt("s", null, 1));
    EXPECT_FALSE(manager_.WriteProfileStringA(null, "e", "1"));
    EXPECT_FALSE(manager_.WriteProfileStringA(null, null, null));
    EXPECT_FALSE(manager_.WriteProfileBinary(null, "e", &byte, 1));
    EXPECT_EQ(manager_.GetProfileIntA(null, "e", 5), 5u);
    EXPECT_EQ(manager_.GetProfileIntA("s", null, 5), 5u);
    EXPECT_EQ(manager_.GetSectionKey(null, true), nullptr);
    EXPECT_EQ(keys_below("software"), 0u);
}

TEST_F(RegistryManagerInTheRegistry, WithoutAProfileName_NothingIsKept)
{
    RegistryManager nameless;
    nameless.SetRegistryKey("Company");

    EXPECT_FALSE(nameless.WriteProfileInt("s", "e", 1));
    EXPECT_EQ(nameless.GetProfileIntA("s", "e", 5), 5u);
    EXPECT_EQ(nameless.GetAppRegistryKey(true), nullptr);
    EXPECT_EQ(keys_below("software"), 0u);
}

TEST_F(RegistryManagerInTheRegistry, SetRegistryKey_ChangesWhereCallsGo)
{
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 1));
    manager_.SetRegistryKey("Other");
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 0u);
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 2));

    EXPECT_TRUE(has_key("software\\Other\\Program\\s"));
    manager_.SetRegistryKey("Company");
    EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), 1u);
}

TEST_F(RegistryManagerInTheRegistry, Import_FollowsTheThreeRules)
{
    const unsigned char old_bytes[] = {1, 2};
    RegistryManager older;
    older.Initialize("OldCompany", "OldProgram");
    EXPECT_TRUE(older.WriteProfileInt("s", "same", 5));
    EXPECT_TRUE(older.WriteProfileInt("s", "other", 6));
    EXPECT_TRUE(older.WriteProfileStringA("s", "text", "default"));
    EXPECT_TRUE(older.WriteProfileBinary("s", "binary", old_bytes, 2));
    EXPECT_TRUE(older.WriteProfileInt("s", "unread", 7));
    EXPECT_TRUE(manager_.WriteProfileInt("s", "same", 1));
    EXPECT_TRUE(manager_.WriteProfileInt("s", "other", 2));
    EXPECT_TRUE(manager_.WriteProfileStringA("s", "text", "new"));
    manager_.ImportRegistry("OldCompany", "OldProgram");

    bool is_found = false;
    EXPECT_EQ(manager_.GetProfileIntA("s", "same", 5), 1u);
    EXPECT_EQ(manager_.GetProfileIntA("s", "other", 5), 6u);
    EXPECT_STREQ(manager_.GetProfileStringA("s", "text", "default"), "default");
    EXPECT_EQ(binary("binary", is_found), (std::vector<unsigned char>{1, 2}));

    RegistryManager second_start;
    second_start.Initialize("Company", "Program");
    second_start.ImportRegistry("OldCompany", "OldProgram");
    EXPECT_EQ(second_start.GetProfileIntA("s", "same", 0), 1u);
    EXPECT_EQ(second_start.GetProfileIntA("s", "other", 0), 6u);
    EXPECT_STREQ(second_start.GetProfileStringA("s", "text", ""), "default");
    EXPECT_EQ(second_start.GetProfileIntA("s", "unread", 0), 0u);
    EXPECT_EQ(second_start.GetProfileIntA("RegistryImport", "Imported", 0), 1u);
}

// Open keys would keep the test's own from being removed, and count against the session.
TEST_F(RegistryManagerInTheRegistry, ManyCalls_LeaveNoKeyOpen)
{
    DWORD before = 0;
    DWORD after = 0;
    EXPECT_TRUE(manager_.WriteProfileInt("s", "e", 1));
    ::GetProcessHandleCount(::GetCurrentProcess(), &before);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_TRUE(manager_.WriteProfileInt("s", "e", i));
        EXPECT_EQ(manager_.GetProfileIntA("s", "e", 0), static_cast<unsigned>(i));
        EXPECT_EQ(manager_.GetProfileIntA("none", "e", 5), 5u);
        EXPECT_FALSE(manager_.WriteProfileStringA("none", nullptr, nullptr));
    }
    ::GetProcessHandleCount(::GetCurrentProcess(), &after);

    EXPECT_EQ(after, before);
    EXPECT_TRUE(manager_.WriteProfileStringA("s", nullptr, nullptr));
    EXPECT_EQ(::RegDeleteTreeA(user_.get(), "software"), ERROR_SUCCESS);
}
