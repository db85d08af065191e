#pragma once

#include "platform/FileDevice.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>

/// Files in memory for fuzz targets: no disk, no locks of other processes.
class MemoryFileSystem final : public zmr::FileSystemDevice {
public:
    [[nodiscard]] std::string& bytes(const std::string& name) { return files_[name]; }

    std::unique_ptr<zmr::FileDevice> open(const std::string& name, zmr::FileAccess,
                                          zmr::FileCreate create, zmr::FileShare,
                                          zmr::FileError& error) override
    {
        error = {};
        if (create == zmr::FileCreate::OpenExisting && !files_.contains(name)) {
            error.kind = zmr::FileErrorKind::NotFound;
            return nullptr;
        }
        if (create == zmr::FileCreate::CreateOrTruncate)
            files_[name].clear();
        return std::make_unique<File>(files_[name]);
    }
    zmr::FileError rename(const std::string& from, const std::string& to) override
    {
        files_[to] = std::move(files_[from]);
        files_.erase(from);
        return {};
    }
    zmr::FileError remove(const std::string& name) override
    {
        files_.erase(name);
        return {};
    }
    zmr::FileError sync_directory_of(const std::string&) override { return {}; }

private:
    class File final : public zmr::FileDevice {
    public:
        explicit File(std::string& bytes) : bytes_(bytes) {}
        zmr::FileError read_at(std::uint64_t position, void* data, std::size_t size,
                               std::size_t& done) const override
        {
            done = 0;
            if (position >= bytes_.size())
                return {};
            done = std::min(size, bytes_.size() - static_cast<std::size_t>(position));
            std::memcpy(data, bytes_.data() + position, done);
            return {};
        }
        zmr::FileError write_at(std::uint64_t position, const void* data, std::size_t size) override
        {
            if (position > kMostBytes || size > kMostBytes - position)
                return {zmr::FileErrorKind::DiskFull, 0};
            if (size == 0)
                return {};
            const auto end = static_cast<std::size_t>(position) + size;
            if (bytes_.size() < end)
                bytes_.resize(end);
            std::memcpy(bytes_.data() + position, data, size);
            return {};
        }
        zmr::FileError length(std::uint64_t& length_bytes) const override
        {
            length_bytes = bytes_.size();
            return {};
        }
        zmr::FileError set_length(std::uint64_t length_bytes) override
        {
            if (length_bytes > kMostBytes)
                return {zmr::FileErrorKind::DiskFull, 0};
            bytes_.resize(static_cast<std::size_t>(length_bytes));
            return {};
        }
        zmr::FileError sync() override { return {}; }
        zmr::FileError lock(std::uint64_t, std::uint64_t, zmr::FileLockKind) override { return {}; }
        void unlock(std::uint64_t, std::uint64_t) override {}
        bool is_locked_by_other(std::uint64_t, std::uint64_t) const override { return false; }
        zmr::FileError identity(zmr::FileIdentity& identity) const override
        {
            identity = {1, 1};
            return {};
        }
        void advise_random() override {}

    private:
        static constexpr std::uint64_t kMostBytes = 64u << 20;
        std::string& bytes_;
    };
    std::map<std::string, std::string> files_;
};
