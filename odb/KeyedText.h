#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zmr {

/// Finds `key` in `text` where no ASCII letter stands in front of it: the first such place, or
/// std::string_view::npos.
[[nodiscard]] std::size_t find_key(std::string_view text, std::string_view key);

/// A text that only grows, with an index of what stands in front of its markers, so that
/// find_key(text(), name + marker) takes one look-up whatever the text's length. One thread at a
/// time.
class KeyedText {
public:
    explicit KeyedText(std::initializer_list<std::string_view> markers);

    void append(std::string_view more) { text_ += more; }
    [[nodiscard]] std::string_view text() const { return text_; }
    /// What find_key gives for `name` and marker number `marker` behind it. Takes the text that was
    /// added since the last call into the index first.
    [[nodiscard]] std::size_t find(std::string_view name, std::size_t marker);

private:
    /// The first place of one word, by the word's hash.
    struct Place {
        std::size_t start;
        std::size_t length;
        bool shared;  ///< Another word has the same hash, so that the text itself must be searched.
    };
    struct Marker {
        std::string text;
        std::size_t scanned = 0;  ///< All markers that begin before it are in `places`.
        std::unordered_map<std::uint64_t, Place> places;
    };

    void scan(Marker& marker) const;
    void add_words_in_front_of(std::size_t end, Marker& marker) const;

    std::string text_;
    std::vector<Marker> markers_;
};

}  // namespace zmr
