#include "FaultyFileSystem.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace zmr {
namespace {

constexpr std::size_t kSector = 512;

void apply(std::string& bytes, std::uint64_t position, std::string_view data)
{
    if (data.empty())
        return;
    const auto at = static_cast<std::size_t>(position);
    if (bytes.size() < at + data.size())
        bytes.resize(at + data.size(), '\0');
    std::memcpy(bytes.data() + at, data.data(), data.size());
}

/// The part of a write that lies in the sector of `at`.
std::size_t part_in_sector(std::uint64_t at, std::size_t left)
{
    return std::min<std::size_t>(left, kSector - static_cast<std::size_t>(at % kSector));
}

bool overlap(std::uint64_t a, std::uint64_t a_size, std::uint64_t b, std::uint64_t b_size)
{
    return a < b + b_size && b < a + a_size;
}

}  // namespace

class FaultyFile final : public FileDevice {
public:
    FaultyFile(FaultyFileSystem& system, std::shared_ptr<FaultyFileSystem::File> file,
               bool writable)
        : system_(system), file_(std::move(file)), writable_(writable)
    {
    }
    ~FaultyFile() override
    {
        std::erase_if(file_->locks, [this](const auto& lock) { return lock.device == this; });
    }

    FileError read_at(std::uint64_t position, void* data, std::size_t size,
                      std::size_t& done) const override
    {
        done = 0;
        ++system_.reads_;
        if (system_.reads_ == system_.read_acted_before_)
            std::exchange(system_.act_, nullptr)();
        if (system_.reads_ == system_.failing_read_ ||
            (system_.failing_reads_from_ != 0 && system_.reads_ >= system_.failing_reads_from_))
            return {FileErrorKind::Other, 5};
        if (position >= file_->bytes.size())
            return {};
        done = std::min(size, file_->bytes.size() - static_cast<std::size_t>(position));
        std::memcpy(data, file_->bytes.data() + position, done);
        system_.bytes_read_ += done;
        return {};
    }

    FileError write_at(std::uint64_t position, const void* data, std::size_t size) override
    {
        if (!writable_)
            return {FileErrorKind::AccessDenied, 0};
        const std::string_view bytes(static_cast<const char*>(data), size);
        if (system_.operations_ + 1 == system_.looked_in_)
            apply(file_->bytes, position, bytes.substr(0, size / 2));
        const FileError error = system_.next_operation();
        if (error && system_.operations_ != system_.stop_)
            return error;
        // The write that power fails in reaches the file up to some byte.
        const std::size_t part = error ? system_.random_() % (size + 1) : size;
        file_->unsynced.push_back({false, position, std::string(bytes.substr(0, part))});
        apply(file_->bytes, position, bytes.substr(0, part));
        return error;
    }

    FileError length(std::uint64_t& bytes) const override
    {
        bytes = file_->bytes.size();
        return {};
    }

    FileError set_length(std::uint64_t bytes) override
    {
        if (const FileError error = system_.next_operation())
            return error;
        file_->unsynced.push_back({true, bytes, {}});
        file_->bytes.resize(static_cast<std::size_t>(bytes), '\0');
        return {};
    }

    FileError sync() override
    {
        if (const FileError error = system_.next_operation())
            return error;
        ++system_.syncs_;
        file_->synced = file_->bytes;
        file_->unsynced.clear();
        return {};
    }

    FileError lock(std::uint64_t position, std::uint64_t size, FileLockKind kind) override
    {
        for (const auto& lock : file_->locks)
            if (lock.device != this && overlap(lock.position, lock.size, position, size) &&
                (kind == FileLockKind::Exclusive || lock.kind == FileLockKind::Exclusive))
                return {FileErrorKind::InUse, 0};
        unlock(position, size);
        file_->locks.push_back({this, position, size, kind});
        return {};
    }

    void unlock(std::uint64_t position, std::uint64_t size) override
    {
        std::erase_if(file_->locks, [&](const auto& lock) {
            return lock.device == this && lock.position == position && lock.size == size;
        });
    }

    bool is_locked_by_other(std::uint64_t position, std::uint64_t size) const override
    {
        return std::any_of(file_->locks.begin(), file_->locks.end(), [&](const auto& lock) {
            return lock.device != this && overlap(lock.position, lock.size, position, size);
        });
    }

    FileError identity(FileIdentity& identity) const override
    {
        identity = {1, file_->number};
        return {};
    }

    void advise_random() override {}

    /// A hint: whether such bytes survive is as open as that of all others that were not synced.
    void start_write_out(std::uint64_t position, std::uint64_t size) override
    {
        if (position <= file_->bytes.size() && size <= file_->bytes.size() - position)
            system_.written_out_ += size;
    }

private:
    FaultyFileSystem& system_;
    std::shared_ptr<FaultyFileSystem::File> file_;
    bool writable_;
};

std::unique_ptr<FileDevice> FaultyFileSystem::open(const std::string& name, FileAccess access,
                                                   FileCreate create, FileShare, FileError& error)
{
    error = {};
    const auto place = files_.find(name);
    if (place == files_.end() && create == FileCreate::OpenExisting)
        error = {FileErrorKind::NotFound, 2};
    if (place != files_.end() && create == FileCreate::CreateNew)
        error = {FileErrorKind::AlreadyExists, 17};
    if (error)
        return nullptr;
    auto file = place == files_.end() ? nullptr : place->second;
    if (file == nullptr) {
        if ((error = next_operation()))
            return nullptr;
        file = std::make_shared<File>();
        file->number = ++files_made_;
        files_[name] = file;
    } else if (create == FileCreate::CreateOrTruncate) {
        if ((error = FaultyFile(*this, file, true).set_length(0)))
            return nullptr;
    }
    return std::make_unique<FaultyFile>(*this, std::move(file), access == FileAccess::ReadWrite);
}

FileError FaultyFileSystem::rename(const std::string& from, const std::string& to)
{
    if (const FileError error = next_operation())
        return error;
    if (!files_.contains(from))
        return {FileErrorKind::NotFound, 2};
    const std::shared_ptr<File> moved = files_.at(from);
    files_.erase(from);
    const auto place = files_.find(to);
    if (place != files_.end())
        moved->replaced = place->second->entry_synced ? place->second : place->second->replaced;
    else
        moved->replaced = nullptr;
    moved->entry_synced = false;
    files_[to] = moved;
    return {};
}

FileError FaultyFileSystem::remove(const std::string& name)
{
    if (const FileError error = next_operation())
        return error;
    return files_.erase(name) > 0 ? FileError() : FileError{FileErrorKind::NotFound, 2};
}

FileError FaultyFileSystem::sync_directory_of(const std::string&)
{
    if (const FileError error = next_operation())
        return error;
    for (auto& [name, file] : files_) {
        file->entry_synced = true;
        file->replaced = nullptr;
    }
    return {};
}

FileError FaultyFileSystem::next_operation()
{
    ++operations_;
    if (operations_ == looked_in_)
        std::exchange(look_, nullptr)();
    if (stop_ != 0 && operations_ >= stop_)
        return {FileErrorKind::Other, 5};
    if (failing_ != 0 && (operations_ == failing_ || (sticky_ && operations_ > failing_)))
        return {failure_, 28};
    return {};
}

void FaultyFileSystem::stop_at(std::uint64_t number, std::uint32_t seed)
{
    stop_ = operations_ + number;
    random_.seed(seed);
}

void FaultyFileSystem::fail_at(std::uint64_t number, FileErrorKind kind, bool sticky)
{
    failing_ = operations_ + number;
    failure_ = kind;
    sticky_ = sticky;
}

void FaultyFileSystem::within_operation(std::uint64_t number, std::function<void()> look)
{
    looked_in_ = operations_ + number;
    look_ = std::move(look);
}

void FaultyFileSystem::before_read(std::uint64_t number, std::function<void()> act)
{
    read_acted_before_ = reads_ + number;
    act_ = std::move(act);
}

void FaultyFileSystem::heal()
{
    stop_ = failing_ = failing_read_ = failing_reads_from_ = 0;
    looked_in_ = read_acted_before_ = 0;
}

void FaultyFileSystem::lose_power(std::uint32_t seed)
{
    heal();
    Random random(seed);
    for (auto place = files_.begin(); place != files_.end();) {
        if (!place->second->entry_synced && random() % 2 == 0) {
            if (place->second->replaced == nullptr) {
                place = files_.erase(place);
                continue;
            }
            place->second = place->second->replaced;
        }
        File& file = *place->second;
        // How likely a sector survives differs from loss to loss: all, none and between.
        const unsigned odds = random() % 5;
        const auto survives = [&] { return random() % 4 < odds; };
        std::vector<Change> pieces;
        for (const Change& change : file.unsynced) {
            if (change.cuts) {
                if (survives())
                    pieces.push_back(change);
                continue;
            }
            for (std::size_t at = 0; at < change.bytes.size();) {
                const std::size_t part =
                    part_in_sector(change.position + at, change.bytes.size() - at);
                if (survives())
                    pieces.push_back({false, change.position + at, change.bytes.substr(at, part)});
                at += part;
            }
        }
        std::shuffle(pieces.begin(), pieces.end(), random);
        std::string after = file.synced;
        for (const Change& piece : pieces) {
            if (piece.cuts)
                after.resize(static_cast<std::size_t>(piece.position), '\0');
            else
                apply(after, piece.position, piece.bytes);
        }
        file.bytes = after;
        file.synced = after;
        file.unsynced.clear();
        file.locks.clear();
        file.entry_synced = true;
        file.replaced = nullptr;
        ++place;
    }
}

void FaultyFileSystem::end_process()
{
    heal();
    for (auto& [name, file] : files_)
        file->locks.clear();
}

FaultyFileSystem FaultyFileSystem::copy() const
{
    FaultyFileSystem other;
    for (const auto& [name, file] : files_)
        other.set_bytes(name, file->bytes);
    return other;
}

void FaultyFileSystem::set_bytes(const std::string& name, std::string bytes)
{
    auto file = std::make_shared<File>();
    file->number = ++files_made_;
    file->bytes = bytes;
    file->synced = std::move(bytes);
    file->entry_synced = true;
    files_[name] = std::move(file);
}

}  // namespace zmr
