#pragma once

#include "scene_editor/core/DeletedEntries.h"
#include "scene_editor/core/DirectoryNames.h"
#include "scene_editor/core/LibraryListener.h"
#include "scene_editor/core/LibraryResults.h"
#include "scene_editor/core/LibraryTransfer.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class ODB_ContentsFilter;
class ODB_Mediator;
class ObjectDatabase;

namespace editor {

/// What an entry shows, and, where that is not the best it can show, the object to draw.
struct PreviewRead {
    PreviewLoaded preview;
    OwnedObject object;
};
/// The preview with a drawing of the object, at most `size_px` a side, in the place of its picture.
/// Any thread, as far as the makers of the pictures keep to their contract.
[[nodiscard]] PreviewLoaded draw_preview(PreviewRead read, int size_px);

/// The open library, and the listing that is under way. All of it lives in one thread, the one that
/// makes it. Only `load_preview` and `load_object` read objects.
class LibrarySession {
public:
    /// The functions hear of changes of the open library by any client, as LibraryListener tells.
    explicit LibrarySession(LibraryListener::EntryModified entry_modified = {},
                            LibraryListener::DirectoryRenamed directory_renamed = {});
    ~LibrarySession();
    LibrarySession(const LibrarySession&) = delete;
    LibrarySession& operator=(const LibrarySession&) = delete;

    /// Opens a library in place of the one before, for changes where the file allows that, else to
    /// be read. A file that is missing, or no library, is neither made nor changed.
    [[nodiscard]] LibraryResult open(const std::string& file);
    void close();
    [[nodiscard]] bool is_open() const { return database_ != nullptr; }

    [[nodiscard]] DirectoriesListed list_directories(const DirectoryPath& path) const;

    /// Begins a listing in place of the one before, of the entries that the filter wants: reads the
    /// names. What was deleted is left out.
    void begin_listing(ListingId listing, const DirectoryPath& path,
                       const EntryFilter& filter = {});
    [[nodiscard]] bool is_listing() const { return !names_.empty() || first_rows_; }
    /// The next `count` rows, with their classes: reads the mediators.
    [[nodiscard]] RowsListed next_rows(std::size_t count);
    /// What came into the listed directory and what left it since it was listed or looked at last,
    /// by any client in this process; nothing while it is being listed. Where nothing in the
    /// library was changed it costs a comparison, else it reads the names.
    [[nodiscard]] std::optional<NamesChanged> look_again();

    /// The icon, at most `size_px` a side. The stored one is not kept in memory.
    [[nodiscard]] std::unique_ptr<PixelMap> load_icon(const DirectoryPath& path,
                                                      const std::string& name, int size_px) const;
    /// The icon with the rest that a row shows; the caller sets the numbers. Where an entry stands
    /// for another one, that one is looked for.
    [[nodiscard]] IconLoaded load_row(const DirectoryPath& path, const std::string& name,
                                      int size_px) const;
    /// What a row of the entry begins with; nothing when it is not there.
    [[nodiscard]] std::optional<EntryChanged> look_at(const DirectoryPath& path,
                                                      const std::string& name) const;
    /// The object itself where it is a picture, also in a form of at most `size_px` a side; else
    /// its icon, and the object.
    [[nodiscard]] PreviewRead load_preview(const DirectoryPath& path, const std::string& name,
                                           int size_px) const;

    /// One of the entry's named pictures, as `load_preview` gives the entry.
    [[nodiscard]] PreviewLoaded load_picture(const DirectoryPath& path, const std::string& name,
                                             const std::string& picture, int size_px) const;

    /// The object itself; where it can't be had, why.
    [[nodiscard]] ObjectLoaded load_object(const DirectoryPath& path,
                                           const std::string& name) const;

    /// Renames an entry and commits it. The reason as a sentence when that is refused: the name is
    /// empty or in use, the entry is gone, or nothing can be written.
    [[nodiscard]] std::optional<std::string> rename(const DirectoryPath& path,
                                                    const std::string& from, const std::string& to);
    struct Removed {
        std::vector<ListedEntry> entries;  ///< Those that are gone.
        std::optional<std::string> reason;
    };
    /// Deletes entries in one commit, so that it can be taken back.
    [[nodiscard]] Removed remove(const DirectoryPath& path, const std::vector<ListedEntry>& entries,
                                 const StepsDone& steps);
    [[nodiscard]] std::size_t deletions() const;
    /// Takes the last deletion back, in one commit. A refusal is a ChangeRefused.
    [[nodiscard]] LibraryResult restore(const StepsDone& steps);

    /// Sets the text that describes an entry, or removes it for an empty one, and commits.
    [[nodiscard]] std::optional<std::string> describe(const DirectoryPath& path,
                                                      const std::string& name,
                                                      const std::string& text);

    /// Copies entries to the directory `to` of the library `file`, which is made when it is
    /// missing. This one's own file can be named too.
    [[nodiscard]] WorkDone copy(const DirectoryPath& path, const std::vector<ListedEntry>& entries,
                                const std::string& file, const DirectoryPath& to,
                                const StepsDone& steps);
    [[nodiscard]] WorkDone add(const DirectoryPath& path, const std::vector<std::string>& files,
                               const StepsDone& steps);
    /// Removes what was deleted for good, and makes the file as small as its content.
    [[nodiscard]] WorkDone pack(const StepsDone& steps);

    [[nodiscard]] FiltersListed filters() const;
    [[nodiscard]] std::optional<std::string> save(const SavedFilter& filter);
    [[nodiscard]] std::optional<std::string> remove_saved(const std::string& filter);

private:
    using OwnedFilter = zmr::OwnedObject<ODB_ContentsFilter>;
    [[nodiscard]] std::optional<std::string> not_writable() const;
    [[nodiscard]] std::optional<std::string> commit();
    [[nodiscard]] ODB_Mediator* mediator_of(const DirectoryPath& path,
                                            const std::string& name) const;
    /// Texts, pictures and movie of the entry; where its object is.
    static Holding tell_facts(ODB_Mediator& mediator, PreviewLoaded& preview);
    [[nodiscard]] static WorkDone finish(const TransferResult& result, const char* verb,
                                         bool list_again);
    /// The damage met last, unless it was told before.
    [[nodiscard]] std::string new_damage();

    LibraryListener::EntryModified entry_modified_;
    LibraryListener::DirectoryRenamed directory_renamed_;
    std::unique_ptr<ObjectDatabase> database_;
    std::unique_ptr<LibraryListener> listener_;  ///< Of the database's server.
    std::string file_;
    std::string told_damage_;
    ListingId listing_ = 0;
    DirectoryPath listed_path_;
    OwnedFilter filter_;  ///< Null when it would want everything.
    DirectoryNames known_;
    std::uint64_t known_changes_ = 0;  ///< The library's count when those were read.
    std::vector<std::size_t> names_;   ///< Numbers in `known_` of the rows that are still to come,
                                       ///< the last one in front.
    bool first_rows_ = false;  ///< No rows were given yet: an empty directory has one batch.
};

}  // namespace editor
