#pragma once

#include "Random.h"
#include "store/LibraryFile.h"

#include <map>
#include <string>
#include <tuple>

namespace zmr {

/// What a library should hold, kept in the plainest way, to compare with.
class LibraryModel {
public:
    struct Entry {
        ContentKind kind;
        std::string label;
        std::string bytes;
        friend bool operator==(const Entry&, const Entry&) = default;
    };
    using Key = std::tuple<std::string, std::string, std::string>;  // path key, type, name

    /// All that `file` gives, by its lists and get; entries that are listed but can't be read are
    /// left out and counted.
    [[nodiscard]] static LibraryModel Of(const LibraryFile& file, int* unreadable = nullptr);

    /// Does one random change to both, and expects both to answer alike. Contents are mostly small;
    /// some lie above a block.
    void change(LibraryFile& file, Random& random);
    /// Puts `count` small entries under one directory into both.
    void put_many(LibraryFile& file, Random& random, int count);

    std::map<Key, Entry> entries;
    std::string file_kind;
    friend bool operator==(const LibraryModel&, const LibraryModel&) = default;

private:
    void change_kind(LibraryFile& file, Random& random);
    void put(LibraryFile& file, Random& random);
    void put_raw(LibraryFile& file, Random& random);
    void remove(LibraryFile& file, Random& random);
    void rename(LibraryFile& file, Random& random);
    void rename_directory(LibraryFile& file, Random& random);
};

/// Compressible bytes of that size, another text for another number.
[[nodiscard]] std::string text_bytes(std::size_t size, unsigned number);
/// Bytes that do not compress.
[[nodiscard]] std::string noise_bytes(std::size_t size, unsigned seed);
[[nodiscard]] std::span<const std::byte> as_span(const std::string& bytes);
[[nodiscard]] LibraryPath path_of(std::initializer_list<std::string_view> levels);

}  // namespace zmr
