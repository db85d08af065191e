#include "tests/support/ChildProcess.h"

#include <array>

bool ChildProcess::read_line(std::string& line)
{
    std::array<char, 4096> bytes{};
    std::size_t end = read_.find('\n');
    while (end == std::string::npos) {
        const std::size_t count = read_out(bytes.data(), bytes.size());
        if (count == 0)
            return false;
        read_.append(bytes.data(), count);
        end = read_.find('\n');
    }
    line = read_.substr(0, end);
    read_.erase(0, end + 1);
    if (line.ends_with('\r'))
        line.pop_back();
    return true;
}
