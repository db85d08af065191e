#pragma once

#include <cstdint>
#include <string_view>

namespace scene {

/// Walks a text file's lines and their words, whatever ends the lines (LF, CR LF or CR), and reads
/// numbers the same in every locale. A backslash before a line's end joins the next line to it.
class TextScanner {
public:
    enum class Comments : std::uint8_t { None, Hash };  ///< Hash: from "#" to the line's end.

    /// `text` must outlive the scanner.
    TextScanner(std::string_view text, Comments comments) : rest_(text), comments_(comments) {}

    /// Passes over what is left of the line and goes to the next one that holds a word. False at
    /// the end of the text.
    [[nodiscard]] bool next_line();
    /// The next word of the line; empty at its end.
    [[nodiscard]] std::string_view word();
    /// The next word of the text, wherever its line; empty at the end.
    [[nodiscard]] std::string_view word_of_text();
    /// What is left of the line, without blanks around it.
    [[nodiscard]] std::string_view rest_of_line();
    /// The next word of the line as a number. Throws GLibraryException, naming `what` and the line,
    /// when it is missing, no number, or beyond a float.
    [[nodiscard]] float number(const char* what);
    /// The line of the word that was read last, from 1.
    [[nodiscard]] std::uint64_t line() const { return line_; }
    /// Throws GLibraryException: "line 12: " and the text, which is formatted as printf does.
    [[noreturn]] void fail(const char* format, ...) const __attribute__((format(printf, 2, 3)));

private:
    void skip_blanks();

    std::string_view rest_;
    Comments comments_;
    std::uint64_t line_ = 1;
    bool in_line_ = false;  ///< False in front of the whole text.
};

/// Parses `word`, which may begin with "+". False unless the whole of it is a number within a
/// float.
[[nodiscard]] bool parse_number(std::string_view word, float& value);
/// `word` for a message: at most 40 bytes of it, each that is not printable ASCII as "?". Holds its
/// text; a temporary lives to the end of the call that it is an argument of.
class Quoted {
public:
    explicit Quoted(std::string_view word);
    [[nodiscard]] const char* text() const { return text_; }

private:
    char text_[44];
};

}  // namespace scene
