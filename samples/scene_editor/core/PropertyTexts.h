#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

class GResponder;

namespace editor {

/// The properties of an object that can be typed.
enum class Property : std::uint8_t { Name, X, Y, Turn, Scale };
inline constexpr std::size_t kProperties = 5;

/// What the panel shows of an object; all empty for none.
struct PropertyTexts {
    std::string typed[kProperties];  ///< By Property.
    std::string class_name;
    std::string color;      ///< As #RRGGBB, and where it comes from.
    std::string triangles;  ///< Their count.
    std::string state;      ///< What of shown, disabled, selected, focused and behaviours is worth
                            ///< telling.
    friend bool operator==(const PropertyTexts&, const PropertyTexts&) = default;
};

/// `object` may be null. Lengths have at most three decimals, the scale four digits that count; the
/// point is one in every locale.
[[nodiscard]] PropertyTexts property_texts(GResponder* object);

/// Gives `object` the property that was typed. What is wrong with the text as a sentence, with
/// nothing changed, when it can't be taken.
[[nodiscard]] std::optional<std::string> set_property(GResponder& object, Property property,
                                                      std::string_view text);

}  // namespace editor
