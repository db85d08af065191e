#include "foundation/GString.h"

#include "foundation/GException.h"
#include "foundation/mpstream.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstring>
#include <random>
#include <string>
#include <utility>

namespace {

void expect_text(const GString& string, std::string_view expected)
{
    EXPECT_EQ(string.view(), expected);
    EXPECT_EQ(string.length(), expected.size());
    EXPECT_EQ(string.text[expected.size()], '\0');
}

void format_by_text(GString& target, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    target.vformat(format, arguments);
    va_end(arguments);
}

void format_by_id(GString& target, unsigned id, ...)
{
    std::va_list arguments;
    va_start(arguments, id);
    target.vformat(id, arguments);
    va_end(arguments);
}

}  // namespace

TEST(GString, Default_IsEmptyAndNeverNull)
{
    const GString string;

    ASSERT_NE(string.text, nullptr);
    EXPECT_TRUE(string.is_empty());
    expect_text(string, "");
}

TEST(GString, NullSources_CountAsEmpty)
{
    const char* const null = nullptr;
    GString string(null);
    expect_text(string, "");
    expect_text(GString(null, 5), "");
    expect_text(GString(std::string_view()), "");
    string = "text";
    string += null;
    expect_text(string, "text");
    string = null;
    expect_text(string, "");
    string = "text";
    string.assign(null, 3);
    expect_text(string, "");
    EXPECT_TRUE(string == null);
    expect_text(string + null, "");
    expect_text(null + string, "");
}

TEST(GString, EmptyTexts_ShareOneStaticText)
{
    const GString first;
    const GString second("");
    GString third("something");
    third.empty();

    EXPECT_EQ(static_cast<const void*>(first.text), second.text);
    EXPECT_EQ(static_cast<const void*>(first.text), third.text);
}

TEST(GString, FromCountedBytes_KeepsZeroBytes)
{
    const GString string("a\0b", 3);

    expect_text(string, std::string_view("a\0b", 3));
    EXPECT_FALSE(GString("\0", 1).is_empty());
}

TEST(GString, FromFill_RepeatsIt)
{
    expect_text(GString('x', 3), "xxx");
    expect_text(GString('x', 0), "");
}

TEST(GString, LongerThanTheLimit_ThrowsOutOfMemory)
{
    EXPECT_THROW(GString('x', 0xFFFFFFFFu), OutOfMemory_Exception);
    GString string("abc");
    EXPECT_THROW(string.setLength(0xFFFFFFC1u, 'x'), OutOfMemory_Exception);
    EXPECT_THROW(static_cast<void>(string.getBuffer(0xFFFFFFFFu)), OutOfMemory_Exception);
    expect_text(string, "abc");
}

TEST(GString, Copy_IsDeep)
{
    GString first("abc");
    const GString second(first);
    first += 'd';

    expect_text(first, "abcd");
    expect_text(second, "abc");
}

TEST(GString, Move_LeavesAUsableString)
{
    GString first("abc");
    GString second(std::move(first));
    first = "new";
    expect_text(second, "abc");
    expect_text(first, "new");

    GString third;
    third = std::move(second);
    expect_text(third, "abc");
    second += "x";
    EXPECT_EQ(second.view().back(), 'x');
}

TEST(GString, AssigningItself_ChangesNothing)
{
    GString string("abc");
    GString& alias = string;
    string = alias;
    expect_text(string, "abc");
    string = string.text;
    expect_text(string, "abc");
    alias = std::move(string);
    expect_text(alias, "abc");
}

TEST(GString, AssigningItsOwnTail_KeepsTheTail)
{
    GString string("0123456789");
    string = string.text + 4;
    expect_text(string, "456789");
    string.assign(string.text + 1, 2);
    expect_text(string, "56");
}

TEST(GString, AppendingItself_AlsoWhenItGrows)
{
    GString string("ab");
    for (int round = 0; round < 10; ++round)
        string += string;
    EXPECT_EQ(string.length(), 2048u);

    GString other("xyz");
    for (int round = 0; round < 8; ++round)
        other += other.text;
    EXPECT_EQ(other.length(), 3u * 256);
    other += other.text + other.length() - 1;
    EXPECT_EQ(other.view().substr(other.length() - 4), "xyzz");
}

TEST(GString, AppendingZeroBytes_KeepsThem)
{
    GString string;
    string += '\0';
    string += GString("\0x", 2);

    expect_text(string, std::string_view("\0\0x", 3));
}

TEST(GString, AppendingOneByOne_GrowsGeometrically)
{
    GString string;
    const char* place = string.text;
    int moves = 0;
    for (int number = 0; number < 100000; ++number) {
        string += 'x';
        moves += string.text != place ? 1 : 0;
        place = string.text;
    }

    EXPECT_EQ(string.length(), 100000u);
    EXPECT_LT(moves, 40);
}

TEST(GString, Sum_JoinsAllKinds)
{
    const GString a("a");
    const GString b("b");
    expect_text(a + b, "ab");
    expect_text(a + "x", "ax");
    expect_text("x" + a, "xa");
    expect_text(a + '!', "a!");
    expect_text(GString() + GString(), "");
}

TEST(GString, SetLength_CutsAndFills)
{
    GString string("abcdef");
    string.setLength(3, 'x');
    expect_text(string, "abc");
    string.setLength(5, '-');
    expect_text(string, "abc--");
    string.setLength(0, 'x');
    expect_text(string, "");
    string.setLength(2, '\0');
    expect_text(string, std::string_view("\0\0", 2));
}

TEST(GString, ExtractAndRemove_TakeFromTheEnds)
{
    GString string("abcdef");
    string.extract(2);
    expect_text(string, "cdef");
    string.remove(1);
    expect_text(string, "cde");
    string.extract(0);
    string.remove(0);
    expect_text(string, "cde");
    string.remove(3);
    expect_text(string, "");
    string = "abc";
    string.extract(100);
    expect_text(string, "");
    string.remove(0xFFFFFFFFu);
    expect_text(string, "");
}

TEST(GString, Replace_FirstOrAllFromTheLeft)
{
    GString string("a*b*c");
    EXPECT_EQ(string.replace("*", "??", true), 1);
    expect_text(string, "a??b*c");
    EXPECT_EQ(string.replace("?", "", false), 2);
    expect_text(string, "ab*c");
    EXPECT_EQ(string.replace("z", "y", false), 0);
    EXPECT_EQ(string.replace("", "y", false), 0);
    EXPECT_EQ(string.replace(nullptr, "y", false), 0);
    EXPECT_EQ(string.replace("*", nullptr, false), 1);
    expect_text(string, "abc");
}

TEST(GString, Replace_DoesNotLookIntoWhatItPutIn)
{
    GString string("aaa");
    EXPECT_EQ(string.replace("a", "aa", false), 3);
    expect_text(string, "aaaaaa");
    EXPECT_EQ(string.replace("aa", "a", false), 3);
    expect_text(string, "aaa");
    EXPECT_EQ(string.replace("aa", "b", false), 1);
    expect_text(string, "ba");
}

TEST(GString, Replace_ByItsOwnText)
{
    GString string("a-b");
    EXPECT_EQ(string.replace("-", string.text, false), 1);
    expect_text(string, "aa-bb");
    EXPECT_EQ(string.replace(string.text, "x", false), 1);
    expect_text(string, "x");
}

TEST(GString, SegmentExcluding_GivesThePartUpToTheByte)
{
    const GString string("one;two;;");
    expect_text(string.segmentExcluding(';', 0), "one");
    expect_text(string.segmentExcluding(';', 4), "two");
    expect_text(string.segmentExcluding(';', 3), "");
    expect_text(string.segmentExcluding('!', 4), "two;;");
    expect_text(string.segmentExcluding(';', 9), "");
    expect_text(string.segmentExcluding(';', 0xFFFFFFFFu), "");
    expect_text(GString().segmentExcluding(';', 0), "");
}

TEST(GString, ToLower_ChangesAsciiLettersOnly)
{
    GString string("AbZ[\xC3\x84\xFF@");
    string.toLower();
    expect_text(string, "abz[\xC3\x84\xFF@");
    GString empty;
    empty.toLower();
    expect_text(empty, "");
}

TEST(GString, Translate_MapsAndRemovesBytes)
{
    GString string("a/b\\c-d");
    string.translate("/\\-", "__");
    expect_text(string, "a_b_cd");
    string.translate("ab", "ba");
    expect_text(string, "b_a_cd");
    string.translate("bb", "xy");
    expect_text(string, "x_a_cd");
    string.translate("", "abc");
    string.translate(nullptr, nullptr);
    expect_text(string, "x_a_cd");
    string.translate("\xFF_", "");
    expect_text(string, "xacd");
}

TEST(GString, Buffer_TakesTheWrittenLength)
{
    GString string("abc");
    char* buffer = string.getBuffer(100);
    EXPECT_STREQ(buffer, "abc");
    std::memcpy(buffer, "a longer text", 14);
    string.releaseBuffer();
    expect_text(string, "a longer text");

    buffer = string.getBuffer(4);
    buffer[2] = '\0';
    string.releaseBuffer();
    expect_text(string, "a ");
}

TEST(GString, Buffer_FilledWithoutAnEndIsCutAtItsSize)
{
    GString string;
    char* buffer = string.getBuffer(64);
    std::memset(buffer, 'x', 65);
    string.releaseBuffer();

    EXPECT_GE(string.length(), 64u);
    EXPECT_EQ(string.text[string.length()], '\0');
}

TEST(GString, Buffer_OfAnEmptyStringIsItsOwn)
{
    GString string;
    char* buffer = string.getBuffer(0);
    EXPECT_NE(static_cast<const void*>(buffer), GString().text);
    string.releaseBuffer();
    expect_text(string, "");
}

TEST(GString, Order_IsByUnsignedBytes)
{
    EXPECT_TRUE(GString("a") < GString("b"));
    EXPECT_TRUE(GString("a") < GString("aa"));
    EXPECT_TRUE(GString("z") < GString("\xC3\xA4"));
    EXPECT_FALSE(GString("b") < GString("a"));
    EXPECT_FALSE(GString("a") < GString("a"));
    EXPECT_TRUE(GString("a") == GString("a"));
    EXPECT_TRUE(GString("a") != "b");
    EXPECT_FALSE(GString("a\0b", 3) == "a");
}

TEST(GString, VFormat_MakesRoomForAnyLength)
{
    GString string;
    format_by_text(string, "%s=%d", "key", 42);
    expect_text(string, "key=42");

    const std::string large(100000, 'y');
    format_by_text(string, "<%s>", large.c_str());
    expect_text(string, "<" + large + ">");
    for (int length = 250; length < 260; ++length) {
        format_by_text(string, "%*d", length, 7);
        EXPECT_EQ(string.length(), static_cast<unsigned>(length));
    }
}

TEST(GString, VFormat_MayUseItsOwnText)
{
    GString string("abc");
    format_by_text(string, "%s-%s", string.text, string.text);
    expect_text(string, "abc-abc");
    const GString format("%s!");
    format_by_text(string, format.text, "x");
    expect_text(string, "x!");
    format_by_text(string, nullptr);
    expect_text(string, "");
}

TEST(GString, LoadString_UnknownIdGivesTheEmptyText)
{
    GString string("before");
    EXPECT_FALSE(string.loadString(0x7FFFFFF0u));
    expect_text(string, "");
    expect_text(GString(HINSTANCE{}, 0x7FFFFFF0u), "");
    string.format(0x7FFFFFF0u);
    expect_text(string, "");
}

TEST(GString, LoadString_AsksTheLastAddedFunctionFirst)
{
    struct Text {
        unsigned id;
        const char* text;
        int calls;
    };
    static Text first{910001, "first", 0};
    static Text second{910001, "second", 0};
    static Text third{910002, "third %s %d", 0};
    const auto look_up = [](unsigned id, char* buffer, unsigned size, void* user) -> unsigned {
        auto* known = static_cast<Text*>(user);
        ++known->calls;
        if (id != known->id)
            return 0;
        const auto length = std::min(static_cast<unsigned>(std::strlen(known->text)), size - 1);
        std::memcpy(buffer, known->text, length);
        buffer[length] = '\0';
        return length;
    };
    GString::AddLoadStringFunc(look_up, &first);
    GString::AddLoadStringFunc(look_up, &second);
    GString::AddLoadStringFunc(look_up, &third);
    GString::AddLoadStringFunc(nullptr, nullptr);

    GString string;
    EXPECT_TRUE(string.loadString(910001));
    expect_text(string, "second");
    EXPECT_EQ(first.calls, 0);
    EXPECT_EQ(third.calls, 1);
    EXPECT_TRUE(string.loadString(HINSTANCE{}, 910001));
    expect_text(string, "second");
    expect_text(GString(HINSTANCE{}, 910002), "third %s %d");
    string.format(910002, "text", 5);
    expect_text(string, "third text 5");
    format_by_id(string, 910002, "other", 6);
    expect_text(string, "third other 6");
}

TEST(GString, LoadString_GrowsItsBufferForLongTexts)
{
    static const std::string text(300000, 'q');
    const auto look_up = [](unsigned id, char* buffer, unsigned size, void*) -> unsigned {
        if (id < 920000 || id > 920000 + text.size())
            return 0;
        const unsigned wanted = id - 920000;
        const unsigned length = std::min(wanted, size - 1);
        std::memcpy(buffer, text.data(), length);
        buffer[length] = '\0';
        return length;
    };
    GString::AddLoadStringFunc(look_up, nullptr);

    GString string;
    for (const unsigned length : {1u, 254u, 255u, 256u, 257u, 2047u, 2048u, 300000u}) {
        ASSERT_TRUE(string.loadString(920000 + length));
        EXPECT_EQ(string.length(), length);
    }
}

TEST(GString, LoadString_DistrustsTheReportedLength)
{
    const auto lie = [](unsigned id, char* buffer, unsigned, void*) -> unsigned {
        if (id != 930000)
            return 0;
        buffer[0] = 'x';
        buffer[1] = '\0';
        return 0xFFFFFFFFu;
    };
    GString::AddLoadStringFunc(lie, nullptr);

    GString string;
    EXPECT_TRUE(string.loadString(930000));
    EXPECT_EQ(string.text[0], 'x');
    EXPECT_LT(string.length(), 1u << 28);
}

TEST(GString, Streams_KeepZeroBytesAndUtf8)
{
    ompstream out;
    out << GString("a\0b", 3) << GString() << GString("\xC3\xA4\xE2\x82\xAC");
    impstream in(out.bytes());

    GString first("old");
    GString second("old");
    GString third;
    in >> first >> second >> third;
    expect_text(first, std::string_view("a\0b", 3));
    expect_text(second, "");
    expect_text(third, "\xC3\xA4\xE2\x82\xAC");
}

TEST(GString, NewStr_CopiesOnTheHeap)
{
    EXPECT_EQ(gnewstr(nullptr), nullptr);
    char* copied = gnewstr("text");
    EXPECT_STREQ(copied, "text");
    gfreestr(copied);
    copied = gnewstr("");
    EXPECT_STREQ(copied, "");
    gfreestr(copied);
    gfreestr(nullptr);
}

TEST(GString, RandomOperations_AgreeWithAStandardString)
{
    std::mt19937 random(12345);
    const auto below = [&random](unsigned limit) {
        return static_cast<unsigned>(random() % limit);
    };
    GString string;
    std::string model;
    for (int step = 0; step < 20000; ++step) {
        const auto length = static_cast<unsigned>(model.size());
        const unsigned part = length == 0 ? 0 : below(length + 1);
        const std::string piece(below(5), static_cast<char>('a' + below(4)));
        switch (below(12)) {
            case 0:
                string += piece.c_str();
                model += piece;
                break;
            case 1:
                string += 'b';
                model += 'b';
                break;
            case 2:
                string.extract(part);
                model.erase(0, part);
                break;
            case 3:
                string.remove(part);
                model.erase(length - part);
                break;
            case 4: {
                const unsigned wanted = below(300);
                string.setLength(wanted, 'c');
                model.resize(wanted, 'c');
                break;
            }
            case 5:
                if (length < 400) {
                    string += string.text + part;
                    model += model.substr(part);
                }
                break;
            case 6:
                string.assign(string.text + part, length - part);
                model.erase(0, part);
                break;
            case 7: {
                int number = 0;
                for (std::size_t place = model.find("ab"); place != std::string::npos;
                     place = model.find("ab", place + piece.size()), ++number)
                    model.replace(place, 2, piece);
                EXPECT_EQ(string.replace("ab", piece.c_str(), false), number);
                break;
            }
            case 8: {
                const GString copied(string);
                string = copied + "x";
                model += "x";
                break;
            }
            case 9:
                static_cast<void>(string.getBuffer(below(500)));
                string.releaseBuffer();
                break;
            case 10:
                string.translate("ab", "b");
                std::erase(model, 'b');
                std::replace(model.begin(), model.end(), 'a', 'b');
                break;
            default:
                if (below(20) == 0) {
                    string.empty();
                    model.clear();
                }
                break;
        }
        ASSERT_EQ(string.view(), model) << "step " << step;
        ASSERT_EQ(std::strlen(string.text), model.size());
    }
}
