#pragma once

#include "store/LibraryPath.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zmr {

class IndexBlock;

/// What an entry's bytes are, so that nobody takes a movie for an object's stream.
enum class ContentKind : std::uint8_t {
    Streamable,  ///< A persistent stream; stored compressed when that saves enough.
    Raw          ///< Foreign bytes, stored as they are and in one piece, to be used in place.
};

/// Names one entry of a library file.
struct LibraryName {
    LibraryPath path;
    std::string name;
    std::string type;

    friend bool operator==(const LibraryName&, const LibraryName&) = default;
};

/// What a library file knows of one entry without reading its content, and where that lies. It
/// stays true until the entry is put, removed or moved by pack; of a pinned one until unpin().
struct LibraryContent {
    ContentKind kind = ContentKind::Streamable;
    bool compressed = false;     ///< The stored bytes are one zlib stream.
    bool in_index = false;       ///< Lies inside an extent of its directory's index.
    bool in_blocks = false;      ///< Has a checksum for each kBlockBytes, behind the stored bytes.
    std::uint64_t length = 0;    ///< Bytes of the content.
    std::uint64_t stored = 0;    ///< Bytes in the file; equals `length` unless compressed.
    std::uint64_t position = 0;  ///< Of the first stored byte from the file's start; 0 when it is
                                 ///< not written yet, which pin() sees to.
    std::uint64_t checksum =
        0;              ///< Of the stored bytes, or of the table of their blocks' checksums.
    std::string label;  ///< As given to put.

    static constexpr std::uint32_t kBlockBytes = 64 * 1024;
};

/// One entry as a listing gives it. The views borrow from the EntryList that gave it.
struct LibraryEntryView {
    std::string_view name;
    std::string_view label;
    ContentKind kind = ContentKind::Streamable;
    std::uint64_t length = 0;
    bool has_bytes = false;            ///< Small and stored plain: `bytes` is the whole content.
    std::span<const std::byte> bytes;  ///< Already checked.
};

/// The entries of one type in one directory at the moment of the call, ascending by name. Holds the
/// index blocks that it was read from, so that later changes, pack and closing do not touch it;
/// eight bytes for each entry besides. Movable; may outlive the library file. One thread at a time.
class ZMR_GV_API LibraryEntryList {
public:
    [[nodiscard]] std::size_t size() const { return places_.size(); }
    /// Entry `index`, which must be below size(). Takes no memory and reads no file.
    [[nodiscard]] LibraryEntryView operator[](std::size_t index) const;

private:
    friend class DirectoryIndex;
    struct Place {
        std::uint32_t block;
        std::uint32_t record;
    };
    std::vector<std::shared_ptr<const IndexBlock>> blocks_;
    std::vector<Place> places_;
};

}  // namespace zmr
