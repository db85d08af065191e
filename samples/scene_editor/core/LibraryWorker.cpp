#include "scene_editor/core/LibraryWorker.h"

#include "scene_editor/core/CommandLine.h"
#include "scene_editor/core/LibrarySession.h"

#include <exception>
#include <iterator>
#include <utility>
#include <variant>

namespace editor {

LibraryWorker::LibraryWorker(std::function<void()> results_wait, Teller tell)
    : results_wait_(std::move(results_wait)),
      tell_(std::move(tell)),
      drawing_thread_([this] { run_drawing(); }),
      thread_([this] { run(); })
{
}

LibraryWorker::~LibraryWorker()
{
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    work_waits_.notify_all();
    drawing_waits_.notify_all();
    thread_.join();
    drawing_thread_.join();
}

void LibraryWorker::open(const std::string& file)
{
    {
        const std::lock_guard lock(mutex_);
        icons_ = {};
        preview_.reset();
        is_listing_ = false;
    }
    add_task([this, file](LibrarySession& session) {
        const std::string name(file_part(file));
        tell("Opening " + name);
        LibraryResult result = session.open(file);
        const bool is_open = std::holds_alternative<LibraryOpened>(result);
        tell(name + (is_open ? " is open" : " could not be opened"));
        give(std::move(result));
    });
}

void LibraryWorker::list_directories(const DirectoryPath& path)
{
    add_task([this, path](LibrarySession& session) { give(session.list_directories(path)); });
}

void LibraryWorker::list(ListingId listing, const DirectoryPath& path)
{
    {
        const std::lock_guard lock(mutex_);
        icons_ = {};
        is_listing_ = false;
    }
    add_task([this, listing, path](LibrarySession& session) {
        session.begin_listing(listing, path);
        const std::lock_guard lock(mutex_);
        is_listing_ = true;
        batch_rows_ = kRowsOfFirstBatch;
    });
}

void LibraryWorker::want_icons(ListingId listing, const DirectoryPath& path, int size_px,
                               std::vector<ListedEntry> entries)
{
    {
        const std::lock_guard lock(mutex_);
        icons_ = {
            listing,
            path,
            size_px,
            {std::make_move_iterator(entries.begin()), std::make_move_iterator(entries.end())}};
    }
    work_waits_.notify_all();
}

void LibraryWorker::want_preview(const DirectoryPath& path, const std::string& name, int size_px)
{
    {
        const std::lock_guard lock(mutex_);
        preview_ = WantedPreview{path, name, size_px};
    }
    work_waits_.notify_all();
}

void LibraryWorker::want_object(const DirectoryPath& path, const std::string& name)
{
    add_task(
        [this, path, name](LibrarySession& session) { give(session.load_object(path, name)); });
}

void LibraryWorker::rename(ListingId listing, const DirectoryPath& path, const ListedEntry& entry,
                           const std::string& to)
{
    add_task([=, this](LibrarySession& session) {
        if (const auto reason = session.rename(path, entry.name, to)) {
            give(ChangeRefused{*reason});
            return;
        }
        tell(entry.name + " is now " + to);
        give(EntryRenamed{listing, entry.row, to});
    });
}

void LibraryWorker::remove(ListingId listing, const DirectoryPath& path,
                           const std::vector<ListedEntry>& entries)
{
    add_task([=, this](LibrarySession& session) {
        if (const auto reason = session.remove(path, entries)) {
            give(ChangeRefused{*reason});
            return;
        }
        EntriesRemoved removed{listing, {}};
        for (const ListedEntry& entry : entries)
            removed.rows.push_back(entry.row);
        give(std::move(removed));
    });
}

std::optional<LibraryResult> LibraryWorker::take_result()
{
    const std::lock_guard lock(mutex_);
    if (results_.empty())
        return std::nullopt;
    LibraryResult result = std::move(results_.front());
    results_.pop_front();
    return result;
}

void LibraryWorker::wait_until_idle()
{
    std::unique_lock lock(mutex_);
    idle_.wait(lock, [this] {
        return !is_busy_ && tasks_.empty() && icons_.entries.empty() && !preview_ && !is_listing_ &&
               !to_draw_ && !is_drawing_;
    });
}

void LibraryWorker::add_task(Task task)
{
    {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    work_waits_.notify_all();
}

void LibraryWorker::run()
{
    LibrarySession session;
    std::unique_lock lock(mutex_);
    while (true) {
        if (ends_)
            return;
        const Task task = next_task();
        if (!task) {
            is_busy_ = false;
            idle_.notify_all();
            work_waits_.wait(lock);
            continue;
        }
        is_busy_ = true;
        lock.unlock();
        try {
            task(session);
        } catch (const std::exception& failure) {
            // For want of memory: what was under way is given up, the rest goes on.
            {
                const std::lock_guard relock(mutex_);
                is_listing_ = false;
            }
            give(ChangeRefused{failure.what()});
        }
        lock.lock();
    }
}

LibraryWorker::Task LibraryWorker::next_task()
{
    if (!tasks_.empty()) {
        Task task = std::move(tasks_.front());
        tasks_.pop_front();
        return task;
    }
    if (preview_) {
        const WantedPreview wanted = *std::exchange(preview_, std::nullopt);
        return [this, wanted](LibrarySession& session) { load_preview(session, wanted); };
    }
    const bool icon_waits = !icons_.entries.empty();
    if (icon_waits && (icon_is_next_ || !is_listing_)) {
        icon_is_next_ = false;
        const ListedEntry entry = std::move(icons_.entries.front());
        icons_.entries.pop_front();
        return [this, entry, listing = icons_.listing, path = icons_.path,
                size_px = icons_.size_px](LibrarySession& session) {
            give(IconLoaded{listing, entry.row, session.load_icon(path, entry.name, size_px)});
        };
    }
    if (is_listing_) {
        icon_is_next_ = true;
        return [this](LibrarySession& session) { list_more(session); };
    }
    return nullptr;
}

void LibraryWorker::list_more(LibrarySession& session)
{
    RowsListed rows = session.next_rows(batch_rows_);
    {
        const std::lock_guard lock(mutex_);
        // Another listing may have been asked for; its task sets the flag again.
        is_listing_ = is_listing_ && !rows.is_last;
        batch_rows_ = kRowsOfBatch;
    }
    give(std::move(rows));
}

void LibraryWorker::load_preview(LibrarySession& session, const WantedPreview& wanted)
{
    auto read = std::make_unique<PreviewRead>(
        session.load_preview(wanted.path, wanted.name, wanted.size_px));
    if (read->object == nullptr) {
        give(std::move(read->preview));
        return;
    }
    // First what is there already.
    PreviewLoaded first;
    first.path = read->preview.path;
    first.name = read->preview.name;
    first.class_name = read->preview.class_name;
    if (read->preview.picture != nullptr)
        first.picture = std::make_unique<PixelMap>(*read->preview.picture);
    give(std::move(first));
    {
        const std::lock_guard lock(mutex_);
        std::swap(to_draw_, read);
        drawing_size_px_ = wanted.size_px;
    }
    drawing_waits_.notify_all();
}

void LibraryWorker::run_drawing()
{
    std::unique_lock lock(mutex_);
    while (true) {
        drawing_waits_.wait(lock, [this] { return ends_ || to_draw_ != nullptr; });
        if (ends_)
            return;
        const std::unique_ptr<PreviewRead> read = std::exchange(to_draw_, nullptr);
        const int size_px = drawing_size_px_;
        is_drawing_ = true;
        lock.unlock();
        try {
            give(draw_preview(std::move(*read), size_px));
        } catch (const std::exception& failure) {
            give(ChangeRefused{failure.what()});
        }
        lock.lock();
        is_drawing_ = false;
        idle_.notify_all();
    }
}

void LibraryWorker::tell(const std::string& text) const
{
    if (tell_)
        tell_(text);
}

void LibraryWorker::give(LibraryResult result)
{
    bool was_empty = false;
    {
        const std::lock_guard lock(mutex_);
        was_empty = results_.empty();
        results_.push_back(std::move(result));
    }
    if (was_empty)
        results_wait_();
}

}  // namespace editor
