#pragma once

#include "scene_editor/core/DeletedEntries.h"
#include "scene_editor/core/LibraryResults.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace editor {

class LibrarySession;
struct PreviewRead;

/// Works on a library in a thread of its own, which alone has the library; a second one draws
/// previews, which may take long. Requests return at once;
/// results wait in a queue. Changes are made in the order in which they were asked for; a listing
/// under way lets other work between its batches. While nothing is to be done, what other clients
/// in this process do to the listed directory is told soon.
class LibraryWorker {
public:
    using Teller = std::function<void(const std::string&)>;

    /// `results_wait` is called in the worker's thread when results come to an empty queue; `tell`,
    /// where given, is called there with what it does to the library, as a short text for people.
    explicit LibraryWorker(std::function<void()> results_wait, Teller tell = {});
    /// Ends what is under way, closes the library and waits for the thread.
    ~LibraryWorker();
    LibraryWorker(const LibraryWorker&) = delete;
    LibraryWorker& operator=(const LibraryWorker&) = delete;

    /// Opens a library in place of the one before. Drops requests that are still waiting.
    void open(const std::string& file);
    void list_directories(const DirectoryPath& path);
    /// Lists a directory, in batches, in place of a listing under way. Rows and icons come with the
    /// number `listing`.
    void list(ListingId listing, const DirectoryPath& path, const EntryFilter& filter = {});
    /// The icons that are wanted now, the most wanted first, in place of those asked for before.
    void want_icons(ListingId listing, const DirectoryPath& path, int size_px,
                    std::vector<ListedEntry> entries);
    /// The preview that is wanted now, in place of one asked for before.
    void want_preview(const DirectoryPath& path, const std::string& name, int size_px);
    /// One of the entry's named pictures, in place of a preview asked for before.
    void want_picture(const DirectoryPath& path, const std::string& name,
                      const std::string& picture, int size_px);
    /// An entry as it is, where it is there.
    void want_entry(const DirectoryPath& path, const std::string& name);
    /// The object of an entry, for the caller to own.
    void want_object(const DirectoryPath& path, const std::string& name);
    void rename(ListingId listing, const DirectoryPath& path, const ListedEntry& entry,
                const std::string& to);
    void remove(ListingId listing, const DirectoryPath& path,
                const std::vector<ListedEntry>& entries);

    /// Takes the last deletion back.
    void restore();
    void describe(const DirectoryPath& path, const std::string& name, const std::string& text);
    /// Copies entries to the directory `to` of a library, which is made when it is missing.
    void copy(const DirectoryPath& path, const std::vector<ListedEntry>& entries,
              const std::string& file, const DirectoryPath& to);
    /// Adds files as objects.
    void add(const DirectoryPath& path, const std::vector<std::string>& files);
    void pack();
    void save_filter(const SavedFilter& filter);
    void remove_filter(const std::string& name);
    /// Ends the work that takes long after its current step. What was done stays.
    void stop_work() { stops_ = true; }

    /// The next result; nothing when there is none now.
    [[nodiscard]] std::optional<LibraryResult> take_result();
    /// Waits until nothing is left to do. For tests.
    void wait_until_idle();

    static constexpr std::size_t kRowsOfFirstBatch = 256;  ///< What fills a window, at once.
    static constexpr std::size_t kRowsOfBatch = 4096;
    static constexpr std::chrono::milliseconds kLookEvery{500};  ///< At most, for other changes.

private:
    using Task = std::function<void(LibrarySession&)>;
    struct WantedIcons {
        ListingId listing = 0;
        DirectoryPath path;
        int size_px = 0;
        std::deque<ListedEntry> entries;
    };
    struct WantedPreview {
        DirectoryPath path;
        std::string name;
        std::string picture;  ///< Empty for the entry itself.
        int size_px = 0;
    };

    void add_task(Task task);
    /// A task whose steps are told as they are done; `work` gets what tells them.
    void add_work(const std::string& text,
                  std::function<void(LibrarySession&, const StepsDone&)> work);
    void give_state(const LibrarySession& session);
    void run();
    void run_drawing();
    /// The next piece of work, in the order of urgency; null when there is none. Under the lock.
    [[nodiscard]] Task next_task();
    void list_more(LibrarySession& session);
    void look_again(LibrarySession& session);
    void load_preview(LibrarySession& session, const WantedPreview& wanted);
    void give(LibraryResult result);
    void tell(const std::string& text) const;

    std::function<void()> results_wait_;
    Teller tell_;
    std::mutex mutex_;
    std::condition_variable work_waits_;
    std::condition_variable idle_;
    std::deque<Task> tasks_;
    WantedIcons icons_;
    std::optional<WantedPreview> preview_;
    bool is_listing_ = false;
    bool icon_is_next_ = true;  ///< Icons and batches take turns.
    std::size_t batch_rows_ = kRowsOfFirstBatch;
    bool is_busy_ = false;
    bool ends_ = false;
    std::chrono::nanoseconds look_every_ = kLookEvery;  ///< The worker's thread only.
    std::atomic<bool> stops_{false};
    std::deque<LibraryResult> results_;
    std::condition_variable drawing_waits_;
    std::unique_ptr<PreviewRead> to_draw_;  ///< The newest preview; it replaces one still waiting.
    int drawing_size_px_ = 0;
    bool is_drawing_ = false;
    std::thread drawing_thread_;
    std::thread thread_;  ///< The threads come last: they use the rest.
};

}  // namespace editor
