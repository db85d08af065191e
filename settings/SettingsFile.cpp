#include "settings/SettingsFile.h"

#include <algorithm>
#include <chrono>
#include <random>
#include <thread>
#include <utility>

namespace zmr {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kLockPatience{10'000};
// A reader that the system holds against a rename, or a writer of another program against a reader,
// is done in less.
constexpr milliseconds kRenamePatience{3'000};
constexpr milliseconds kOpenPatience{500};

/// Tries again and again, at growing and uneven distances, until `attempt` says that it is done or
/// the time is over.
template <class Attempt>
void insist(milliseconds patience, Attempt attempt)
{
    static thread_local std::minstd_rand random(std::random_device{}());
    const auto end = Clock::now() + patience;
    for (unsigned longest_us = 200; !attempt() && Clock::now() < end;) {
        std::this_thread::sleep_for(std::chrono::microseconds(random() % longest_us));
        longest_us = std::min(longest_us * 2, 5'000u);
    }
}

}  // namespace

SettingsFile::SettingsFile(FileSystemDevice& device, std::string name)
    : device_(device), name_(std::move(name))
{
}

SettingsFileContent SettingsFile::load() const
{
    SettingsFileContent content;
    FileError error;
    std::unique_ptr<FileDevice> file;
    insist(kOpenPatience, [&] {
        file = device_.open(name_, FileAccess::Read, FileCreate::OpenExisting, FileShare::ReadWrite,
                            error);
        return error.kind != FileErrorKind::InUse;
    });
    if (file == nullptr) {
        if (error.kind != FileErrorKind::NotFound)
            content.state = SettingsFileState::Damaged;
        return content;
    }
    content.state = SettingsFileState::Damaged;
    std::uint64_t length = 0;
    if (file->length(length) || length > kMostBytes)
        return content;
    content.bytes.resize(static_cast<std::size_t>(length));
    std::size_t done = 0;
    const FileError failed = file->read_at(0, content.bytes.data(), content.bytes.size(), done);
    if (!failed && done == content.bytes.size())
        content.state = SettingsFileState::Whole;
    content.bytes.resize(done);
    return content;
}

bool SettingsFile::update(const Edit& edit) const
{
    const auto lock = take_lock();
    if (lock == nullptr)
        return false;
    SettingsFileContent content = load();
    if (content.state == SettingsFileState::Damaged)
        return false;
    std::string bytes = content.bytes;
    if (!edit(bytes))
        return false;
    if (bytes == content.bytes)
        return true;
    return bytes.size() <= kMostBytes && may_be_written(content.state) &&
           replace(bytes, content.state);
}

std::unique_ptr<FileDevice> SettingsFile::take_lock() const
{
    const std::string lock_name = name_ + ".lock";
    FileError error;
    const auto open = [&] {
        return device_.open(lock_name, FileAccess::ReadWrite, FileCreate::OpenOrCreate,
                            FileShare::ReadWrite, error);
    };
    auto file = open();
    if (file == nullptr && error.kind == FileErrorKind::NotFound && make_settings_folder(name_))
        file = open();
    if (file == nullptr)
        return nullptr;
    insist(kLockPatience, [&] {
        error = file->lock(0, 1, FileLockKind::Exclusive);
        return error.kind != FileErrorKind::InUse;
    });
    return error ? nullptr : std::move(file);
}

// A file that the user may not write can be replaced all the same where he may write its folder.
bool SettingsFile::may_be_written(SettingsFileState state) const
{
    if (state == SettingsFileState::Missing)
        return true;
    FileError error;
    return !is_marked_read_only(name_) &&
           device_.open(name_, FileAccess::ReadWrite, FileCreate::OpenExisting,
                        FileShare::ReadWrite, error) != nullptr;
}

bool SettingsFile::replace(const std::string& bytes, SettingsFileState state) const
{
    const std::string new_name = name_ + ".new";
    FileError error;
    auto file = device_.open(new_name, FileAccess::ReadWrite, FileCreate::CreateOrTruncate,
                             FileShare::Read, error);
    if (file == nullptr)
        return false;
    if (state == SettingsFileState::Whole)
        keep_rights(name_, new_name);  // before anything is in it
    const bool is_whole = !file->write_at(0, bytes.data(), bytes.size()) && !file->sync();
    file.reset();
    if (is_whole) {
        // Windows refuses while anybody has the file open.
        insist(kRenamePatience, [&] {
            error = device_.rename(new_name, name_);
            return error.kind != FileErrorKind::InUse && error.kind != FileErrorKind::AccessDenied;
        });
        if (!error)
            return !device_.sync_directory_of(name_);
    }
    static_cast<void>(device_.remove(new_name));  // of no use, and overwritten next time
    return false;
}

}  // namespace zmr
