#include "scene_editor/core/PropertyTexts.h"

#include "foundation/GMetaClass.h"
#include "graphics/PaletteCollection.h"
#include "responder/GBehaviour.h"
#include "responder/GResponder.h"
#include "scene_editor/core/CountsText.h"
#include "scene_editor/core/LibraryPaths.h"
#include "scene_interface/SceneItem.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace editor {

namespace {

constexpr std::size_t kMostNameBytes = 200;

// The same in every locale, without zeros at the end.
std::string number_text(double value, std::chars_format format, int digits)
{
    std::array<char, 400> text{};
    const auto [end, code] =
        std::to_chars(text.data(), text.data() + text.size(), value, format, digits);
    std::string result(text.data(), end);
    if (result.find('.') != std::string::npos && result.find('e') == std::string::npos) {
        result.erase(result.find_last_not_of('0') + 1);
        if (result.back() == '.')
            result.pop_back();
    }
    return result == "-0" ? "0" : result;
}

std::string length_text(double value)
{
    return number_text(value, std::chars_format::fixed, 3);
}

std::optional<double> number_of(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return std::nullopt;
    std::string word(text.substr(first, text.find_last_not_of(' ') + 1 - first));
    for (char& letter : word)
        letter = letter == ',' ? '.' : letter;  // as half of the world writes it
    if (word.size() > 1 && word[0] == '+' && word[1] != '-')
        word.erase(0, 1);
    double value = 0;
    const auto [end, code] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (code != std::errc() || end != word.data() + word.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::string color_text(GResponder& object)
{
    const RGB_Color color = object.get_pal(scene::kSurfaceColor);
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", color.red, color.green, color.blue);
    const PaletteCollection* const own = object.get_palette();
    const bool is_own = own != nullptr && own->find_color(scene::kSurfaceColor) >= 0;
    return std::string(text.data()) + (is_own ? "" : ", the scene's");
}

std::string state_text(const GResponder& object)
{
    std::string text;
    const auto add = [&text](std::string_view word) {
        text += text.empty() ? "" : ", ";
        text += word;
    };
    if (!object.is_shown())
        add("hidden");
    if (object.is_disabled())
        add("disabled");
    if (object.get_state(GResponder::state_selected))
        add("selected");
    if (object.get_state(GResponder::state_focused))
        add("focused");
    for (const GBehaviour* behaviour = object.get_behaviours(); behaviour != nullptr;
         behaviour = behaviour->get_next())
        add(behaviour->getMetaClass()->name);
    return text;
}

}  // namespace

PropertyTexts property_texts(GResponder* object)
{
    PropertyTexts texts;
    const auto* const item = dynamic_cast<scene::SceneItem*>(object);
    if (item == nullptr)
        return texts;
    const scene::Place place = item->place();
    const auto typed = [&texts](Property property) -> std::string& {
        return texts.typed[static_cast<std::size_t>(property)];
    };
    typed(Property::Name) = object->get_label() != nullptr ? object->get_label() : "";
    typed(Property::X) = length_text(place.x);
    typed(Property::Y) = length_text(place.y);
    typed(Property::Turn) = length_text(place.turn_deg);
    typed(Property::Scale) = number_text(place.scale, std::chars_format::general, 4);
    texts.class_name = object->getMetaClass()->name;
    texts.color = color_text(*object);
    texts.triangles = with_thousands(item->triangle_count());
    texts.state = state_text(*object);
    return texts;
}

std::optional<std::string> set_property(GResponder& object, Property property,
                                        std::string_view text)
{
    auto* const item = dynamic_cast<scene::SceneItem*>(&object);
    if (item == nullptr)
        return "This object has no properties.";
    if (property == Property::Name) {
        if (text.empty())
            return "An object must have a name.";
        if (text.size() > kMostNameBytes)
            return "The name is too long.";
        object.set_label(std::string(text).c_str());
        item->touch();
        return std::nullopt;
    }
    const std::optional<double> value = number_of(text);
    if (!value)
        return in_quotes(text) + " is no number.";
    scene::Place place = item->place();
    switch (property) {
        case Property::X:
            place.x = *value;
            break;
        case Property::Y:
            place.y = *value;
            break;
        case Property::Turn:
            place.turn_deg = *value;
            break;
        default:
            if (!(*value > 0))
                return "The scale must be above 0.";
            place.scale = *value;
            break;
    }
    item->set_place(place);
    return std::nullopt;
}

}  // namespace editor
