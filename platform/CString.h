#pragma once

#include "platform/Export.h"
#include "platform/PlatformTypes.h"

#include <cstdarg>
#include <string>
#include <string_view>

// <windows.h> renames LoadString by a macro. The class has the function under both names, so that
// it is one class whether or not that header came before.
#pragma push_macro("LoadString")
#undef LoadString

/// A text of bytes, normally UTF-8, without zero bytes. Positions and lengths are in bytes; case is
/// that of ASCII letters. A value: copies are independent. Positions outside the text are brought
/// to its nearest end, where the platform's own class would fail.
class ZMR_GV_API CString {
public:
    CString() = default;
    /// Null makes an empty text.
    CString(LPCTSTR text) : text_(text != nullptr ? text : "") {}
    CString(const char* text, int length) : text_(text, static_cast<std::size_t>(length)) {}
    explicit CString(char letter, int count = 1);
    explicit CString(std::string_view text) : text_(text) {}

    CString& operator=(LPCTSTR text);
    CString& operator=(char letter);
    operator LPCTSTR() const { return text_.c_str(); }
    [[nodiscard]] LPCTSTR GetString() const { return text_.c_str(); }
    [[nodiscard]] std::string_view view() const { return text_; }

    [[nodiscard]] int GetLength() const { return static_cast<int>(text_.size()); }
    [[nodiscard]] BOOL IsEmpty() const { return text_.empty(); }
    void Empty() { text_.clear(); }
    /// 0 outside the text.
    [[nodiscard]] char GetAt(int at) const;
    [[nodiscard]] char operator[](int at) const { return GetAt(at); }
    void SetAt(int at, char letter);

    CString& operator+=(const CString& other);
    CString& operator+=(LPCTSTR other);
    CString& operator+=(char letter);
    friend CString operator+(CString a, const CString& b) { return std::move(a += b); }
    friend CString operator+(CString a, LPCTSTR b) { return std::move(a += b); }
    friend CString operator+(LPCTSTR a, const CString& b) { return CString(a) += b; }
    friend CString operator+(CString a, char b) { return std::move(a += b); }
    friend CString operator+(char a, const CString& b) { return CString(a) += b; }

    /// Negative, 0 or positive; bytes taken as unsigned.
    [[nodiscard]] int Compare(LPCTSTR other) const;
    [[nodiscard]] int CompareNoCase(LPCTSTR other) const;
    friend bool operator==(const CString& a, const CString& b) { return a.text_ == b.text_; }
    friend bool operator==(const CString& a, LPCTSTR b) { return a.Compare(b) == 0; }
    friend auto operator<=>(const CString& a, const CString& b)
    {
        return a.Compare(b.text_.c_str()) <=> 0;
    }
    friend auto operator<=>(const CString& a, LPCTSTR b) { return a.Compare(b) <=> 0; }

    [[nodiscard]] CString Mid(int first) const;
    [[nodiscard]] CString Mid(int first, int count) const;
    [[nodiscard]] CString Left(int count) const { return Mid(0, count); }
    [[nodiscard]] CString Right(int count) const;
    /// The leading part made only of the given letters; of other ones.
    [[nodiscard]] CString SpanIncluding(LPCTSTR letters) const;
    [[nodiscard]] CString SpanExcluding(LPCTSTR letters) const;

    /// The position of the first occurrence at or behind `from`, or -1.
    [[nodiscard]] int Find(LPCTSTR text, int from = 0) const;
    [[nodiscard]] int Find(char letter, int from = 0) const;
    [[nodiscard]] int ReverseFind(char letter) const;
    /// The first position that holds one of the letters, or -1.
    [[nodiscard]] int FindOneOf(LPCTSTR letters) const;

    CString& MakeLower();
    CString& MakeUpper();
    /// Blanks, tabs and line ends.
    CString& TrimLeft();
    CString& TrimRight();
    CString& Trim() { return TrimRight().TrimLeft(); }
    CString& TrimLeft(LPCTSTR letters);
    CString& TrimRight(LPCTSTR letters);
    /// These return how many occurrences were changed, the last two the new length.
    int Replace(char old_letter, char new_letter);
    int Replace(LPCTSTR old_text, LPCTSTR new_text);
    int Remove(char letter);
    int Insert(int at, LPCTSTR text);
    int Delete(int at, int count = 1);

    /// As printf does. The arguments must not lie in this text.
    void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void FormatV(const char* format, std::va_list arguments) __attribute__((format(printf, 2, 0)));
    void AppendFormat(const char* format, ...) __attribute__((format(printf, 2, 3)));
    /// Becomes text number `id` of the program. FALSE, with the text unchanged, when there is none.
    BOOL LoadString(UINT id);
    BOOL LoadStringA(UINT id) { return LoadString(id); }

    /// A buffer of `length` letters and a closing zero, with the text at its start, to be written
    /// by the caller. Only ReleaseBuffer may follow.
    [[nodiscard]] LPSTR GetBuffer(int length = 0);
    /// The same, and the text then has exactly this length.
    [[nodiscard]] LPSTR GetBufferSetLength(int length);
    /// Ends what GetBuffer began: the text is `length` long, or ends at its first zero byte for -1.
    void ReleaseBuffer(int length = -1);

private:
    [[nodiscard]] std::size_t clamp(int position) const;

    std::string text_;
};

#pragma pop_macro("LoadString")
