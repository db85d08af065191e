#pragma once

#include "foundation/OwnedObject.h"
#include "graphics/PixelMap.h"
#include "scene_editor/core/EntryRows.h"
#include "scene_editor/core/LibraryFilters.h"

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace editor {

/// A directory of a library: the names of its levels, the root being the empty list.
using DirectoryPath = std::vector<std::string>;
using OwnedObject = zmr::OwnedObject<>;

/// A number that tells one listing of a directory from those before it.
using ListingId = std::uint64_t;

/// A library is open, in place of the one before.
struct LibraryOpened {
    std::string file;
    bool is_writable = false;
    std::string note;  ///< Why it can only be read, as a sentence; empty where nobody need know.
};

/// A library could not be opened; none is open now.
struct LibraryRefused {
    std::string file;
    std::string reason;  ///< A sentence that names the file.
};

struct Subdirectory {
    std::string name;
    bool has_subdirectories = false;
};
/// What lies directly below a directory, in the order of the tree.
struct DirectoriesListed {
    DirectoryPath path;
    std::vector<Subdirectory> directories;
};

/// The next rows of a listing. Row n of them all has the id n.
struct RowsListed {
    ListingId listing = 0;
    RowBatch rows;
    bool is_last = false;
    std::string damage;  ///< What the file lost that was met on the way, as a sentence; or empty.
};

/// The icon of a row, fitted to the size that was asked for; null when it has none. And what else a
/// row shows beside its name and class.
struct IconLoaded {
    ListingId listing = 0;
    EntryRows::Id row = 0;
    std::unique_ptr<PixelMap> icon;
    Holding holding = Holding::Inside;
    std::string description;
};

/// A picture of an entry.
struct PreviewLoaded {
    DirectoryPath path;
    std::string name;
    std::string class_name;
    std::unique_ptr<PixelMap> picture;  ///< Null when nothing can be shown.
    std::unique_ptr<PixelMap> smaller;  ///< Of a large picture, for drawing it scaled; or null.
    std::string caption;                ///< Its size, or why there is no picture.
    std::string picture_name;  ///< Of the named picture that this is; empty for the object.
    std::string holding;       ///< Where the object is if not in the library; or empty.
    std::string description;
    std::vector<std::string> pictures;  ///< The names of its pictures, by name.
    std::string movie;  ///< The name by which the multimedia layer opens it; empty without one.
};

/// An object that was asked for.
struct ObjectLoaded {
    std::string name;
    OwnedObject object;
    std::string reason;  ///< Why there is none, as a sentence.
};

struct EntryRenamed {
    ListingId listing = 0;
    EntryRows::Id row = 0;
    std::string name;
};

struct EntriesRemoved {
    ListingId listing = 0;
    std::vector<EntryRows::Id> rows;
};

/// An entry is there, perhaps as it was: some client of the file has written it.
struct EntryChanged {
    DirectoryPath path;
    std::string name;
    std::string class_name;
    Holding holding = Holding::Inside;
};

/// Some client of the file, perhaps this one, has taken entries of the listed directory out or put
/// others in.
struct NamesChanged {
    ListingId listing = 0;
    std::vector<std::string> gone;
    std::vector<std::string> come;
    bool has_other_directories = false;
};

/// Some client of the file has renamed a directory.
struct DirectoryMoved {
    DirectoryPath from;
    DirectoryPath to;
};

/// How many deletions can be taken back now.
struct DeletionsKept {
    std::size_t count = 0;
};

/// The last deletion was taken back; the first of its entries is there.
struct EntriesRestored {
    std::size_t count = 0;
    DirectoryPath path;
    std::string name;
    std::string note;  ///< What is unlike before, as a sentence; or empty.
};

struct FiltersListed {
    std::vector<SavedFilter> filters;
};

/// How far the work that takes long has come.
struct WorkProgress {
    std::string text;       ///< What is done.
    std::size_t done = 0;   ///< Steps of it;
    std::size_t total = 0;  ///< of so many, 0 where that is not known.
};

/// That work has ended.
struct WorkDone {
    std::string text;  ///< What came of it, for the user.
    bool is_as_asked = true;
    bool list_again = false;  ///< Directories may have come or gone.
};

/// A change that was asked for and not made.
struct ChangeRefused {
    std::string reason;  ///< A sentence for the user.
};

using LibraryResult =
    std::variant<LibraryOpened, LibraryRefused, DirectoriesListed, RowsListed, IconLoaded,
                 PreviewLoaded, ObjectLoaded, EntryRenamed, EntriesRemoved, EntryChanged,
                 NamesChanged, DirectoryMoved, DeletionsKept, EntriesRestored, FiltersListed,
                 WorkProgress, WorkDone, ChangeRefused>;

/// An entry of a listing.
struct ListedEntry {
    EntryRows::Id row = 0;
    std::string name;
};

}  // namespace editor
