#pragma once

#include "AllocationFaults.h"
#include "platform/FileDevice.h"

#include <memory>
#include <string>
#include <utility>

/// Passes all on to another file system, in whose own work no allocation is made to fail.
class PausedFileSystem final : public zmr::FileSystemDevice {
public:
    explicit PausedFileSystem(zmr::FileSystemDevice& files) : files_(files) {}

    std::unique_ptr<zmr::FileDevice> open(const std::string& name, zmr::FileAccess access,
                                          zmr::FileCreate create, zmr::FileShare share,
                                          zmr::FileError& error) override
    {
        const AllocationFaults::Pause pause;
        auto device = files_.open(name, access, create, share, error);
        return device == nullptr ? nullptr : std::make_unique<File>(std::move(device));
    }
    zmr::FileError rename(const std::string& from, const std::string& to) override
    {
        const AllocationFaults::Pause pause;
        return files_.rename(from, to);
    }
    zmr::FileError remove(const std::string& name) override
    {
        const AllocationFaults::Pause pause;
        return files_.remove(name);
    }
    zmr::FileError sync_directory_of(const std::string& name) override
    {
        const AllocationFaults::Pause pause;
        return files_.sync_directory_of(name);
    }

private:
    class File final : public zmr::FileDevice {
    public:
        explicit File(std::unique_ptr<zmr::FileDevice> device) : device_(std::move(device)) {}

        zmr::FileError read_at(std::uint64_t position, void* data, std::size_t size,
                               std::size_t& done) const override
        {
            const AllocationFaults::Pause pause;
            return device_->read_at(position, data, size, done);
        }
        zmr::FileError write_at(std::uint64_t position, const void* data, std::size_t size) override
        {
            const AllocationFaults::Pause pause;
            return device_->write_at(position, data, size);
        }
        zmr::FileError length(std::uint64_t& bytes) const override
        {
            const AllocationFaults::Pause pause;
            return device_->length(bytes);
        }
        zmr::FileError set_length(std::uint64_t bytes) override
        {
            const AllocationFaults::Pause pause;
            return device_->set_length(bytes);
        }
        zmr::FileError sync() override
        {
            const AllocationFaults::Pause pause;
            return device_->sync();
        }
        zmr::FileError lock(std::uint64_t position, std::uint64_t size,
                            zmr::FileLockKind kind) override
        {
            const AllocationFaults::Pause pause;
            return device_->lock(position, size, kind);
        }
        void unlock(std::uint64_t position, std::uint64_t size) override
        {
            const AllocationFaults::Pause pause;
            device_->unlock(position, size);
        }
        [[nodiscard]] bool is_locked_by_other(std::uint64_t position,
                                              std::uint64_t size) const override
        {
            const AllocationFaults::Pause pause;
            return device_->is_locked_by_other(position, size);
        }
        zmr::FileError identity(zmr::FileIdentity& identity) const override
        {
            const AllocationFaults::Pause pause;
            return device_->identity(identity);
        }
        void advise_random() override { device_->advise_random(); }

    private:
        std::unique_ptr<zmr::FileDevice> device_;
    };

    zmr::FileSystemDevice& files_;
};
