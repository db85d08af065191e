#include "settings/StatusLines.h"

#include "platform/ByteText.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::uintptr_t kOwner = 0x1234;

void put(zmr::StatusLines& lines, unsigned line, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    lines.put(line, format, arguments);
    va_end(arguments);
}

std::string text_of(const zmr::StatusLines& lines, unsigned line)
{
    zmr::StatusText text;
    lines.copy(line, text);
    return text.data();
}

std::string take(zmr::StatusLines& lines, unsigned line)
{
    zmr::StatusText text;
    lines.take(line, text);
    return text.data();
}

}  // namespace

TEST(StatusLines, New_AllSixAreEmpty)
{
    const zmr::StatusLines lines;

    for (unsigned line = 0; line < zmr::kStatusLines; ++line)
        EXPECT_EQ(text_of(lines, line), "") << line;
}

TEST(StatusLines, Put_FormatsAsPrintfDoes)
{
    zmr::StatusLines lines;

    put(lines, 2, "X: %7.2f", 3.14159);

    EXPECT_EQ(text_of(lines, 2), "X:    3.14");
}

TEST(StatusLines, Put_OtherLinesStay)
{
    zmr::StatusLines lines;
    put(lines, 0, "prompt");

    put(lines, 1, "general");

    EXPECT_EQ(text_of(lines, 0), "prompt");
    EXPECT_EQ(text_of(lines, 2), "");
}

TEST(StatusLines, Put_ShorterTextLeavesNothingOfTheLonger)
{
    zmr::StatusLines lines;
    put(lines, 1, "a long text");

    put(lines, 1, "short");

    EXPECT_EQ(text_of(lines, 1), "short");
}

TEST(StatusLines, Put_1023BytesStayWhole)
{
    zmr::StatusLines lines;
    const std::string text(1023, 'a');

    put(lines, 1, "%s", text.c_str());

    EXPECT_EQ(text_of(lines, 1), text);
}

TEST(StatusLines, Put_LongerTextIsCutAt1023Bytes)
{
    for (const std::size_t length : {1024u, 1025u, 1026u, 5000u, 1'000'000u}) {
        zmr::StatusLines lines;

        put(lines, 1, "%s", std::string(length, 'a').c_str());

        EXPECT_EQ(text_of(lines, 1), std::string(1023, 'a')) << length;
    }
}

TEST(StatusLines, Put_CutNeverFallsIntoACharacter)
{
    for (const std::string character : {"\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"})
        for (std::size_t before = 1010; before <= 1030; ++before) {
            zmr::StatusLines lines;
            std::string text(before, 'a');
            while (text.size() < 1100)
                text += character;

            put(lines, 1, "%s", text.c_str());

            const std::string cut = text_of(lines, 1);
            EXPECT_LE(cut.size(), 1023u);
            EXPECT_GT(cut.size(), 1023u - character.size());
            EXPECT_EQ(cut, text.substr(0, cut.size()));
            const bool whole =
                cut.size() <= before || (cut.size() - before) % character.size() == 0;
            EXPECT_TRUE(whole) << before << ' ' << cut.size();
        }
}

TEST(StatusLines, Put_CharacterThatFillsTheLineStays)
{
    zmr::StatusLines lines;
    const std::string text = std::string(1020, 'a') + "\xE2\x82\xAC";

    put(lines, 1, "%sb", text.c_str());

    EXPECT_EQ(text_of(lines, 1), text);
}

TEST(StatusLines, Put_BytesThatAreNoTextAreCutToo)
{
    zmr::StatusLines lines;

    put(lines, 1, "%s", std::string(3000, '\x80').c_str());

    const std::string cut = text_of(lines, 1);
    EXPECT_LE(cut.size(), 1023u);
    EXPECT_GE(cut.size(), 1020u);
}

TEST(StatusLines, Put_NoFormatGivesTheEmptyText)
{
    zmr::StatusLines lines;
    put(lines, 1, "text");

    put(lines, 1, nullptr);

    EXPECT_EQ(text_of(lines, 1), "");
}

TEST(StatusLines, Put_LineBeyondTheLastIsIgnored)
{
    zmr::StatusLines lines;

    put(lines, 6, "text");
    put(lines, 0xFFFFFFFF, "text");
    lines.clear(6);

    for (unsigned line = 0; line < 8; ++line)
        EXPECT_EQ(text_of(lines, line), "") << line;
    EXPECT_EQ(take(lines, 6), "");
    EXPECT_FALSE(lines.announce(6, kOwner, 0));
}

TEST(StatusLines, Clear_OneLineOnly)
{
    zmr::StatusLines lines;
    put(lines, 1, "one");
    put(lines, 2, "two");

    lines.clear(1);

    EXPECT_EQ(text_of(lines, 1), "");
    EXPECT_EQ(text_of(lines, 2), "two");
}

TEST(StatusLines, Reset_AllLinesEmptyAndNothingOnItsWay)
{
    zmr::StatusLines lines;
    put(lines, 5, "grid");
    EXPECT_TRUE(lines.announce(5, kOwner, 0));

    lines.reset();

    EXPECT_EQ(text_of(lines, 5), "");
    EXPECT_TRUE(lines.announce(5, kOwner, 0));
}

TEST(StatusLines, Announce_OnceUntilTheTextIsTaken)
{
    zmr::StatusLines lines;

    EXPECT_TRUE(lines.announce(1, kOwner, 100));
    EXPECT_FALSE(lines.announce(1, kOwner, 101));
    put(lines, 1, "last");
    EXPECT_EQ(take(lines, 1), "last");
    EXPECT_TRUE(lines.announce(1, kOwner, 102));
}

TEST(StatusLines, Announce_EachLineByItself)
{
    zmr::StatusLines lines;

    for (unsigned line = 0; line < zmr::kStatusLines; ++line)
        EXPECT_TRUE(lines.announce(line, kOwner, 0)) << line;
}

TEST(StatusLines, Announce_AnotherOwnerIsTold)
{
    zmr::StatusLines lines;
    EXPECT_TRUE(lines.announce(1, kOwner, 0));

    EXPECT_TRUE(lines.announce(1, kOwner + 1, 1));
    EXPECT_FALSE(lines.announce(1, kOwner + 1, 2));
}

TEST(StatusLines, Announce_AgainWhenTheMessageGotLost)
{
    zmr::StatusLines lines;
    EXPECT_TRUE(lines.announce(1, kOwner, 5000));

    EXPECT_FALSE(lines.announce(1, kOwner, 5000 + zmr::StatusLines::kPatienceMs - 1));
    EXPECT_TRUE(lines.announce(1, kOwner, 5000 + zmr::StatusLines::kPatienceMs));
}

TEST(StatusLines, Withdraw_NextTextIsAnnouncedAgain)
{
    zmr::StatusLines lines;
    EXPECT_TRUE(lines.announce(1, kOwner, 0));

    lines.withdraw(1);

    EXPECT_TRUE(lines.announce(1, kOwner, 0));
}

// Sixteen threads put, one takes what is announced: the last texts arrive, a text is never torn,
// and what one thread put is never seen in another order.
TEST(StatusLines, SixteenThreads_EveryTextIsWholeInOrderAndTheLastArrives)
{
    constexpr unsigned kThreads = 16;
    constexpr unsigned kTexts = 2000;
    zmr::StatusLines lines;
    std::atomic<unsigned> messages[zmr::kStatusLines] = {};
    std::atomic<unsigned> running = kThreads;
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([&, thread] {
            const unsigned line = thread % zmr::kStatusLines;
            for (unsigned text = 1; text <= kTexts; ++text) {
                put(lines, line, "%u %u %s", thread, text,
                    std::string(text % 200, static_cast<char>('a' + thread)).c_str());
                if (lines.announce(line, kOwner, 0))
                    ++messages[line];
            }
            --running;
        });

    std::vector<unsigned> seen(kThreads);
    std::string last[zmr::kStatusLines];
    for (bool more = true; more;) {
        more = running > 0;
        for (unsigned line = 0; line < zmr::kStatusLines; ++line) {
            if (messages[line].exchange(0) == 0)
                continue;
            last[line] = take(lines, line);
            unsigned thread = 0;
            unsigned text = 0;
            int end = 0;
            ASSERT_EQ(std::sscanf(last[line].c_str(), "%u %u %n", &thread, &text, &end), 2);
            ASSERT_LT(thread, kThreads);
            ASSERT_EQ(last[line].substr(static_cast<std::size_t>(end)),
                      std::string(text % 200, static_cast<char>('a' + thread)));
            ASSERT_GE(text, seen[thread]);
            seen[thread] = text;
        }
    }
    for (std::thread& thread : threads)
        thread.join();

    for (unsigned line = 0; line < zmr::kStatusLines; ++line)
        EXPECT_EQ(last[line], text_of(lines, line)) << line;
}
