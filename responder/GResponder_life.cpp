#include "foundation/GCollection.h"
#include "foundation/GString.h"
#include "graphics/PaletteCollection.h"
#include "responder/GBehaviour.h"
#include "responder/GResponder.h"
#include "responder/NotificationLink.h"
#include "responder/RunningDispatch.h"

#include <utility>

G_DEFINE_CLASS(GResponder, GStreamable);

namespace {

/// So many children in front of the one that ends, the next ones are fetched into the cache.
constexpr int kAhead = 4;

}  // namespace

// Making, copying and ending a responder.

static_assert(sizeof(void*) != 8 || sizeof(GResponder) == 72);

GResponder::GResponder() : GIdler(false) {}

/// The fields that need no memory.
GResponder::GResponder(const GResponder& other, PlainFields)
    : GStreamable(other),
      GIdler(false),
      state_(other.state_ & static_cast<std::uint32_t>(state_stored_mask)),
      options_(other.options_),
      regime_(other.regime_)
{
}

GResponder::GResponder(const GResponder& other) : GResponder(other, PlainFields())
{
    const Extras* others = other.extras_.get();
    if (others == nullptr)
        return;
    if (others->label != nullptr)
        own_extras().label = gnewstr(others->label);
    copy_behaviours(others->behaviours);
    if (others->palette != nullptr)
        own_extras().palette = zmr::class_cast<PaletteCollection>(others->palette->clone(true));
}

GResponder::Extras& GResponder::own_extras()
{
    if (extras_ == nullptr)
        extras_ = std::make_unique<Extras>();
    return *extras_;
}

void GResponder::set_behaviours(GBehaviour* head)
{
    if (head != nullptr || extras_ != nullptr)
        own_extras().behaviours = head;
    has_behaviours_ = head != nullptr;
}

/// Clones the chain without those that are not to be written. Cloning the first one clones all.
void GResponder::copy_behaviours(GBehaviour* head)
{
    while (head != nullptr && !head->shouldWrite())
        head = head->get_next();
    if (head == nullptr)
        return;
    set_behaviours(zmr::class_cast<GBehaviour>(head->clone(true)));
    for (GBehaviour* copy = get_behaviours(); copy != nullptr; copy = copy->get_next())
        copy->attaching_to_object(this, 1);
}

GResponder& GResponder::operator=(const GResponder& other)
{
    if (this == &other)
        return *this;
    release_all();
    GStreamable::operator=(other);
    children_.share(other.children_);
    set_behaviours(other.get_behaviours());
    if (const Extras* others = other.extras_.get()) {
        Extras& own = own_extras();
        own.label = others->label;
        own.receivers = others->receivers;
        own.palette = others->palette;
        own.current = others->current;
    }
    owner_ = other.owner_;
    state_ = other.state_;
    options_ = other.options_;
    regime_ = other.regime_;
    parent_color_ = other.parent_color_;
    parent_select_color_ = other.parent_select_color_;
    has_doubles_ = other.has_doubles_;
    borrowed_ = kChildren | kBehaviours | kLabel | kReceivers | kPalette | kCurrent | kOwner;
    return *this;
}

GResponder::~GResponder()
{
    if (extras_ != nullptr || children_.count() > 0 || owner_ != nullptr || borrowed_ != 0)
        release_all();
    if (GResponder* holder = current_of())
        holder->extras_->current = nullptr;
    zmr::RunningDispatch::ResponderDies(this);
}

/// Gives up all that this responder owns or borrows. Whoever ends without shut_down leaves no
/// pointer to itself in the tree.
void GResponder::release_all()
{
    if (extras_ != nullptr)
        release_extras();
    if (borrows(kChildren))
        children_.forget();
    for (int index = 0; index < children_.count(); ++index) {
        if (children_[index]->owner_ == this)
            children_[index]->owner_ = nullptr;
    }
    children_.clear();
    if (owner_ != nullptr && !borrows(kOwner))
        owner_->delete_from_list(this);
    owner_ = nullptr;
    borrowed_ = 0;
}

/// What the extras hold; they stay, because another one may have this one as its current child.
void GResponder::release_extras()
{
    destroy_all_behaviours();
    destroy_linked_object_collection();
    if (!borrows(kPalette))
        delete extras_->palette;
    extras_->palette = nullptr;
    if (!borrows(kLabel))
        gfreestr(extras_->label);
    extras_->label = nullptr;
    hold_current(nullptr);
}

void GResponder::own_children()
{
    children_.own_array();
    stop_borrowing(kChildren);
}

void GResponder::own_behaviours()
{
    if (!borrows(kBehaviours))
        return;
    stop_borrowing(kBehaviours);
    GBehaviour* const borrowed = get_behaviours();
    set_behaviours(nullptr);
    copy_behaviours(borrowed);
}

void GResponder::own_receivers()
{
    if (!borrows(kReceivers))
        return;
    stop_borrowing(kReceivers);
    const GCollection* borrowed = receivers();
    if (borrowed == nullptr)
        return;
    extras_->receivers = nullptr;
    for (long index = 0; index < borrowed->count; ++index) {
        const auto* link = static_cast<const NotificationLink*>(borrowed->items[index]);
        if (link->target != nullptr)
            add_receiver(static_cast<GResponder*>(link->target), link->event_kind,
                         link->event_word);
    }
}

void GResponder::own_palette()
{
    if (!borrows(kPalette))
        return;
    stop_borrowing(kPalette);
    if (get_palette() == nullptr)
        return;
    if (PaletteCollection* borrowed = std::exchange(extras_->palette, nullptr))
        extras_->palette = zmr::class_cast<PaletteCollection>(borrowed->clone(true));
}

void GResponder::shut_down()
{
    if (children_.count() > 0)
        destroy_all();
    if (has_behaviours_)
        destroy_all_behaviours();
    if (owner_ != nullptr)
        owner_->remove(this);
    if (extras_ != nullptr)
        destroy_linked_object_collection();
    GStreamable::shut_down();
}

void GResponder::destroy_all()
{
    if (borrows(kChildren)) {
        children_.forget();
        stop_borrowing(kChildren);
    }
    for (int index = 0; index < kAhead; ++index)
        children_.prefetch(index);
    while (GResponder* child = first()) {
        children_.prefetch(kAhead);
        if (child->owner_ != this) {  // from a list that was borrowed
            children_.remove_at(0);
            continue;
        }
        GStreamable::destroy(child);
        // Still there: it is ending already, or its way out of the list was barred.
        if (child == first())
            delete_from_list(child);
    }
}

void GResponder::idle() {}

const char* GResponder::get_label()
{
    return extras_ != nullptr ? extras_->label : nullptr;
}

void GResponder::set_label(const char* label)
{
    take_label(gnewstr(label));
}

/// Takes `label` over.
void GResponder::take_label(char* label)
{
    if (label == nullptr && extras_ == nullptr)
        return;
    char*& own = own_extras().label;
    if (!borrows(kLabel))
        gfreestr(own);
    stop_borrowing(kLabel);
    own = label;
}

void GResponder::attach_behaviour(GBehaviour* behaviour)
{
    if (behaviour == nullptr)
        return;
    if (behaviour->host_responder != nullptr)
        behaviour->host_responder->detach_behaviour(behaviour);
    own_behaviours();
    behaviour->next_behaviour = get_behaviours();
    set_behaviours(behaviour);
    behaviour->attaching_to_object(this, 1);
}

void GResponder::detach_behaviour(GBehaviour* behaviour)
{
    if (behaviour == nullptr || behaviour->host_responder != this)
        return;
    behaviour->attaching_to_object(this, 0);
    unlink_behaviour(behaviour);
}

/// Takes it out of the chain, if it is there; its own link stays as it is.
void GResponder::unlink_behaviour(GBehaviour* behaviour)
{
    if (extras_ == nullptr)
        return;
    GBehaviour** link = &extras_->behaviours;
    while (*link != nullptr && *link != behaviour)
        link = &(*link)->next_behaviour;
    if (*link != nullptr)
        *link = behaviour->next_behaviour;
    has_behaviours_ = extras_->behaviours != nullptr;
}

void GResponder::destroy_all_behaviours()
{
    if (!has_behaviours_)
        return;
    zmr::RunningDispatch::ChainEnds(this);
    if (borrows(kBehaviours))
        set_behaviours(nullptr);
    stop_borrowing(kBehaviours);
    while (GBehaviour* behaviour = get_behaviours()) {
        set_behaviours(behaviour->next_behaviour);
        GStreamable::destroy(behaviour);
    }
}
