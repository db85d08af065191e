#pragma once

#include "scene_editor/core/LibraryResults.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

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
    LibrarySession();
    ~LibrarySession();
    LibrarySession(const LibrarySession&) = delete;
    LibrarySession& operator=(const LibrarySession&) = delete;

    /// Opens a library in place of the one before, for changes where the file allows that, else to
    /// be read. A file that is missing, or no library, is neither made nor changed.
    [[nodiscard]] LibraryResult open(const std::string& file);
    void close();
    [[nodiscard]] bool is_open() const { return database_ != nullptr; }

    [[nodiscard]] DirectoriesListed list_directories(const DirectoryPath& path) const;

    /// Begins a listing in place of the one before: reads the names.
    void begin_listing(ListingId listing, const DirectoryPath& path);
    [[nodiscard]] bool is_listing() const { return !names_.empty() || first_rows_; }
    /// The next `count` rows, with their classes: reads the mediators.
    [[nodiscard]] RowsListed next_rows(std::size_t count);

    /// The icon, at most `size_px` a side. The stored one is not kept in memory.
    [[nodiscard]] std::unique_ptr<PixelMap> load_icon(const DirectoryPath& path,
                                                      const std::string& name, int size_px) const;
    /// The object itself where it is a picture, also in a form of at most `size_px` a side; else
    /// its icon, and the object.
    [[nodiscard]] PreviewRead load_preview(const DirectoryPath& path, const std::string& name,
                                           int size_px) const;

    /// The object itself; where it can't be had, why.
    [[nodiscard]] ObjectLoaded load_object(const DirectoryPath& path,
                                           const std::string& name) const;

    /// Renames an entry and commits it. The reason as a sentence when that is refused: the name is
    /// empty or in use, the entry is gone, or nothing can be written.
    [[nodiscard]] std::optional<std::string> rename(const DirectoryPath& path,
                                                    const std::string& from, const std::string& to);
    /// Removes entries in one commit.
    [[nodiscard]] std::optional<std::string> remove(const DirectoryPath& path,
                                                    const std::vector<ListedEntry>& entries);

private:
    struct ListedName {
        std::string name;
        RowKind kind;
    };

    [[nodiscard]] std::optional<std::string> not_writable() const;
    [[nodiscard]] std::optional<std::string> commit();
    /// The damage met last, unless it was told before.
    [[nodiscard]] std::string new_damage();

    std::unique_ptr<ObjectDatabase> database_;
    std::string file_;
    std::string told_damage_;
    ListingId listing_ = 0;
    DirectoryPath listed_path_;
    std::vector<ListedName> names_;  ///< Of the rows that are still to come, the last one in front.
    bool first_rows_ = false;        ///< No rows were given yet: an empty directory has one batch.
};

}  // namespace editor
