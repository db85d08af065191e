#include "tools/odb/Output.h"

#include "tools/odb/Terminal.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace odb {

namespace {

constexpr std::size_t kProgressColumns = 72;

bool output_failed = false;
bool progress_is_drawn = false;

long long now_ms()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

// Whether `text` has at `i` a control character of the second set in UTF-8, which terminals obey
// too.
bool is_second_control(std::string_view text, std::size_t i)
{
    if (text[i] != '\xc2' || i + 1 == text.size())
        return false;
    const auto next = static_cast<unsigned char>(text[i + 1]);
    return next >= 0x80 && next < 0xa0;
}

// Takes the line of progress away, so that nothing is printed behind it.
void wipe_progress()
{
    if (progress_is_drawn)
        terminal::wipe_error_line();
    progress_is_drawn = false;
}

}  // namespace

void print(std::string_view text)
{
    wipe_progress();
    if (!text.empty() && std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
        output_failed = true;
}

void complain(std::string_view text)
{
    static_cast<void>(std::fflush(stdout));
    wipe_progress();
    terminal::write_error(fmt::format("odb: {}\n", printable(text)));
}

bool flush_output()
{
    return std::fflush(stdout) == 0 && !output_failed;
}

std::string printable(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte == '\n')
            result += "\\n";
        else if (byte == '\t')
            result += "\\t";
        else if (byte < 0x20 || byte == 0x7f)
            result += fmt::format("\\x{:02x}", byte);
        else if (is_second_control(text, i))
            result += fmt::format("\\x{:02x}", static_cast<unsigned char>(text[++i]));
        else
            result += text[i];
    }
    return result;
}

std::size_t columns_of(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xc0) != 0x80;
    }));
}

std::string json_text(const nlohmann::json& value)
{
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void JsonArrayPrinter::open()
{
    if (!open_)
        print("[");
    open_ = true;
}

void JsonArrayPrinter::add(const nlohmann::json& value)
{
    open();
    print(first_ ? "\n" : ",\n");
    first_ = false;
    print(json_text(value));
}

void JsonArrayPrinter::close(std::string_view tail)
{
    open();
    print(first_ ? "]" : "\n]");
    print(tail);
    print("\n");
}

Progress::Progress(std::string_view what) : what_(what), on_(terminal::error_is_terminal()) {}

Progress::~Progress()
{
    wipe_progress();
}

void Progress::show(std::string_view detail)
{
    if (!on_)
        return;
    const long long now = now_ms();
    if (shown_ && now - last_ms_ < 100)
        return;
    last_ms_ = now;
    shown_ = true;
    std::string line = printable(fmt::format("{} {}", what_, detail));
    if (columns_of(line) > kProgressColumns) {
        std::size_t size = std::min(line.size(), kProgressColumns);
        while (size > 0 && (static_cast<unsigned char>(line[size]) & 0xc0) == 0x80)
            --size;
        line.resize(size);
    }
    wipe_progress();
    terminal::write_error(line);
    progress_is_drawn = true;
}

}  // namespace odb
