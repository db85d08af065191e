#pragma once

#include "platform/FileDevice.h"

#include <memory>
#include <string>
#include <utility>

/// The files of another file system, of which those whose name begins with a text can only be read,
/// as on a read-only share: opening them to write, making, renaming and removing them is denied.
class ReadOnlyFileSystem final : public zmr::FileSystemDevice {
public:
    ReadOnlyFileSystem(zmr::FileSystemDevice& files, std::string start)
        : files_(files), start_(std::move(start))
    {
    }

    std::unique_ptr<zmr::FileDevice> open(const std::string& name, zmr::FileAccess access,
                                          zmr::FileCreate create, zmr::FileShare share,
                                          zmr::FileError& error) override
    {
        const bool only_looks =
            access == zmr::FileAccess::Read && create == zmr::FileCreate::OpenExisting;
        if (is_kept(name) && !only_looks) {
            // What is not there is said to be missing, unless it is to be made.
            const auto present = files_.open(name, zmr::FileAccess::Read,
                                             zmr::FileCreate::OpenExisting, share, error);
            if (present != nullptr || create != zmr::FileCreate::OpenExisting)
                error = denied();
            return nullptr;
        }
        return files_.open(name, access, create, share, error);
    }
    zmr::FileError rename(const std::string& from, const std::string& to) override
    {
        return is_kept(from) || is_kept(to) ? denied() : files_.rename(from, to);
    }
    zmr::FileError remove(const std::string& name) override
    {
        return is_kept(name) ? denied() : files_.remove(name);
    }
    zmr::FileError sync_directory_of(const std::string& name) override
    {
        return files_.sync_directory_of(name);
    }
    [[nodiscard]] int denials() const { return denials_; }

private:
    /// Separators are told in two ways on some systems.
    [[nodiscard]] bool is_kept(std::string name) const
    {
        for (char& letter : name)
            letter = letter == '\\' ? '/' : letter;
        return name.starts_with(start_);
    }
    zmr::FileError denied()
    {
        ++denials_;
        return {zmr::FileErrorKind::AccessDenied, 0};
    }

    zmr::FileSystemDevice& files_;
    std::string start_;
    int denials_ = 0;
};
