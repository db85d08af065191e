#include "app/AcceleratorTable.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <random>

namespace {

using zmr::AcceleratorKey;
using zmr::AcceleratorTable;
using zmr::KeyMessage;

constexpr std::uint32_t kF5 = 0x74;

std::vector<std::byte> record(unsigned flags, unsigned key, unsigned command)
{
    std::vector<std::byte> bytes;
    for (const unsigned word : {flags, key, command, 0U}) {
        bytes.push_back(static_cast<std::byte>(word & 0xFFU));
        bytes.push_back(static_cast<std::byte>(word >> 8U));
    }
    return bytes;
}

std::vector<std::byte> operator+(std::vector<std::byte> a, const std::vector<std::byte>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

KeyMessage down(std::uint32_t code, bool shift = false, bool control = false, bool alt = false)
{
    return {alt && !control ? KeyMessage::Kind::system_key_down : KeyMessage::Kind::key_down, code,
            shift, control, alt};
}

KeyMessage character(std::uint32_t code, bool alt = false)
{
    return {alt ? KeyMessage::Kind::system_character : KeyMessage::Kind::character, code, false,
            false, alt};
}

unsigned command_of(const AcceleratorTable& table, const KeyMessage& message)
{
    const AcceleratorKey* const key = table.find(message);
    return key != nullptr ? key->command : 0;
}

}  // namespace

TEST(AcceleratorTable, Empty_FindsNothing)
{
    EXPECT_EQ(AcceleratorTable().find(down(kF5)), nullptr);
}

TEST(AcceleratorTable, VirtualKey_ModifiersMustBeTheSame)
{
    const AcceleratorTable table(
        {{.virtual_key = true, .key = kF5, .command = 1},
         {.virtual_key = true, .control = true, .key = 'S', .command = 2},
         {.virtual_key = true, .shift = true, .control = true, .key = 'S', .command = 3},
         {.virtual_key = true, .alt = true, .key = 'S', .command = 4}});

    EXPECT_EQ(command_of(table, down(kF5)), 1u);
    EXPECT_EQ(command_of(table, down(kF5, true)), 0u);
    EXPECT_EQ(command_of(table, down('S')), 0u);
    EXPECT_EQ(command_of(table, down('S', false, true)), 2u);
    EXPECT_EQ(command_of(table, down('S', true, true)), 3u);
    EXPECT_EQ(command_of(table, down('S', false, false, true)), 4u);
    EXPECT_EQ(command_of(table, down('S', false, true, true)), 0u);
}

TEST(AcceleratorTable, Character_OnlyAltCountsBesideIt)
{
    const AcceleratorTable table(
        {{.key = 's', .command = 1}, {.alt = true, .key = 's', .command = 2}});

    EXPECT_EQ(command_of(table, character('s')), 1u);
    EXPECT_EQ(command_of(table, character('S')), 0u);
    EXPECT_EQ(command_of(table, character('s', true)), 2u);
    EXPECT_EQ(command_of(table, {KeyMessage::Kind::character, 's', true, true, false}), 1u);
}

TEST(AcceleratorTable, KindOfMessage_CharactersAndKeysAreNotMixedUp)
{
    const AcceleratorTable keys({{.virtual_key = true, .key = 'A', .command = 1}});
    const AcceleratorTable characters({{.key = 'A', .command = 1}});

    EXPECT_EQ(command_of(keys, character('A')), 0u);
    EXPECT_EQ(command_of(characters, down('A')), 0u);
}

TEST(AcceleratorTable, TwoForOneKey_TheFirstOfTheTableCounts)
{
    const AcceleratorTable table({{.virtual_key = true, .key = kF5, .command = 7},
                                  {.virtual_key = true, .key = kF5, .command = 8}});

    EXPECT_EQ(command_of(table, down(kF5)), 7u);
}

TEST(AcceleratorTable, Read_TakesRecordsUpToTheMarkedOne)
{
    AcceleratorTable table;
    ASSERT_TRUE(table.read(record(0x01 | 0x08, 'S', 100) + record(0x10, 'x', 101) +
                           record(0x81, kF5, 102) + record(0x81, 'Z', 103)));

    const std::vector<AcceleratorKey> expected = {
        {.virtual_key = true, .control = true, .key = 'S', .command = 100},
        {.alt = true, .key = 'x', .command = 101},
        {.virtual_key = true, .key = kF5, .command = 102}};
    EXPECT_EQ(table.keys(), expected);
}

TEST(AcceleratorTable, Read_EveryCutBeforeTheMarkIsRefusedAndChangesNothing)
{
    const std::vector<std::byte> whole = record(0x01, 'A', 1) + record(0x81, 'B', 2);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        AcceleratorTable table({{.key = 'k', .command = 9}});
        EXPECT_FALSE(table.read(std::span(whole).first(length))) << length;
        EXPECT_EQ(table.keys().size(), 1u) << length;
    }
    AcceleratorTable table;
    EXPECT_TRUE(table.read(whole));
}

TEST(AcceleratorTable, Read_RandomBytesAreReadOrRefused)
{
    std::mt19937 random(7);
    for (int i = 0; i < 10'000; ++i) {
        std::vector<std::byte> bytes(random() % 64);
        for (std::byte& byte : bytes)
            byte = static_cast<std::byte>(random());
        AcceleratorTable table;
        const bool read = table.read(bytes);
        EXPECT_EQ(read, !table.keys().empty());
        EXPECT_LE(table.keys().size() * 8, bytes.size());
    }
}
