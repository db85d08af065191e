#include "app/AcceleratorTable.h"

#include <algorithm>

namespace {

constexpr std::size_t kRecordBytes = 8;

// Flags of a record.
constexpr unsigned kVirtualKey = 0x01;
constexpr unsigned kShift = 0x04;
constexpr unsigned kControl = 0x08;
constexpr unsigned kAlt = 0x10;
constexpr unsigned kLast = 0x80;

std::uint16_t word_at(std::span<const std::byte> bytes, std::size_t offset)
{
    return static_cast<std::uint16_t>(std::to_integer<unsigned>(bytes[offset]) |
                                      std::to_integer<unsigned>(bytes[offset + 1]) << 8U);
}

}  // namespace

bool zmr::AcceleratorTable::read(std::span<const std::byte> resource)
{
    std::vector<AcceleratorKey> keys;
    for (; resource.size() >= kRecordBytes; resource = resource.subspan(kRecordBytes)) {
        const unsigned flags = word_at(resource, 0);
        const bool virtual_key = (flags & kVirtualKey) != 0;
        keys.push_back({.virtual_key = virtual_key,
                        .shift = virtual_key && (flags & kShift) != 0,
                        .control = virtual_key && (flags & kControl) != 0,
                        .alt = (flags & kAlt) != 0,
                        .key = word_at(resource, 2),
                        .command = word_at(resource, 4)});
        if ((flags & kLast) != 0) {
            keys_ = std::move(keys);
            return true;
        }
    }
    return false;
}

const zmr::AcceleratorKey* zmr::AcceleratorTable::find(const KeyMessage& message) const
{
    const bool virtual_key = message.kind == KeyMessage::Kind::key_down ||
                             message.kind == KeyMessage::Kind::system_key_down;
    const auto found = std::ranges::find_if(keys_, [&](const AcceleratorKey& key) {
        if (key.virtual_key != virtual_key || key.key != message.code || key.alt != message.alt)
            return false;
        // A character says itself what it was typed with.
        return !virtual_key || (key.shift == message.shift && key.control == message.control);
    });
    return found != keys_.end() ? &*found : nullptr;
}
