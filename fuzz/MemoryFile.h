#pragma once

#include "platform/FileDevice.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>

/// Files in memory for fuzz targets: no disk, no locks of other processes. Each has an identity of
/// its own and may be renamed and removed while it is open; open devices are counted.
class MemoryFileSystem final : public zmr::FileSystemDevice {
public:
    /// What the file holds. A missing one is made.
    [[nodiscard]] std::string& bytes(const std::string& name) { return *made(name); }
    [[nodiscard]] int open_devices() const { return open_devices_; }

    std::unique_ptr<zmr::FileDevice> open(const std::string& name, zmr::FileAccess,
                                          zmr::FileCreate create, zmr::FileShare,
                                          zmr::FileError& error) override
    {
        error = {};
        const auto place = files_.find(name);
        if (place == files_.end() && create == zmr::FileCreate::OpenExisting)
            error.kind = zmr::FileErrorKind::NotFound;
        if (place != files_.end() && create == zmr::FileCreate::CreateNew)
            error.kind = zmr::FileErrorKind::AlreadyExists;
        if (error)
            return nullptr;
        const Bytes& bytes = made(name);
        if (create == zmr::FileCreate::CreateOrTruncate)
            bytes->clear();
        return std::make_unique<File>(bytes, open_devices_);
    }
    zmr::FileError rename(const std::string& from, const std::string& to) override
    {
        const auto place = files_.find(from);
        if (place == files_.end())
            return {zmr::FileErrorKind::NotFound, 0};
        const Bytes moved = place->second;
        files_.erase(place);
        files_[to] = moved;
        return {};
    }
    zmr::FileError remove(const std::string& name) override
    {
        return files_.erase(name) > 0 ? zmr::FileError()
                                      : zmr::FileError{zmr::FileErrorKind::NotFound, 0};
    }
    zmr::FileError sync_directory_of(const std::string&) override { return {}; }

private:
    using Bytes = std::shared_ptr<std::string>;

    class File final : public zmr::FileDevice {
    public:
        File(Bytes bytes, int& open_devices) : bytes_(std::move(bytes)), open_devices_(open_devices)
        {
            ++open_devices_;
        }
        ~File() override { --open_devices_; }

        zmr::FileError read_at(std::uint64_t position, void* data, std::size_t size,
                               std::size_t& done) const override
        {
            done = 0;
            if (position >= bytes_->size())
                return {};
            done = std::min(size, bytes_->size() - static_cast<std::size_t>(position));
            std::memcpy(data, bytes_->data() + position, done);
            return {};
        }
        zmr::FileError write_at(std::uint64_t position, const void* data, std::size_t size) override
        {
            if (position > kMostBytes || size > kMostBytes - position)
                return {zmr::FileErrorKind::DiskFull, 0};
            if (size == 0)
                return {};
            const auto end = static_cast<std::size_t>(position) + size;
            if (bytes_->size() < end)
                bytes_->resize(end);
            std::memcpy(bytes_->data() + position, data, size);
            return {};
        }
        zmr::FileError length(std::uint64_t& bytes) const override
        {
            bytes = bytes_->size();
            return {};
        }
        zmr::FileError set_length(std::uint64_t bytes) override
        {
            if (bytes > kMostBytes)
                return {zmr::FileErrorKind::DiskFull, 0};
            bytes_->resize(static_cast<std::size_t>(bytes));
            return {};
        }
        zmr::FileError sync() override { return {}; }
        zmr::FileError lock(std::uint64_t, std::uint64_t, zmr::FileLockKind) override { return {}; }
        void unlock(std::uint64_t, std::uint64_t) override {}
        bool is_locked_by_other(std::uint64_t, std::uint64_t) const override { return false; }
        zmr::FileError identity(zmr::FileIdentity& identity) const override
        {
            identity = {1, reinterpret_cast<std::uintptr_t>(bytes_.get())};
            return {};
        }
        void advise_random() override {}

    private:
        static constexpr std::uint64_t kMostBytes = 64u << 20;
        Bytes bytes_;
        int& open_devices_;
    };

    const Bytes& made(const std::string& name)
    {
        Bytes& bytes = files_[name];
        if (bytes == nullptr)
            bytes = std::make_shared<std::string>();
        return bytes;
    }

    std::map<std::string, Bytes> files_;
    int open_devices_ = 0;
};
