#include "platform/CString.h"

#include "platform/ByteText.h"
#include "platform/StringTable.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#undef LoadString

namespace {

constexpr const char* kWhiteSpace = " \t\n\v\f\r";

const char* given(LPCTSTR text)
{
    return text != nullptr ? text : "";
}

int position_of(std::size_t found)
{
    return found == std::string::npos ? -1 : static_cast<int>(found);
}

}  // namespace

CString::CString(char letter, int count)
    : text_(static_cast<std::size_t>(std::max(count, 0)), letter)
{
}

CString& CString::operator=(LPCTSTR text)
{
    text_ = std::string(given(text));  // by way of a copy: the text may be a part of this one
    return *this;
}

CString& CString::operator=(char letter)
{
    text_.assign(1, letter);
    return *this;
}

char CString::GetAt(int at) const
{
    return at >= 0 && at < GetLength() ? text_[static_cast<std::size_t>(at)] : '\0';
}

void CString::SetAt(int at, char letter)
{
    if (at >= 0 && at < GetLength())
        text_[static_cast<std::size_t>(at)] = letter;
}

CString& CString::operator+=(const CString& other)
{
    text_ += other.text_;
    return *this;
}

CString& CString::operator+=(LPCTSTR other)
{
    text_ += given(other);
    return *this;
}

CString& CString::operator+=(char letter)
{
    text_ += letter;
    return *this;
}

int CString::Compare(LPCTSTR other) const
{
    return zmr::compare_bytes(text_, given(other));
}

int CString::CompareNoCase(LPCTSTR other) const
{
    return zmr::compare_no_case(text_, given(other));
}

std::size_t CString::clamp(int position) const
{
    return static_cast<std::size_t>(std::clamp(position, 0, GetLength()));
}

CString CString::Mid(int first) const
{
    return CString(view().substr(clamp(first)));
}

CString CString::Mid(int first, int count) const
{
    return CString(view().substr(clamp(first), static_cast<std::size_t>(std::max(count, 0))));
}

CString CString::Right(int count) const
{
    return CString(view().substr(text_.size() - clamp(count)));
}

CString CString::SpanIncluding(LPCTSTR letters) const
{
    return CString(view().substr(0, text_.find_first_not_of(given(letters))));
}

CString CString::SpanExcluding(LPCTSTR letters) const
{
    return CString(view().substr(0, text_.find_first_of(given(letters))));
}

int CString::Find(LPCTSTR text, int from) const
{
    if (from < 0 || from > GetLength())
        return -1;
    return position_of(text_.find(given(text), static_cast<std::size_t>(from)));
}

int CString::Find(char letter, int from) const
{
    if (from < 0)
        return -1;
    return position_of(text_.find(letter, static_cast<std::size_t>(from)));
}

int CString::ReverseFind(char letter) const
{
    return position_of(text_.rfind(letter));
}

int CString::FindOneOf(LPCTSTR letters) const
{
    return position_of(text_.find_first_of(given(letters)));
}

CString& CString::MakeLower()
{
    text_ = zmr::lower_ascii(text_);
    return *this;
}

CString& CString::MakeUpper()
{
    text_ = zmr::upper_ascii(text_);
    return *this;
}

CString& CString::TrimLeft()
{
    return TrimLeft(kWhiteSpace);
}

CString& CString::TrimRight()
{
    return TrimRight(kWhiteSpace);
}

CString& CString::TrimLeft(LPCTSTR letters)
{
    text_.erase(0, text_.find_first_not_of(given(letters)));
    return *this;
}

CString& CString::TrimRight(LPCTSTR letters)
{
    text_.erase(text_.find_last_not_of(given(letters)) + 1);
    return *this;
}

int CString::Replace(char old_letter, char new_letter)
{
    if (old_letter == new_letter)
        return 0;
    const auto count = std::count(text_.begin(), text_.end(), old_letter);
    std::replace(text_.begin(), text_.end(), old_letter, new_letter);
    return static_cast<int>(count);
}

int CString::Replace(LPCTSTR old_text, LPCTSTR new_text)
{
    const std::string old_part = given(old_text);
    const std::string new_part = given(new_text);
    if (old_part.empty())
        return 0;
    int count = 0;
    std::string result;
    std::size_t at = 0;
    for (std::size_t found = text_.find(old_part); found != std::string::npos;
         found = text_.find(old_part, at)) {
        result.append(text_, at, found - at).append(new_part);
        at = found + old_part.size();
        ++count;
    }
    text_ = result.append(text_, at);
    return count;
}

int CString::Remove(char letter)
{
    return static_cast<int>(std::erase(text_, letter));
}

int CString::Insert(int at, LPCTSTR text)
{
    text_.insert(clamp(at), std::string(given(text)));
    return GetLength();
}

int CString::Delete(int at, int count)
{
    if (at < GetLength() && count > 0)
        text_.erase(clamp(at), static_cast<std::size_t>(count));
    return GetLength();
}

void CString::Format(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    FormatV(format, arguments);
    va_end(arguments);
}

void CString::FormatV(const char* format, std::va_list arguments)
{
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length < 0) {  // an argument that can't be converted
        text_.clear();
        return;
    }
    text_.resize(static_cast<std::size_t>(length));
    std::vsnprintf(text_.data(), text_.size() + 1, format, arguments);
}

void CString::AppendFormat(const char* format, ...)
{
    CString more;
    std::va_list arguments;
    va_start(arguments, format);
    more.FormatV(format, arguments);
    va_end(arguments);
    text_ += more.text_;
}

BOOL CString::LoadString(UINT id)
{
    return zmr::find_string(id, text_);
}

LPSTR CString::GetBuffer(int length)
{
    if (length > GetLength())
        text_.resize(static_cast<std::size_t>(length));
    return text_.data();
}

LPSTR CString::GetBufferSetLength(int length)
{
    text_.resize(static_cast<std::size_t>(std::max(length, 0)));
    return text_.data();
}

void CString::ReleaseBuffer(int length)
{
    if (length < 0)
        text_.resize(std::strlen(text_.c_str()));
    else
        text_.resize(static_cast<std::size_t>(length));
}
