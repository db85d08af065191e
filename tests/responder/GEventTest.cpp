#include "responder/GEvent.h"
#include "responder/KeySource.h"
#include "responder/KeyTables.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <vector>

namespace {

std::map<int, unsigned short> g_keys;
std::vector<std::pair<int, bool>> g_asked;

unsigned short test_keys(int virtual_key, bool asynchronous)
{
    g_asked.emplace_back(virtual_key, asynchronous);
    const auto found = g_keys.find(virtual_key);
    return found == g_keys.end() ? static_cast<unsigned short>(0) : found->second;
}

/// Keys that the test presses.
class KeyEvents : public ::testing::Test {
protected:
    KeyEvents() : former_(zmr::set_key_source(test_keys))
    {
        g_keys.clear();
        g_asked.clear();
    }
    ~KeyEvents() override { zmr::set_key_source(former_); }

    static void press(int key) { g_keys[key] = 0x8000; }
    static GEvent translated(unsigned key)
    {
        GEvent event;
        event.translate_key_event(key);
        return event;
    }

private:
    zmr::KeySource former_;
};

constexpr unsigned kLeft = 0x25;

}  // namespace

TEST(GEvent, New_IsAllZero)
{
    const GEvent event;

    EXPECT_EQ(event.what, GEvent::event_none);
    EXPECT_EQ(event.info_word, 0U);
    EXPECT_EQ(event.info_long, 0);
    EXPECT_EQ(event.cleared_by, nullptr);
    EXPECT_EQ(event.mouse.word0, 0U);
    EXPECT_EQ(event.mouse.x0, 0);
    EXPECT_EQ(event.mouse.y1, 0);
    static_assert(sizeof(MouseEvent) == 24);
    static_assert(sizeof(GEvent::what) == 4);
}

TEST_F(KeyEvents, ShiftState_SixKeysAskedInOrderAndMapped)
{
    press(zmr::kShiftKey);
    press(zmr::kAltKey);
    g_keys[zmr::kScrollLockKey] = 0x0001;
    g_keys[zmr::kCapsLockKey] = 0x8000;  // down, but not on
    g_keys[zmr::kNumLockKey] = 0x8001;

    const ShiftState state = GEvent::GetShiftState(true);

    EXPECT_EQ(state,
              GEvent::shift_down | GEvent::alt_down | GEvent::scroll_lock | GEvent::num_lock);
    const std::vector<std::pair<int, bool>> expected = {{0x10, true}, {0x11, true}, {0x12, true},
                                                        {0x91, true}, {0x90, true}, {0x14, true}};
    EXPECT_EQ(g_asked, expected);
}

TEST_F(KeyEvents, Translation_AsksForTheStateOfTheMessage)
{
    static_cast<void>(translated('A'));

    ASSERT_EQ(g_asked.size(), 6U);
    for (const auto& [key, asynchronous] : g_asked)
        EXPECT_FALSE(asynchronous) << key;
}

TEST_F(KeyEvents, PlainKey_GivesItsCodeAndTheModifiers)
{
    g_keys[zmr::kNumLockKey] = 1;
    GEvent event;
    event.info_word = 0xABCD1234;
    event.translate_key_event('A');

    EXPECT_EQ(event.what, GEvent::event_key);
    EXPECT_EQ(event.info_word, 0xABCD0061U);  // the low 16 bits only
    EXPECT_EQ(event.info_long, static_cast<std::intptr_t>(GEvent::num_lock));
}

TEST_F(KeyEvents, ShiftAndOne_GiveTheShiftedCharacter)
{
    press(zmr::kShiftKey);

    EXPECT_EQ(translated('1').info_word, 0x21U);
}

TEST_F(KeyEvents, ShiftControlAndOne_GiveThePlainShiftedCharacter)
{
    press(zmr::kShiftKey);
    press(zmr::kControlKey);

    EXPECT_EQ(translated('1').info_word, 0x21U);
}

TEST_F(KeyEvents, ShiftAndLeft_GiveTheFlag)
{
    press(zmr::kShiftKey);

    EXPECT_EQ(translated(kLeft).info_word, 0x021CU);
}

TEST_F(KeyEvents, ControlAndA_GiveTheFlagOnTheLetter)
{
    press(zmr::kControlKey);

    EXPECT_EQ(translated('A').info_word, 0x0461U);
}

TEST_F(KeyEvents, ShiftControlAltAndLeft_GiveAllFlags)
{
    press(zmr::kShiftKey);
    press(zmr::kControlKey);
    press(zmr::kAltKey);

    EXPECT_EQ(translated(kLeft).info_word, 0x0E1CU);
}

TEST_F(KeyEvents, ShiftAndLetter_GiveTheCapital)
{
    press(zmr::kShiftKey);

    EXPECT_EQ(translated('Q').info_word, 0x51U);
}

TEST_F(KeyEvents, ModifierByItself_GivesNoEventAndWritesNothing)
{
    press(zmr::kShiftKey);
    GEvent event;
    event.what = GEvent::event_mouse_press;
    event.info_word = 7;
    event.info_long = 8;
    event.translate_key_event(zmr::kShiftKey);

    EXPECT_EQ(event.what, GEvent::event_none);
    EXPECT_EQ(event.info_word, 7U);
    EXPECT_EQ(event.info_long, 8);
}

TEST_F(KeyEvents, Separator_IsTheCodeOfDivide)
{
    EXPECT_EQ(translated(0x6C).info_word, 0x2FU);
    EXPECT_EQ(translated(0x6C).info_word, translated(0x6F).info_word);
}

TEST_F(KeyEvents, QuoteKey_HasNone)
{
    EXPECT_EQ(translated(0xDE).what, GEvent::event_none);
}

TEST_F(KeyEvents, KeyAbove255_GivesNoEvent)
{
    EXPECT_EQ(translated(256).what, GEvent::event_none);
    EXPECT_EQ(translated(0xFFFFFFFF).what, GEvent::event_none);
    EXPECT_EQ(translated(256 + 'A').what, GEvent::event_none);
}

TEST(KeyTables, AllKeys_HaveTheirCodes)
{
    const std::map<unsigned, std::uint32_t> singles = {
        {0x08, 0x08}, {0x09, 0x09}, {0x0D, 0x0D}, {0x1B, 0x1B}, {0x20, 0x20}, {0x21, 0x0B},
        {0x22, 0x0C}, {0x23, 0x04}, {0x24, 0x01}, {0x25, 0x1C}, {0x26, 0x1E}, {0x27, 0x1D},
        {0x28, 0x1F}, {0x2D, 0x05}, {0x2E, 0x7F}, {0x6A, 0x2A}, {0x6B, 0x2B}, {0x6C, 0x2F},
        {0x6D, 0x2D}, {0x6E, 0x2E}, {0x6F, 0x2F}, {0xBA, 0x3B}, {0xBB, 0x3D}, {0xBC, 0x2C},
        {0xBD, 0x2D}, {0xBE, 0x2E}, {0xBF, 0x2F}, {0xC0, 0x60}, {0xDB, 0x5B}, {0xDC, 0x5C},
        {0xDD, 0x5D}};
    for (unsigned key = 0; key < 256; ++key) {
        std::uint32_t expected = 0;
        if (const auto found = singles.find(key); found != singles.end())
            expected = found->second;
        else if (key >= 0x30 && key <= 0x39)
            expected = key;
        else if (key >= 0x41 && key <= 0x5A)
            expected = key + 0x20;
        else if (key >= 0x60 && key <= 0x69)
            expected = key - 0x30;
        else if (key >= 0x70 && key <= 0x7F)
            expected = key + 0x80;
        EXPECT_EQ(zmr::key_code(key), expected) << key;
    }
}

TEST(KeyTables, ShiftedCharacters_AreThoseOfTheKeyboard)
{
    const std::string plain = "`1234567890-=[];',./\\";
    const std::string shifted = "~!@#$%^&*()_+{}:\"<>?|";
    ASSERT_EQ(plain.size(), 21U);
    ASSERT_EQ(shifted.size(), 21U);
    for (std::uint32_t code = 0; code < 0x300; ++code) {
        std::uint32_t expected = 0;
        if (const auto at = code < 128 ? plain.find(static_cast<char>(code)) : std::string::npos;
            at != std::string::npos)
            expected = static_cast<unsigned char>(shifted[at]);
        else if (code >= 'a' && code <= 'z')
            expected = code - 0x20;
        EXPECT_EQ(zmr::shifted_character(code), expected) << code;
    }
}

TEST(KeySourceSetting, NullStandsForTheSystem)
{
    const zmr::KeySource former = zmr::set_key_source(test_keys);
    EXPECT_EQ(zmr::set_key_source(nullptr), test_keys);

    g_asked.clear();
    static_cast<void>(zmr::key_state(zmr::kShiftKey, false));
    EXPECT_TRUE(g_asked.empty());
    zmr::set_key_source(former);
}
