#pragma once

#include "platform/Export.h"
#include "platform/PlatformTypes.h"

#include <cstdarg>
#include <string_view>

class ipstream;
class opstream;

/// Text as bytes (UTF-8 where it is shown or names a file), always ended by a zero byte. The object
/// is one pointer to its text, never null, so it can be handed to C interfaces by `text`; pass
/// `text` and not the object through `...`. Copies are deep. A null `const char*` counts as empty.
/// Lengths are in bytes, up to 2^32 - 64; more throws OutOfMemory_Exception.
class ZMR_GV_API GString {
public:
    GString() noexcept;
    GString(const char* source);
    GString(const GString& other);
    GString(GString&& other) noexcept;
    /// The first `count` bytes of `source`, which may hold zero bytes.
    GString(const char* source, unsigned count);
    explicit GString(std::string_view source);
    GString(char fill, unsigned count);
    /// The text of a string resource; empty when there is none.
    GString(HINSTANCE module, unsigned id);
    ~GString();

    GString& operator=(const GString& other);
    GString& operator=(GString&& other) noexcept;
    GString& operator=(const char* source);
    void assign(const char* source, unsigned count);

    operator const char*() const { return text; }
    [[nodiscard]] std::string_view view() const { return {text, length()}; }
    [[nodiscard]] unsigned length() const;
    [[nodiscard]] bool is_empty() const { return *text == '\0' && length() == 0; }

    GString& operator+=(const GString& other);
    GString& operator+=(const char* other);
    GString& operator+=(char other);

    /// Becomes the empty text.
    void empty();
    /// Cuts the text to `count` bytes, or fills it up to them with `fill`.
    void setLength(unsigned count, char fill);
    /// Removes the first `count` bytes.
    void extract(unsigned count);
    /// Removes the last `count` bytes.
    void remove(unsigned count);
    /// Replaces occurrences of `from` (not empty) by `to`: the first one only, or with `first_only`
    /// false all of them, from the left, not looking into what was put in. Returns their number.
    int replace(const char* from, const char* to, bool first_only);
    /// The bytes from position `start` up to the next `end`, without it; to the end of the text
    /// when there is none; empty when `start` is beyond the end.
    [[nodiscard]] GString segmentExcluding(char end, unsigned start) const;
    /// ASCII letters to lower case; other bytes stay.
    void toLower();
    /// Turns every byte that occurs in `from` into the byte at the same place in `to`. Bytes of
    /// `from` beyond the length of `to` are removed from the text.
    void translate(const char* from, const char* to);

    /// A writable buffer of at least `count` bytes and a zero byte, with the text in front. Ends
    /// with releaseBuffer, before any other operation.
    [[nodiscard]] char* getBuffer(unsigned count);
    /// Takes the length of the text in the buffer: up to its first zero byte.
    void releaseBuffer();

    /// Sets the text of string `id` as the added functions give it, the function added last asked
    /// first. False, and the empty text, when none knows it.
    bool loadString(unsigned id);
    /// The same from the string table of `module`; with a null module as above.
    bool loadString(HINSTANCE module, unsigned id);
    /// Formats as printf does, after the string resource `id`.
    void format(unsigned id, ...);
    void vformat(const char* format, std::va_list arguments);
    void vformat(unsigned id, std::va_list arguments);
    void vformat(HINSTANCE module, unsigned id, std::va_list arguments);

    /// A function that looks up string `id`: writes at most `size` bytes with the zero byte into
    /// `buffer` and returns the length without it, 0 when it has none. A text that fills the buffer
    /// is asked for again with a larger one. Functions stay for the life of the process.
    using LoadStringFunc = unsigned (*)(unsigned id, char* buffer, unsigned size, void* user);
    static void AddLoadStringFunc(LoadStringFunc function, void* user);

    char* text;

protected:
    friend class GStaticString;
};

static_assert(sizeof(GString) == sizeof(char*));

[[nodiscard]] ZMR_GV_API bool operator==(const GString& a, const GString& b);
[[nodiscard]] ZMR_GV_API bool operator==(const GString& a, const char* b);
/// Order by unsigned bytes.
[[nodiscard]] ZMR_GV_API bool operator<(const GString& a, const GString& b);
[[nodiscard]] ZMR_GV_API GString operator+(const GString& a, const GString& b);
[[nodiscard]] ZMR_GV_API GString operator+(const GString& a, const char* b);
[[nodiscard]] ZMR_GV_API GString operator+(const char* a, const GString& b);
[[nodiscard]] ZMR_GV_API GString operator+(const GString& a, char b);
ZMR_GV_API opstream& operator<<(opstream& out, const GString& text);
ZMR_GV_API ipstream& operator>>(ipstream& in, GString& text);

/// A copy of `text` on the heap for gfreestr; null gives null.
[[nodiscard]] ZMR_GV_API char* gnewstr(const char* text);
/// Frees what gnewstr, ipstream::readString and ResourceFile::read_class_name returned.
ZMR_GV_API void gfreestr(char* text);
