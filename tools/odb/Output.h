#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

namespace odb {

/// How results are printed: for a person or for a program.
enum class Style { Text, Json };

/// Prints to the standard output.
void print(std::string_view text);
/// Prints "odb: " and a line to the standard error.
void complain(std::string_view text);
/// Prints what was buffered. False when the output could not be written.
[[nodiscard]] bool flush_output();

/// `text` as a terminal may show it: control characters are escaped as "\n" or "\x1b", so that a
/// name from a file can't act on the terminal.
[[nodiscard]] std::string printable(std::string_view text);
/// The columns that `text` takes on a terminal, one for each character.
[[nodiscard]] std::size_t columns_of(std::string_view text);
/// `value` on one line; bytes that are no UTF-8 become the replacement character.
[[nodiscard]] std::string json_text(const nlohmann::json& value);

/// Prints a JSON array element by element, so that a long one takes no memory.
class JsonArrayPrinter {
public:
    void add(const nlohmann::json& value);
    /// Closes the array and ends the line with `tail`.
    void close(std::string_view tail = {});

private:
    void open();
    bool open_ = false;
    bool first_ = true;
};

/// Shows how far long work has come, on a line of the standard error, when that is a terminal; else
/// nothing. What is printed meanwhile takes the place of the line.
class Progress {
public:
    explicit Progress(std::string_view what);
    /// Wipes the line.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// Cheap: draws at most ten times a second.
    void show(std::string_view detail);

private:
    std::string what_;
    bool on_;
    bool shown_ = false;
    long long last_ms_ = 0;
};

}  // namespace odb
