#include "graphics/PaletteCollection.h"
#include "responder/GResponder.h"

#include <memory>

// State, options, regime and colours.

namespace {

constexpr std::uint32_t bit(unsigned long value)
{
    return static_cast<std::uint32_t>(value);
}

constexpr std::uint32_t kShown = bit(GResponder::state_shown);
constexpr std::uint32_t kFocused = bit(GResponder::state_focused);
constexpr std::uint32_t kExposed = bit(GResponder::state_exposed);
constexpr std::uint32_t kVisible = bit(GResponder::state_visible);
/// What children take over with the whole of the bits that are set with it.
constexpr std::uint32_t kInherited =
    bit(GResponder::state_stored_8 | GResponder::state_inherited_10 |
        GResponder::state_inherited_80 | GResponder::state_disabled);
/// From what more follows than that.
constexpr std::uint32_t kFollowed = kShown | kFocused | kExposed | kVisible;

}  // namespace

void GResponder::set_state(unsigned long asked_bits, unsigned char on)
{
    const auto bits = static_cast<std::uint32_t>(asked_bits);
    if ((bits & kFollowed) != 0) {
        change_state(bits, on);
        return;
    }
    state_ = on != 0 ? state_ | bits : state_ & ~bits;
    if ((bits & kInherited) != 0 && children_.count() > 0)
        pass_state_on(bits, on);
}

void GResponder::change_state(std::uint32_t bits, unsigned char on)
{
    if ((bits & kVisible) != 0 && owner_ != nullptr &&
        ((state_ ^ owner_->state_) & state_inherited_10) != 0)
        set_state(state_inherited_10, on);
    state_ = on != 0 ? state_ | bits : state_ & ~bits;
    follow_state(bits, on);
}

void GResponder::pass_state_on(std::uint32_t bits, unsigned char on)
{
    for (int index = children_.count() - 1; index >= 0; --index) {
        if (index < children_.count())
            children_[index]->set_state(bits, on);
    }
}

/// In this order: idling, visibility, inheritance, focus, exposure and visibility of the children.
/// A child's set_state may take siblings out, so each turn looks at the count again.
void GResponder::follow_state(std::uint32_t bits, unsigned char on)
{
    if ((bits & kExposed) != 0 && (options_ & option_idle_when_exposed) != 0)
        allow_idle(on != 0);
    if ((bits & (kExposed | kShown)) != 0)
        show_by_owner();
    if ((bits & kInherited) != 0)
        pass_state_on(bits, on);
    if ((bits & kFocused) != 0) {
        if (GResponder* current = get_current())
            current->set_state(state_focused, on);
    }
    if ((bits & kExposed) != 0) {
        for (int index = children_.count() - 1; index >= 0; --index) {
            if (index < children_.count() && children_[index]->exposed() != (on != 0))
                children_[index]->set_state(state_exposed, on);
        }
    }
    if ((bits & kVisible) != 0) {
        for (int index = children_.count() - 1; index >= 0; --index) {
            if (index < children_.count() && children_[index]->is_shown())
                children_[index]->set_state(state_visible, on);
        }
    }
}

void GResponder::show_by_owner()
{
    const bool visible =
        get_state(state_exposed | state_shown) && (owner_ == nullptr || owner_->is_visible());
    if (visible != is_visible())
        set_state(state_visible, visible ? 1 : 0);
}

void GResponder::set_options(unsigned long bits, unsigned char on)
{
    const auto changed = static_cast<std::uint32_t>(bits);
    options_ = on != 0 ? options_ | changed : options_ & ~changed;
}

void GResponder::select()
{
    if ((options_ & option_to_front) != 0)
        makeFirst();
    if (owner_ != nullptr)
        owner_->set_current(this);
}

void GResponder::select_next(unsigned char forward)
{
    const int count = children_.count();
    const GResponder* current = get_current();
    const int start = current != nullptr ? children_.index_of(current) : count;
    if (start == count)
        return;
    int index = start;
    do {
        index = forward != 0 ? index + 1 : index - 1;
        index = index == count ? 0 : index < 0 ? count - 1 : index;
        const GResponder* child = children_[index];
        if (child->is_shown() && !child->is_disabled() &&
            (child->options_ & option_selectable) != 0)
            break;
    } while (index != start);
    children_[index]->select();
}

unsigned long GResponder::get_regime()
{
    return regime_;
}

void GResponder::set_regime(unsigned long regime)
{
    regime_ = static_cast<std::uint32_t>(regime);
    for (int index = children_.count() - 1; index >= 0; --index) {
        if (index < children_.count())
            children_[index]->set_regime(regime);
    }
}

bool GResponder::change_regime(unsigned long regime)
{
    if (valid(regime) == 0)
        return false;
    set_regime(regime);
    return true;
}

void GResponder::set_palette(PaletteCollection* palette)
{
    if (palette == get_palette())
        return;
    PaletteCollection*& own = own_extras().palette;
    if (!borrows(kPalette))
        delete own;
    stop_borrowing(kPalette);
    own = palette;
}

void GResponder::set_palette_entry(long index, const RGB_Color& color)
{
    own_palette();
    PaletteCollection*& own = own_extras().palette;
    if (own == nullptr)
        own = new PaletteCollection;
    own->add_entry(index, color);
}

void GResponder::remove_palette_entry(long index)
{
    own_palette();
    PaletteCollection* own = get_palette();
    if (own == nullptr)
        return;
    const long position = own->find_color(index);
    if (position >= 0)
        own->at_free(position);
}

RGB_Color GResponder::get_palette_entry(long index)
{
    if (const PaletteCollection* own = get_palette()) {
        if (const PaletteCollection::Entry* entry = own->at(own->find_color(index)))
            return entry->color;
    }
    return owner_ != nullptr ? owner_->get_palette_entry(index) : get_default_color(index);
}

RGB_Color GResponder::get_color(RGB_Color color)
{
    return color;
}

RGB_Color GResponder::get_default_color(long)
{
    return RGB_Color();
}

bool GResponder::use_parent_color()
{
    return parent_color_;
}

void GResponder::set_use_parent_color(bool use)
{
    parent_color_ = use;
}

bool GResponder::use_parent_select_color()
{
    return parent_select_color_;
}

void GResponder::set_use_parent_select_color(bool use)
{
    parent_select_color_ = use;
}
