#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zmr {

/// One key of a table and the command that it stands for.
struct AcceleratorKey {
    bool virtual_key = false;  ///< `key` is a key's virtual code, else a character's code.
    bool shift = false;        ///< Of a virtual key only.
    bool control = false;      ///< Of a virtual key only.
    bool alt = false;
    std::uint16_t key = 0;
    std::uint16_t command = 0;

    friend bool operator==(const AcceleratorKey&, const AcceleratorKey&) = default;
};

/// What a window's queue says of a key.
struct KeyMessage {
    enum class Kind : std::uint8_t {
        key_down,         ///< WM_KEYDOWN; `code` is virtual.
        system_key_down,  ///< WM_SYSKEYDOWN; `code` is virtual.
        character,        ///< WM_CHAR; `code` is a character's.
        system_character  ///< WM_SYSCHAR; `code` is a character's.
    };
    Kind kind;
    std::uint32_t code;
    bool shift;  ///< The modifier keys as they were pressed with it.
    bool control;
    bool alt;
};

/// A table of accelerators where no window system translates keys, by that system's rules.
class ZMR_GV_API AcceleratorTable {
public:
    AcceleratorTable() = default;
    explicit AcceleratorTable(std::vector<AcceleratorKey> keys) : keys_(std::move(keys)) {}
    /// Takes a table of resources: records of flags, key, command and padding, 16 bits each, the
    /// last one marked. False, with nothing changed, when no record is marked as the last or none
    /// is there. What follows the last one is ignored.
    [[nodiscard]] bool read(std::span<const std::byte> resource);

    [[nodiscard]] const std::vector<AcceleratorKey>& keys() const { return keys_; }
    /// The command of the first key of the table that the message presses; null when there is none.
    /// Linear.
    [[nodiscard]] const AcceleratorKey* find(const KeyMessage& message) const;

private:
    std::vector<AcceleratorKey> keys_;
};

}  // namespace zmr
