#include "foundation/GString.h"

#include "foundation/GException.h"
#include "foundation/GStaticText.h"
#include "foundation/GStringResource.h"
#include "foundation/HeapBlock.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <array>
#include <climits>
#include <cstring>
#include <functional>
#include <utility>

namespace {

using zmr::StringHeader;

constexpr std::uint64_t kMaxLength = 0xFFFFFFFF - 63;
constexpr std::uint32_t kSmallestCapacity = 15;  // with header and zero byte a 24-byte block

constinit const zmr::StaticText kEmptyText("");

char* text_of(const void* header)
{
    // Static texts are constant memory; nothing writes to a text whose capacity is 0.
    return const_cast<char*>(static_cast<const char*>(header)) + sizeof(StringHeader);
}

StringHeader* header_of(char* text)
{
    return reinterpret_cast<StringHeader*>(text - sizeof(StringHeader));
}

const StringHeader* header_of(const char* text)
{
    return reinterpret_cast<const StringHeader*>(text - sizeof(StringHeader));
}

std::uint32_t checked_length(std::uint64_t length)
{
    if (length > kMaxLength)
        throw OutOfMemory_Exception();
    return static_cast<std::uint32_t>(length);
}

std::uint32_t length_of(const char* source)
{
    return source == nullptr ? 0 : checked_length(std::strlen(source));
}

std::string_view view_of(const char* source)
{
    return source == nullptr ? std::string_view() : std::string_view(source);
}

void set_length(char* text, std::uint32_t length)
{
    header_of(text)->length = length;
    text[length] = '\0';
}

/// An unshared text of length 0 with room for `capacity` bytes.
char* new_text(std::uint32_t capacity)
{
    if (capacity < kSmallestCapacity)
        capacity = kSmallestCapacity;
    void* block = zmr::allocate_block(sizeof(StringHeader) + std::size_t{capacity} + 1);
    char* text = text_of(block);
    header_of(text)->capacity = capacity;
    set_length(text, 0);
    return text;
}

char* new_text(const char* source, std::uint32_t length)
{
    if (length == 0)
        return text_of(&kEmptyText);
    char* text = new_text(length);
    std::memcpy(text, source, length);
    set_length(text, length);
    return text;
}

bool is_static(const char* text)
{
    return header_of(text)->capacity == 0;
}

void free_text(char* text)
{
    if (!is_static(text))
        zmr::free_block(header_of(text));
}

char* copy_text(char* text)
{
    return is_static(text) ? text : new_text(text, header_of(text)->length);
}

/// Makes `text` unshared with room for `needed` bytes at least; it keeps its contents.
void make_room(char*& text, std::uint32_t needed)
{
    if (is_static(text)) {
        const std::uint32_t length = header_of(text)->length;
        char* own = new_text(needed > length ? needed : length);
        std::memcpy(own, text, length);
        set_length(own, length);
        text = own;
        return;
    }
    const std::uint32_t capacity = header_of(text)->capacity;
    if (needed <= capacity)
        return;
    const std::uint64_t grown = std::uint64_t{capacity} + capacity / 2;
    const std::uint32_t wanted = grown > kMaxLength ? static_cast<std::uint32_t>(kMaxLength)
                                 : grown > needed   ? static_cast<std::uint32_t>(grown)
                                                    : needed;
    text =
        text_of(zmr::resize_block(header_of(text), sizeof(StringHeader) + std::size_t{wanted} + 1));
    header_of(text)->capacity = wanted;
}

void append(char*& text, const char* source, std::uint32_t count)
{
    if (count == 0)
        return;
    const std::uint32_t length = header_of(text)->length;
    const std::uint32_t sum = checked_length(std::uint64_t{length} + count);
    // The source may lie in this very text, which moves when it grows.
    const bool own =
        std::less_equal<>()(text, source) && std::less_equal<>()(source, text + length);
    const std::ptrdiff_t offset = own ? source - text : 0;
    make_room(text, sum);
    std::memmove(text + length, own ? text + offset : source, count);
    set_length(text, sum);
}

}  // namespace

void GStaticString::share(GString& target, const void* source) noexcept
{
    free_text(target.text);
    target.text = text_of(source);
}

GString::GString() noexcept : text(text_of(&kEmptyText)) {}

GString::GString(const char* source) : text(new_text(source, length_of(source))) {}

GString::GString(const GString& other) : text(copy_text(other.text)) {}

GString::GString(GString&& other) noexcept : text(std::exchange(other.text, text_of(&kEmptyText)))
{
}

GString::GString(const char* source, unsigned count)
    : text(new_text(source, source == nullptr ? 0 : checked_length(count)))
{
}

GString::GString(std::string_view source)
    : text(new_text(source.data(), checked_length(source.size())))
{
}

GString::GString(char fill, unsigned count) : text(text_of(&kEmptyText))
{
    setLength(count, fill);
}

GString::GString(HINSTANCE module, unsigned id) : text(text_of(&kEmptyText))
{
    loadString(module, id);
}

GString::~GString()
{
    free_text(text);
}

GString& GString::operator=(const GString& other)
{
    if (this == &other)
        return *this;
    if (is_static(other.text)) {
        free_text(text);
        text = other.text;
    } else {
        assign(other.text, other.length());
    }
    return *this;
}

GString& GString::operator=(GString&& other) noexcept
{
    std::swap(text, other.text);
    return *this;
}

GString& GString::operator=(const char* source)
{
    assign(source, length_of(source));
    return *this;
}

void GString::assign(const char* source, unsigned count)
{
    if (source == nullptr || count == 0) {
        empty();
        return;
    }
    const std::uint32_t length = checked_length(count);
    if (length > header_of(text)->capacity) {
        char* copied = new_text(source, length);  // before the old text goes: it may be the source
        free_text(text);
        text = copied;
        return;
    }
    std::memmove(text, source, length);
    set_length(text, length);
}

unsigned GString::length() const
{
    return header_of(text)->length;
}

GString& GString::operator+=(const GString& other)
{
    append(text, other.text, other.length());
    return *this;
}

GString& GString::operator+=(const char* other)
{
    append(text, other, length_of(other));
    return *this;
}

GString& GString::operator+=(char other)
{
    append(text, &other, 1);
    return *this;
}

void GString::empty()
{
    free_text(text);
    text = text_of(&kEmptyText);
}

void GString::setLength(unsigned count, char fill)
{
    const std::uint32_t wanted = checked_length(count);
    const std::uint32_t present = length();
    if (wanted == present)
        return;
    make_room(text, wanted);
    if (wanted > present)
        std::memset(text + present, fill, wanted - present);
    set_length(text, wanted);
}

void GString::extract(unsigned count)
{
    const std::uint32_t present = length();
    if (count >= present) {
        empty();
        return;
    }
    make_room(text, present);
    std::memmove(text, text + count, present - count);
    set_length(text, present - count);
}

void GString::remove(unsigned count)
{
    const std::uint32_t present = length();
    setLength(count < present ? present - count : 0, '\0');
}

int GString::replace(const char* from, const char* to, bool first_only)
{
    const std::string_view old_part = view_of(from);
    const std::string_view new_part = view_of(to);
    if (old_part.empty())
        return 0;
    const std::string_view whole = view();
    std::size_t place = whole.find(old_part);
    if (place == std::string_view::npos)
        return 0;

    GString result;  // `from` and `to` may be parts of this text
    std::size_t done = 0;
    int number = 0;
    do {
        append(result.text, whole.data() + done, static_cast<std::uint32_t>(place - done));
        append(result.text, new_part.data(), checked_length(new_part.size()));
        done = place + old_part.size();
        if (number < INT_MAX)
            ++number;
        place = first_only ? std::string_view::npos : whole.find(old_part, done);
    } while (place != std::string_view::npos);
    append(result.text, whole.data() + done, static_cast<std::uint32_t>(whole.size() - done));
    std::swap(text, result.text);
    return number;
}

GString GString::segmentExcluding(char end, unsigned start) const
{
    if (start >= length())
        return GString();
    const std::string_view rest = view().substr(start);
    return GString(rest.substr(0, rest.find(end)));
}

void GString::toLower()
{
    const std::uint32_t present = length();
    if (present == 0)
        return;
    make_room(text, present);
    for (char* byte = text; byte != text + present; ++byte)
        if (*byte >= 'A' && *byte <= 'Z')
            *byte = static_cast<char>(*byte - 'A' + 'a');
}

void GString::translate(const char* from, const char* to)
{
    constexpr int kRemoved = -1;
    std::array<int, 256> table;
    for (int byte = 0; byte < 256; ++byte)
        table[static_cast<std::size_t>(byte)] = byte;
    const std::string_view sources = view_of(from);
    const std::string_view targets = view_of(to);
    for (std::size_t place = sources.size(); place-- > 0;)  // of equal bytes the first counts
        table[static_cast<unsigned char>(sources[place])] =
            place < targets.size() ? static_cast<unsigned char>(targets[place]) : kRemoved;

    const std::uint32_t present = length();
    if (present == 0 || sources.empty())
        return;
    make_room(text, present);
    char* target = text;
    for (const char* byte = text; byte != text + present; ++byte) {
        const int translated = table[static_cast<unsigned char>(*byte)];
        if (translated != kRemoved)
            *target++ = static_cast<char>(translated);
    }
    set_length(text, static_cast<std::uint32_t>(target - text));
}

char* GString::getBuffer(unsigned count)
{
    make_room(text, checked_length(count));
    text[header_of(text)->capacity] = '\0';  // so that releaseBuffer finds an end
    return text;
}

void GString::releaseBuffer()
{
    if (is_static(text))
        return;
    const std::uint32_t capacity = header_of(text)->capacity;
    const void* end = std::memchr(text, '\0', capacity);
    set_length(text, end == nullptr
                         ? capacity
                         : static_cast<std::uint32_t>(static_cast<const char*>(end) - text));
}

bool operator==(const GString& a, const GString& b)
{
    return a.view() == b.view();
}

bool operator==(const GString& a, const char* b)
{
    return a.view() == view_of(b);
}

bool operator<(const GString& a, const GString& b)
{
    return a.view() < b.view();  // char_traits compares unsigned bytes
}

namespace {

GString joined(std::string_view a, std::string_view b)
{
    GString result;
    static_cast<void>(result.getBuffer(checked_length(std::uint64_t{a.size()} + b.size())));
    append(result.text, a.data(), static_cast<std::uint32_t>(a.size()));
    append(result.text, b.data(), static_cast<std::uint32_t>(b.size()));
    return result;
}

}  // namespace

GString operator+(const GString& a, const GString& b)
{
    return joined(a.view(), b.view());
}

GString operator+(const GString& a, const char* b)
{
    return joined(a.view(), view_of(b));
}

GString operator+(const char* a, const GString& b)
{
    return joined(view_of(a), b.view());
}

GString operator+(const GString& a, char b)
{
    return joined(a.view(), std::string_view(&b, 1));
}

opstream& operator<<(opstream& out, const GString& text)
{
    out.write_text(text.view());
    return out;
}

ipstream& operator>>(ipstream& in, GString& text)
{
    in.read_text(text);
    return in;
}

char* gnewstr(const char* text)
{
    if (text == nullptr)
        return nullptr;
    const std::size_t size = std::strlen(text) + 1;
    return static_cast<char*>(std::memcpy(zmr::allocate_block(size), text, size));
}

void gfreestr(char* text)
{
    zmr::free_block(text);
}
