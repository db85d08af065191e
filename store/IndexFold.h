#pragma once

#include "store/DirectoryIndex.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zmr {

/// Folds the changes of a DirectoryIndex into new extents and pages: those that a change touches
/// are written anew, the others stay. Nothing of the index changes until apply().
class IndexFold {
public:
    /// Writes a block and gives its place; false when that failed.
    using Write = std::function<bool(std::string_view bytes, BlockRef& block)>;
    /// Whether a block that is worth moving should be written anew.
    using Moves = std::function<bool(const BlockRef& block)>;

    static constexpr std::size_t kExtentBytes =
        32 * 1024;                                        ///< Full; one record more may lie above.
    static constexpr std::size_t kSmallBytes = 8 * 1024;  ///< Small neighbours are joined.
    static constexpr std::size_t kTablePageBytes = 16 * 1024;

    IndexFold(DirectoryIndex& index, Write write, Moves moves)
        : index_(index), write_(std::move(write)), moves_(std::move(moves))
    {
    }
    /// False when a block could not be read or written; what was written so far is in written().
    [[nodiscard]] bool run();
    /// Puts the new root into the index. The free list's place stays the old one's.
    void apply();
    /// The blocks that the new root no longer names.
    [[nodiscard]] const std::vector<FileRange>& given_up() const { return given_up_; }
    [[nodiscard]] const std::vector<FileRange>& written() const { return written_; }

private:
    class ExtentWriter;
    [[nodiscard]] bool fold_directory(const DirectoryChanges& changes, Directory& folded);
    [[nodiscard]] bool fold_extent(const ExtentRef& extent, EntryChanges::const_iterator& change,
                                   EntryChanges::const_iterator end, ExtentWriter& out);
    [[nodiscard]] bool fold_pages();
    [[nodiscard]] bool fold_types();
    [[nodiscard]] bool write_block(std::string_view bytes, BlockRef& block);
    [[nodiscard]] bool end_page(IndexBlockBuilder& page, const std::string& first);
    void give_up(const BlockRef& block) { given_up_.push_back(block.range()); }

    DirectoryIndex& index_;
    Write write_;
    Moves moves_;
    RootRecord root_;
    std::map<std::string, std::optional<Directory>> folded_;  // none: gone
    std::vector<FileRange> given_up_;
    std::vector<FileRange> written_;
};

}  // namespace zmr
