#include "store/LibraryStorage.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace zmr {

void LibraryStorage::attach(std::unique_ptr<FileDevice> device, std::string name, std::string owner,
                            bool fixed_part_missing)
{
    device_ = std::move(device);
    name_ = std::move(name);
    owner_ = std::move(owner);
    fixed_part_missing_ = fixed_part_missing;
    error_ = {};
    no_reserve_ = false;
    restart_at(kDataStart);
}

void LibraryStorage::attach_missing(std::string name, std::string owner)
{
    device_.reset();
    name_ = std::move(name);
    owner_ = std::move(owner);
    fixed_part_missing_ = true;
    error_ = {};
    no_reserve_ = false;
    restart_at(kDataStart);
}

void LibraryStorage::detach()
{
    device_.reset();
    error_ = {};
    syncs_ = 0;
    restart_at(kDataStart);
}

void LibraryStorage::restart_at(std::uint64_t end)
{
    buffer_.clear();
    end_ = end;
    begin_commit();
}

void LibraryStorage::begin_commit()
{
    commit_start_ = end_;
    commit_bytes_ = 0;
    written_out_ = end_;
    appended_.reset();
    used_.clear();
    must_sync_first_ = false;
}

void LibraryStorage::set_error(const FileError& error)
{
    if (error && !error_)
        error_ = error;
}

std::uint64_t LibraryStorage::length() const
{
    std::uint64_t bytes = 0;
    if (device_ != nullptr && device_->length(bytes))
        bytes = 0;
    return buffer_.empty() ? bytes : std::max(bytes, end_);
}

bool LibraryStorage::read_device(std::uint64_t position, void* data, std::size_t size,
                                 std::size_t& done) const
{
    const FileError error = device_->read_at(position, data, size, done);
    if (error && !read_error_)
        read_error_ = error;
    return !error;
}

std::size_t LibraryStorage::read_some(std::uint64_t position, void* data, std::size_t size) const
{
    const std::uint64_t flushed = end_ - buffer_.size();
    auto* bytes = static_cast<char*>(data);
    std::size_t done = 0;
    const bool all_buffered = !buffer_.empty() && position >= flushed;
    if (!all_buffered && device_ != nullptr) {
        std::size_t wanted = size;
        if (!buffer_.empty())
            wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, flushed - position));
        if (!read_device(position, bytes, wanted, done) || done < size)
            if (buffer_.empty() || position + done != flushed)
                return done;
    }
    const std::uint64_t at = position + done;
    if (done == size || buffer_.empty() || at < flushed || at >= end_)
        return done;
    const auto offset = static_cast<std::size_t>(at - flushed);
    const std::size_t part = std::min(size - done, buffer_.size() - offset);
    std::memcpy(bytes + done, buffer_.data() + offset, part);
    return done + part;
}

ReadOutcome LibraryStorage::read(std::uint64_t position, void* data, std::size_t size) const
{
    const bool whole_in_file = buffer_.empty() || position + size <= end_ - buffer_.size();
    if (!whole_in_file || device_ == nullptr)
        return read_some(position, data, size) == size ? ReadOutcome::Good : ReadOutcome::Damaged;
    std::size_t done = 0;
    if (!read_device(position, data, size, done))
        return ReadOutcome::Unreadable;
    return done == size ? ReadOutcome::Good : ReadOutcome::Damaged;
}

bool LibraryStorage::may_hold(std::uint64_t position, std::uint64_t length_bytes) const
{
    constexpr std::uint64_t kTrusted = 1u << 20;  // taken without asking for the file's length
    if (length_bytes <= kTrusted)
        return true;
    const std::uint64_t file = length();
    return position <= file && length_bytes <= file - position;
}

ReadOutcome LibraryStorage::read_checked(std::uint64_t position, std::uint64_t length_bytes,
                                         std::uint64_t checksum, std::string& bytes) const
{
    if (!may_hold(position, length_bytes))
        return ReadOutcome::Damaged;
    bytes.resize(static_cast<std::size_t>(length_bytes));
    const ReadOutcome outcome = read(position, bytes.data(), bytes.size());
    if (outcome == ReadOutcome::Good && checksum_of(std::string_view(bytes)) == checksum)
        return ReadOutcome::Good;
    bytes.clear();
    return outcome == ReadOutcome::Unreadable ? outcome : ReadOutcome::Damaged;
}

ReadOutcome LibraryStorage::read_checked(std::uint64_t position, std::uint64_t length_bytes,
                                         std::uint64_t checksum, ByteBuffer& bytes) const
{
    // No block is empty, and a buffer of no bytes is nowhere.
    if (length_bytes == 0 || !may_hold(position, length_bytes))
        return ReadOutcome::Damaged;
    bytes.reset(static_cast<std::size_t>(length_bytes));
    const ReadOutcome outcome = read(position, bytes.data(), bytes.size());
    if (outcome == ReadOutcome::Good && checksum_of(bytes.view()) != checksum)
        return ReadOutcome::Damaged;
    return outcome;
}

bool LibraryStorage::make_file()
{
    // Before the file is made: without memory there is none, rather than an empty one.
    std::string fixed(kDataStart, '\0');
    const auto place = [&](std::uint64_t position, const std::string& sector) {
        fixed.replace(static_cast<std::size_t>(position), sector.size(), sector);
    };
    place(0, encode_header());
    place(kSlotPosition[0], encode_slot({}));
    place(kSlotPosition[1], encode_slot({}));
    place(kOwnerPosition, encode_owner(owner_));
    FileError error;
    const bool made = device_ == nullptr;
    if (made) {
        device_ = files_.open(name_, FileAccess::ReadWrite, FileCreate::CreateNew,
                              FileShare::ReadWrite, error);
        if (device_ == nullptr) {
            set_error(error);
            return false;
        }
        set_error(device_->lock(kWriterLock, 1, FileLockKind::Exclusive));
        device_->advise_random();
    }
    if (!error_)
        set_error(device_->write_at(0, fixed.data(), fixed.size()));
    // Before anything follows: a file longer than its fixed part always has valid slots.
    if (!error_ && !sync())
        return false;
    if (!error_ && made)
        set_error(files_.sync_directory_of(name_));
    fixed_part_missing_ = static_cast<bool>(error_);
    return !error_;
}

bool LibraryStorage::add(std::string_view bytes)
{
    if (error_)
        return false;
    count_written(bytes.size());
    if (!must_sync_first_)
        appended_.add(bytes.data(), bytes.size());
    if (buffer_.size() + bytes.size() > kBufferBytes) {
        if (!flush())
            return false;
        write_out();
    }
    // Large pieces go straight through.
    if (bytes.size() > kBufferBytes) {
        set_error(device_->write_at(end_, bytes.data(), bytes.size()));
        end_ += bytes.size();
        return !error_;
    }
    buffer_ += bytes;
    end_ += bytes.size();
    return true;
}

void LibraryStorage::count_written(std::uint64_t bytes)
{
    commit_bytes_ += bytes;
    if (commit_bytes_ > one_sync_bytes_)
        must_sync_first_ = true;
}

void LibraryStorage::write_out()
{
    if (!must_sync_first_ || end_ < written_out_ + kWriteOutBytes)
        return;
    device_->start_write_out(written_out_, end_ - written_out_);
    written_out_ = end_;
}

bool LibraryStorage::append(FrameKind kind, std::string_view bytes, std::string_view more,
                            std::uint64_t& position)
{
    if (!add(encode_frame({kind, bytes.size() + more.size()}, end_)))
        return false;
    position = end_;
    return add(bytes) && add(more);
}

bool LibraryStorage::begin_stream(std::uint64_t& position)
{
    stream_frame_ = end_;
    must_sync_first_ = true;
    if (!add(std::string(kFrameBytes, '\0')))
        return false;
    position = end_;
    return true;
}

bool LibraryStorage::stream(const void* data, std::size_t size)
{
    return add({static_cast<const char*>(data), size});
}

bool LibraryStorage::end_stream()
{
    const std::uint64_t bytes = end_ - stream_frame_ - kFrameBytes;
    const std::string frame = encode_frame({FrameKind::Content, bytes}, stream_frame_);
    if (!flush())
        return false;
    set_error(device_->write_at(stream_frame_, frame.data(), frame.size()));
    return !error_;
}

void LibraryStorage::cancel_stream()
{
    const std::uint64_t flushed = end_ - buffer_.size();
    buffer_.resize(stream_frame_ > flushed ? static_cast<std::size_t>(stream_frame_ - flushed) : 0);
    end_ = stream_frame_;
    written_out_ = std::min(written_out_, end_);
}

bool LibraryStorage::write_free(std::uint64_t start, FrameKind kind, std::string_view bytes,
                                std::string_view more, std::uint64_t& position)
{
    if (error_ || ((device_ == nullptr || fixed_part_missing_) && !make_file()))
        return false;
    // What the running commit appended and gave up again may still wait in the buffer.
    if (start + kFrameBytes + bytes.size() + more.size() > end_ - buffer_.size() && !flush())
        return false;
    std::string whole = encode_frame({kind, bytes.size() + more.size()}, start);
    whole.reserve(whole.size() + bytes.size() + more.size());
    whole += bytes;
    whole += more;
    set_error(device_->write_at(start, whole.data(), whole.size()));
    count_written(whole.size());
    used_[start] = {whole.size(), must_sync_first_ ? 0 : checksum_of(std::string_view(whole))};
    position = start + kFrameBytes;
    return !error_;
}

bool LibraryStorage::write_piece(std::uint64_t position, std::string_view bytes)
{
    must_sync_first_ = true;
    count_written(bytes.size());
    return flush() && write_fixed(position, bytes);
}

bool LibraryStorage::write_fixed(std::uint64_t position, std::string_view bytes)
{
    if (!error_)
        set_error(device_->write_at(position, bytes.data(), bytes.size()));
    return !error_;
}

bool LibraryStorage::flush()
{
    if (error_)
        return false;
    if ((device_ == nullptr || fixed_part_missing_) && !make_file())
        return false;
    if (!buffer_.empty())
        set_error(device_->write_at(end_ - buffer_.size(), buffer_.data(), buffer_.size()));
    if (error_)
        return false;
    buffer_.clear();
    return true;
}

bool LibraryStorage::sync()
{
    if (error_)
        return false;
    ++syncs_;
    set_error(device_->sync());
    return !error_;
}

void LibraryStorage::reserve(std::uint64_t bytes)
{
    static constexpr std::array<char, 64 * 1024> kZeros{};
    std::uint64_t at = 0;
    if (error_ || no_reserve_ || device_->length(at) || at > end_)
        return;
    at = end_;
    for (std::uint64_t left = bytes; left > 0;) {
        const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(left, kZeros.size()));
        if (device_->write_at(at, kZeros.data(), part)) {
            no_reserve_ = true;
            cut_reserve();
            return;
        }
        at += part;
        left -= part;
    }
}

void LibraryStorage::cut_reserve()
{
    std::uint64_t bytes = 0;
    if (error_ || device_ == nullptr || !buffer_.empty() || device_->length(bytes) || bytes <= end_)
        return;
    static_cast<void>(device_->set_length(end_));
}

}  // namespace zmr
