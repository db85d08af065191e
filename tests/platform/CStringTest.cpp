#include "platform/CString.h"

#include "platform/StringTable.h"

#include <gtest/gtest.h>

#include <cstring>

TEST(CString, Null_MakesAnEmptyText)
{
    const CString text(nullptr);

    EXPECT_TRUE(text.IsEmpty());
    EXPECT_STREQ(text, "");
    EXPECT_EQ(CString("x") == nullptr, false);
    EXPECT_EQ(CString() == "", true);
}

TEST(CString, AssignAPartOfItself_KeepsThePart)
{
    CString text("hello world");
    text = static_cast<LPCTSTR>(text) + 6;

    EXPECT_STREQ(text, "world");
}

TEST(CString, AppendItself_Doubles)
{
    CString text("ab");
    text += text;
    text += '!';

    EXPECT_STREQ(text, "abab!");
}

TEST(CString, Plus_JoinsTextsAndLetters)
{
    const CString b("b");

    EXPECT_STREQ("a" + b + "c" + 'd', "abcd");
    EXPECT_STREQ('x' + b, "xb");
}

TEST(CString, PositionsOutside_GoToTheNearestEnd)
{
    const CString text("hello");

    EXPECT_STREQ(text.Mid(3, 100), "lo");
    EXPECT_STREQ(text.Mid(100), "");
    EXPECT_STREQ(text.Mid(-5, 2), "he");
    EXPECT_STREQ(text.Left(-1), "");
    EXPECT_STREQ(text.Left(99), "hello");
    EXPECT_STREQ(text.Right(2), "lo");
    EXPECT_STREQ(text.Right(99), "hello");
    EXPECT_EQ(text.GetAt(99), '\0');
    EXPECT_EQ(text[0], 'h');
}

TEST(CString, Find_FirstAtOrBehindThePlace)
{
    const CString text("a,b,c");

    EXPECT_EQ(text.Find(','), 1);
    EXPECT_EQ(text.Find(',', 2), 3);
    EXPECT_EQ(text.Find(",c"), 3);
    EXPECT_EQ(text.Find("a", 1), -1);
    EXPECT_EQ(text.Find("a", -1), -1);
    EXPECT_EQ(text.Find("", 5), 5);
    EXPECT_EQ(text.Find("", 6), -1);
    EXPECT_EQ(text.ReverseFind(','), 3);
    EXPECT_EQ(text.FindOneOf("xyc"), 4);
}

TEST(CString, Compare_OrdersByUnsignedBytes)
{
    EXPECT_LT(CString("a").Compare("b"), 0);
    EXPECT_LT(CString("z").Compare("\xC3\xA4"), 0);
    EXPECT_TRUE(CString("a") < CString("b"));
    EXPECT_TRUE(CString("b") > "a");
    EXPECT_EQ(CString("ABC").CompareNoCase("abc"), 0);
    EXPECT_TRUE(CString("a") != CString("b"));
}

TEST(CString, Trim_TakesWhiteSpaceOrTheGivenLetters)
{
    EXPECT_STREQ(CString(" \t\nx y\r\n ").Trim(), "x y");
    EXPECT_STREQ(CString("  x ").TrimLeft(), "x ");
    EXPECT_STREQ(CString("  x ").TrimRight(), "  x");
    EXPECT_STREQ(CString("   ").Trim(), "");
    EXPECT_STREQ(CString("0012.500").TrimRight("0"), "0012.5");
    EXPECT_STREQ(CString("0012.500").TrimLeft("0"), "12.500");
}

TEST(CString, Spans_CutAtTheFirstOtherLetter)
{
    EXPECT_STREQ(CString("123abc").SpanIncluding("0123456789"), "123");
    EXPECT_STREQ(CString("key=value").SpanExcluding("="), "key");
    EXPECT_STREQ(CString("key").SpanExcluding("="), "key");
}

TEST(CString, Replace_CountsAndDoesNotLookAtWhatItPutIn)
{
    CString text("aaa");

    EXPECT_EQ(text.Replace("a", "aa"), 3);
    EXPECT_STREQ(text, "aaaaaa");
    EXPECT_EQ(text.Replace("aa", ""), 3);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.Replace("", "x"), 0);
    text = "a/b/c";
    EXPECT_EQ(text.Replace('/', '\\'), 2);
    EXPECT_STREQ(text, "a\\b\\c");
}

TEST(CString, InsertDeleteRemove_ReturnLengthOrCount)
{
    CString text("ad");

    EXPECT_EQ(text.Insert(1, "bc"), 4);
    EXPECT_EQ(text.Insert(99, "e"), 5);
    EXPECT_STREQ(text, "abcde");
    EXPECT_EQ(text.Delete(1, 2), 3);
    EXPECT_EQ(text.Delete(9, 2), 3);
    EXPECT_EQ(text.Remove('d'), 1);
    EXPECT_STREQ(text, "ae");
}

TEST(CString, ChangeOfCase_IsThatOfAsciiLetters)
{
    CString text("Gr\xC3\x9C\xC3\xA9n");

    EXPECT_STREQ(text.MakeLower(), "gr\xC3\x9C\xC3\xA9n");
    EXPECT_STREQ(text.MakeUpper(), "GR\xC3\x9C\xC3\xA9N");
}

TEST(CString, Format_WritesAnyLength)
{
    CString text;
    text.Format("%d-%s-%.2f", 42, "x", 1.5);
    EXPECT_STREQ(text, "42-x-1.50");
    text.Format("%*d", 5000, 7);
    EXPECT_EQ(text.GetLength(), 5000);
    text.Format("%s", "");
    EXPECT_TRUE(text.IsEmpty());
    text.AppendFormat("%c%c", 'o', 'k');

    EXPECT_STREQ(text, "ok");
}

TEST(CString, GetBuffer_TextWrittenThereIsTheText)
{
    CString text("abc");
    char* buffer = text.GetBuffer(100);
    EXPECT_STREQ(buffer, "abc");
    std::strcpy(buffer, "longer than before");
    text.ReleaseBuffer();
    EXPECT_EQ(text.GetLength(), 18);
    EXPECT_STREQ(text, "longer than before");
    std::memcpy(text.GetBufferSetLength(4), "wxyz", 4);
    text.ReleaseBuffer(4);
    EXPECT_STREQ(text, "wxyz");
    static_cast<void>(text.GetBuffer());
    text.ReleaseBuffer(2);

    EXPECT_STREQ(text, "wx");
}

TEST(CString, LoadString_AsksTheInstalledLookup)
{
    const auto former = zmr::set_string_lookup([](UINT id, std::string& found) {
        if (id != 7)
            return false;
        found = "seven";
        return true;
    });
    CString text("before");
    const BOOL missing = text.LoadString(64321);
    EXPECT_STREQ(text, "before");
    const BOOL present = text.LoadString(7);
    zmr::set_string_lookup(former);

    EXPECT_FALSE(missing);
    EXPECT_TRUE(present);
    EXPECT_STREQ(text, "seven");
}
