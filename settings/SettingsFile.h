#pragma once

#include "platform/FileDevice.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace zmr {

enum class SettingsFileState : std::uint8_t {
    Whole,
    Missing,
    Damaged  ///< Not all of it could be read, or it is too long: it must not be replaced.
};

struct SettingsFileContent {
    SettingsFileState state = SettingsFileState::Missing;
    std::string bytes;
};

/// A small file that is read and replaced as a whole, by any number of processes at once. Whoever
/// reads sees one whole state of it, before or after an update; a kill or a power cut at any
/// instant leaves the former or the new one. Holds no handle between calls; one thread, as any
/// number of these may stand for one file.
///
/// Beside "NAME" lie "NAME.lock", which stays and is empty, and while it is updated "NAME.new".
class ZMR_GV_API SettingsFile {
public:
    /// Longer files are Damaged, and no update makes one.
    static constexpr std::size_t kMostBytes = std::size_t{8} << 20;

    /// `device` is borrowed. `name` is the full name.
    SettingsFile(FileSystemDevice& device, std::string name);

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] SettingsFileContent load() const;

    /// Changes the text that it is given; false takes the update back.
    using Edit = std::function<bool(std::string& bytes)>;
    /// Puts what `edit` makes of the file's bytes, none for a missing file, in its place. No other
    /// update comes between, whichever process does it. True when that is on the disk; an edit that
    /// changes nothing writes nothing. False, with the file as it was, when the edit or the system
    /// refuses, when another process holds the lock for 10 seconds, and for a damaged file.
    [[nodiscard]] bool update(const Edit& edit) const;

private:
    [[nodiscard]] std::unique_ptr<FileDevice> take_lock() const;
    [[nodiscard]] bool may_be_written(SettingsFileState state) const;
    [[nodiscard]] bool replace(const std::string& bytes, SettingsFileState state) const;

    FileSystemDevice& device_;
    std::string name_;
};

/// The rights that users have on `from` are given to `to`, where the system keeps them with the
/// file; failing changes nothing.
void keep_rights(const std::string& from, const std::string& to);
/// Whether the file is marked as one that nobody may write, which does not bind every user.
[[nodiscard]] bool is_marked_read_only(const std::string& name);
/// Makes the folders above `name` when they are those of the user's own settings. False when it did
/// not.
[[nodiscard]] bool make_settings_folder(const std::string& name);

}  // namespace zmr
