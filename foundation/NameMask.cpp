#include "foundation/NameMask.h"

#include <cstddef>

namespace zmr {
namespace {

/// The place behind the character that begins at `place`.
std::size_t next_character(std::string_view text, std::size_t place)
{
    ++place;
    while (place < text.size() && (static_cast<unsigned char>(text[place]) & 0xC0) == 0x80)
        ++place;
    return place;
}

}  // namespace

bool matches_mask(std::string_view name, std::string_view mask, LetterCase letters)
{
    if (mask == "*.*")
        return true;
    const auto equal = [letters](char a, char b) {
        return a == b || (letters == LetterCase::Ignored && fold_ascii(a) == fold_ascii(b));
    };

    // What the last star stands for grows by a byte whenever the rest does not fit. Stars before it
    // never have to be tried again: a shorter match of theirs leaves the last one more to choose.
    constexpr std::size_t kNone = std::string_view::npos;
    std::size_t at_name = 0;
    std::size_t at_mask = 0;
    std::size_t behind_star = kNone;
    std::size_t star_end = 0;
    while (at_name < name.size()) {
        if (at_mask < mask.size() && mask[at_mask] == '*') {
            behind_star = ++at_mask;
            star_end = at_name;
        } else if (at_mask < mask.size() && mask[at_mask] == '?') {
            ++at_mask;
            at_name = next_character(name, at_name);
        } else if (at_mask < mask.size() && equal(mask[at_mask], name[at_name])) {
            ++at_mask;
            ++at_name;
        } else if (behind_star != kNone) {
            at_mask = behind_star;
            at_name = star_end = next_character(name, star_end);
        } else {
            return false;
        }
    }
    while (at_mask < mask.size() && mask[at_mask] == '*')
        ++at_mask;
    return at_mask == mask.size();
}

}  // namespace zmr
