#include "odb/KeyedText.h"

namespace zmr {

namespace {

bool is_letter(char byte)
{
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

/// The bytes that end a word. Names with one of them are searched in the text.
bool ends_word(char byte)
{
    constexpr std::string_view kEnds = " \t\r\n(),;=]";
    return kEnds.find(byte) != std::string_view::npos;
}

/// One more byte at the front of a word, whose hash is built from its end.
std::uint64_t add_in_front(std::uint64_t hash, char byte)
{
    return (hash ^ static_cast<unsigned char>(byte)) * 0x9E3779B97F4A7C15u + 1;
}

}  // namespace

std::size_t find_key(std::string_view text, std::string_view key)
{
    std::size_t at = text.find(key);
    while (at != std::string_view::npos && at > 0 && is_letter(text[at - 1]))
        at = text.find(key, at + 1);
    return at;
}

KeyedText::KeyedText(std::initializer_list<std::string_view> markers)
{
    for (const std::string_view marker : markers)
        markers_.push_back({std::string(marker), 0, {}});
}

std::size_t KeyedText::find(std::string_view name, std::size_t marker)
{
    Marker& wanted = markers_[marker];
    std::uint64_t hash = 0;
    bool is_word = !name.empty();
    for (std::size_t i = name.size(); i > 0 && is_word; --i) {
        is_word = !ends_word(name[i - 1]);
        hash = add_in_front(hash, name[i - 1]);
    }
    if (!is_word)
        return find_key(text_, std::string(name) + wanted.text);

    scan(wanted);
    const auto found = wanted.places.find(hash);
    if (found == wanted.places.end())
        return std::string_view::npos;
    const Place& place = found->second;
    if (place.shared)
        return find_key(text_, std::string(name) + wanted.text);
    const bool same = text_.compare(place.start, place.length, name) == 0;
    return same ? place.start : std::string_view::npos;
}

void KeyedText::scan(Marker& marker) const
{
    const std::size_t size = marker.text.size();
    if (text_.size() < size)
        return;
    // The last bytes may be the start of a marker that the next text completes.
    const std::size_t end = text_.size() - size + 1;
    while (marker.scanned < end) {
        const std::size_t at = text_.find(marker.text, marker.scanned);
        if (at == std::string::npos) {
            marker.scanned = end;
            return;
        }
        add_words_in_front_of(at, marker);
        marker.scanned = at + 1;
    }
}

void KeyedText::add_words_in_front_of(std::size_t end, Marker& marker) const
{
    std::uint64_t hash = 0;
    for (std::size_t start = end; start > 0 && !ends_word(text_[start - 1]); --start) {
        hash = add_in_front(hash, text_[start - 1]);
        const std::size_t word = start - 1;
        if (word > 0 && is_letter(text_[word - 1]))
            continue;
        const Place place{word, end - word, false};
        const auto [there, is_new] = marker.places.try_emplace(hash, place);
        Place& former = there->second;
        if (!is_new && text_.compare(former.start, former.length, text_, word, end - word) != 0)
            former.shared = true;
    }
}

}  // namespace zmr
