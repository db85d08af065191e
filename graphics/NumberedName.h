#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zmr {

/// A file name cut at the digits that end it, before the extension: "shot_", "0007", ".tga".
struct NumberedName {
    static constexpr std::size_t kMaxDigits = 9;  ///< Of longer runs the last ones count.

    std::string_view prefix;
    std::string_view digits;
    std::string_view suffix;

    [[nodiscard]] long number() const;
};

/// None when no digits stand there. The parts are views into `name`.
[[nodiscard]] std::optional<NumberedName> split_numbered_name(std::string_view name);

/// `number` with at least `digits` digits.
[[nodiscard]] std::string number_text(long number, int digits);

}  // namespace zmr
