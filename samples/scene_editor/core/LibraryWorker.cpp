#include "scene_editor/core/LibraryWorker.h"

#include "scene_editor/core/CommandLine.h"
#include "scene_editor/core/CountsText.h"
#include "scene_editor/core/LibrarySession.h"

#include <algorithm>
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
    stops_ = true;
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
        if (is_open) {
            give_state(session);
            give(session.filters());
        }
    });
}

void LibraryWorker::list_directories(const DirectoryPath& path)
{
    add_task([this, path](LibrarySession& session) { give(session.list_directories(path)); });
}

void LibraryWorker::list(ListingId listing, const DirectoryPath& path, const EntryFilter& filter)
{
    {
        const std::lock_guard lock(mutex_);
        icons_ = {};
        is_listing_ = false;
    }
    add_task([this, listing, path, filter](LibrarySession& session) {
        session.begin_listing(listing, path, filter);
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
        preview_ = WantedPreview{path, name, {}, size_px};
    }
    work_waits_.notify_all();
}

void LibraryWorker::want_picture(const DirectoryPath& path, const std::string& name,
                                 const std::string& picture, int size_px)
{
    {
        const std::lock_guard lock(mutex_);
        preview_ = WantedPreview{path, name, picture, size_px};
    }
    work_waits_.notify_all();
}

void LibraryWorker::want_entry(const DirectoryPath& path, const std::string& name)
{
    add_task([this, path, name](LibrarySession& session) {
        if (auto entry = session.look_at(path, name))
            give(std::move(*entry));
    });
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
    add_work("Deleting", [=, this](LibrarySession& session, const StepsDone& steps) {
        const LibrarySession::Removed removed = session.remove(path, entries, steps);
        EntriesRemoved gone{listing, {}};
        for (const ListedEntry& entry : removed.entries)
            gone.rows.push_back(entry.row);
        give(std::move(gone));
        give_state(session);
        if (removed.reason)
            give(ChangeRefused{*removed.reason});
    });
}

void LibraryWorker::restore()
{
    add_work("Taking back", [this](LibrarySession& session, const StepsDone& steps) {
        give(session.restore(steps));
        give_state(session);
    });
}

void LibraryWorker::describe(const DirectoryPath& path, const std::string& name,
                             const std::string& text)
{
    add_task([=, this](LibrarySession& session) {
        if (const auto reason = session.describe(path, name, text))
            give(ChangeRefused{*reason});
    });
}

void LibraryWorker::copy(const DirectoryPath& path, const std::vector<ListedEntry>& entries,
                         const std::string& file, const DirectoryPath& to)
{
    add_work("Copying", [=, this](LibrarySession& session, const StepsDone& steps) {
        give(session.copy(path, entries, file, to, steps));
    });
}

void LibraryWorker::add(const DirectoryPath& path, const std::vector<std::string>& files)
{
    add_work("Adding", [=, this](LibrarySession& session, const StepsDone& steps) {
        give(session.add(path, files, steps));
    });
}

void LibraryWorker::pack()
{
    add_work("Packing", [this](LibrarySession& session, const StepsDone& steps) {
        give(session.pack(steps));
        give_state(session);
    });
}

void LibraryWorker::save_filter(const SavedFilter& filter)
{
    add_task([=, this](LibrarySession& session) {
        if (const auto reason = session.save(filter))
            give(ChangeRefused{*reason});
        give(session.filters());
    });
}

void LibraryWorker::remove_filter(const std::string& name)
{
    add_task([=, this](LibrarySession& session) {
        if (const auto reason = session.remove_saved(name))
            give(ChangeRefused{*reason});
        give(session.filters());
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

void LibraryWorker::add_work(const std::string& text,
                             std::function<void(LibrarySession&, const StepsDone&)> work)
{
    add_task([this, text, work = std::move(work)](LibrarySession& session) {
        stops_ = false;
        give(WorkProgress{text, 0, 0});
        const StepsDone steps = [this, &text](std::size_t done, std::size_t total) {
            give(WorkProgress{text, done, total});
            return !stops_;
        };
        try {
            work(session, steps);
        } catch (...) {
            give(WorkProgress{});
            throw;
        }
        give(WorkProgress{});
    });
}

void LibraryWorker::give_state(const LibrarySession& session)
{
    give(DeletionsKept{session.deletions()});
}

void LibraryWorker::run()
{
    // Any client's changes are looked at in their turn.
    LibrarySession session(
        [this](const DirectoryPath& path, const std::string& name) { want_entry(path, name); },
        [this](const DirectoryPath& from, const DirectoryPath& to) {
            give(DirectoryMoved{from, to});
        });
    std::unique_lock lock(mutex_);
    while (true) {
        if (ends_)
            return;
        Task task = next_task();
        if (!task) {
            is_busy_ = false;
            idle_.notify_all();
            if (work_waits_.wait_for(lock, look_every_) == std::cv_status::no_timeout)
                continue;
            task = [this](LibrarySession& open) { look_again(open); };
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
            IconLoaded row = session.load_row(path, entry.name, size_px);
            row.listing = listing;
            row.row = entry.row;
            give(std::move(row));
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

void LibraryWorker::look_again(LibrarySession& session)
{
    const auto began = std::chrono::steady_clock::now();
    if (std::optional<NamesChanged> changed = session.look_again())
        give(std::move(*changed));
    const std::chrono::nanoseconds took = std::chrono::steady_clock::now() - began;
    look_every_ = std::max<std::chrono::nanoseconds>(kLookEvery, 10 * took);
}

void LibraryWorker::load_preview(LibrarySession& session, const WantedPreview& wanted)
{
    if (!wanted.picture.empty()) {
        give(session.load_picture(wanted.path, wanted.name, wanted.picture, wanted.size_px));
        return;
    }
    auto read = std::make_unique<PreviewRead>(
        session.load_preview(wanted.path, wanted.name, wanted.size_px));
    if (read->object == nullptr) {
        give(std::move(read->preview));
        return;
    }
    // First what is there already.
    const PreviewLoaded& known = read->preview;
    PreviewLoaded first;
    first.path = known.path;
    first.name = known.name;
    first.class_name = known.class_name;
    first.holding = known.holding;
    first.description = known.description;
    first.pictures = known.pictures;
    first.movie = known.movie;
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
        // Of progress only the last counts.
        if (!was_empty && std::holds_alternative<WorkProgress>(result) &&
            std::holds_alternative<WorkProgress>(results_.back()))
            results_.back() = std::move(result);
        else
            results_.push_back(std::move(result));
    }
    if (was_empty)
        results_wait_();
}

}  // namespace editor
