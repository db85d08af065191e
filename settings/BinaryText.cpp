#include "settings/BinaryText.h"

#include <algorithm>

namespace zmr {

std::string binary_to_text(std::span<const unsigned char> bytes)
{
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const unsigned char byte : bytes) {
        text.push_back(static_cast<char>('A' + (byte & 0x0F)));
        text.push_back(static_cast<char>('A' + (byte >> 4)));
    }
    return text;
}

std::optional<std::size_t> binary_size(std::string_view text)
{
    const auto is_letter = [](char letter) { return letter >= 'A' && letter <= 'P'; };
    if (text.size() % 2 != 0 || !std::all_of(text.begin(), text.end(), is_letter))
        return std::nullopt;
    return text.size() / 2;
}

void text_to_binary(std::string_view text, unsigned char* bytes)
{
    for (std::size_t i = 0; i + 1 < text.size(); i += 2)
        *bytes++ = static_cast<unsigned char>((text[i] - 'A') + ((text[i + 1] - 'A') << 4));
}

}  // namespace zmr
