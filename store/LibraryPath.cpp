#include "store/LibraryPath.h"

#include <utility>

namespace zmr {
namespace {

constexpr char kEscaped = '\xFF';   // behind a zero byte: the byte itself
constexpr char kLevelEnd = '\x01';  // behind a zero byte: the end of the level

}  // namespace

bool LibraryPath::append(std::string_view level)
{
    if (level.size() > kMaxLevelBytes || size() >= kMaxLevels)
        return false;
    for (const char byte : level) {
        key_ += byte;
        if (byte == '\0')
            key_ += kEscaped;
    }
    key_ += '\0';
    key_ += kLevelEnd;
    return true;
}

std::size_t LibraryPath::size() const
{
    std::size_t levels = 0;
    for (std::size_t i = 0; i + 1 < key_.size(); ++i) {
        if (key_[i] != '\0')
            continue;
        ++i;
        if (key_[i] == kLevelEnd)
            ++levels;
    }
    return levels;
}

std::string LibraryPath::level(std::size_t index) const
{
    std::string text;
    std::size_t current = 0;
    for (std::size_t i = 0; i < key_.size() && current <= index; ++i) {
        if (key_[i] != '\0') {
            if (current == index)
                text += key_[i];
            continue;
        }
        ++i;
        if (key_[i] == kLevelEnd)
            ++current;
        else if (current == index)
            text += '\0';
    }
    return text;
}

std::string LibraryPath::readable() const
{
    std::string text;
    const std::size_t levels = size();
    for (std::size_t i = 0; i < levels; ++i) {
        if (i > 0)
            text += '/';
        text += level(i);
    }
    return text;
}

bool LibraryPath::assign_key(std::string_view key)
{
    std::size_t levels = 0;
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < key.size(); ++i) {
        if (key[i] != '\0') {
            ++bytes;
        } else {
            if (++i == key.size() || (key[i] != kEscaped && key[i] != kLevelEnd))
                return false;
            if (key[i] == kEscaped) {
                ++bytes;
            } else {
                bytes = 0;
                if (++levels > kMaxLevels)
                    return false;
            }
        }
        if (bytes > kMaxLevelBytes)
            return false;
    }
    if (!key.empty() && !(key.size() >= 2 && key.back() == kLevelEnd && bytes == 0))
        return false;
    key_ = std::string(key);
    return true;
}

}  // namespace zmr
