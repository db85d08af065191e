#include "foundation/MSort.h"
#include "responder/GResponder.h"
#include "responder/HiddenOwner.h"

#include <algorithm>
#include <cstring>
#include <vector>

// The list of children and the ways through the tree.

unsigned char GResponder::isSubobject(const GResponder* ancestor) const
{
    const GResponder* above = owner_;
    while (above != nullptr && above != ancestor)
        above = above->owner_;
    return above == ancestor ? 1 : 0;
}

/// The index of a child whose owner this is, by its note, which is renewed; count() when the child
/// has no entry all the same.
int GResponder::index_of_own(const GResponder* child) const
{
    if (has_doubles_)
        return children_.index_of(child);
    const int index = children_.index_of(child, child->place_);
    if (index < children_.count())
        child->place_ = children_.place_at(index);
    return index;
}

/// The child behind `index`, round the list; null for count().
GResponder* GResponder::behind(int index) const
{
    if (index == children_.count())
        return nullptr;
    return children_[index + 1 == children_.count() ? 0 : index + 1];
}

GResponder* GResponder::before(int index) const
{
    if (index == children_.count())
        return nullptr;
    return children_[index == 0 ? children_.count() - 1 : index - 1];
}

GResponder* GResponder::next(const GResponder* child) const
{
    return behind(children_.index_of(child));
}

GResponder* GResponder::prev(const GResponder* child) const
{
    return before(children_.index_of(child));
}

GResponder* GResponder::next() const
{
    return owner_ != nullptr ? owner_->behind(owner_->index_of_own(this)) : nullptr;
}

GResponder* GResponder::prev() const
{
    return owner_ != nullptr ? owner_->before(owner_->index_of_own(this)) : nullptr;
}

GResponder* GResponder::next_view() const
{
    return owner_ != nullptr && owner_->last() != this ? next() : nullptr;
}

GResponder* GResponder::prev_view() const
{
    return owner_ != nullptr && owner_->first() != this ? prev() : nullptr;
}

GResponder* GResponder::next_object(short index) const
{
    return index >= 0 && index < children_.count() - 1 ? children_[index + 1] : nullptr;
}

GResponder* GResponder::prev_object(short index) const
{
    return index > 0 && index < children_.count() ? children_[index - 1] : nullptr;
}

GResponder* GResponder::topmost()
{
    GResponder* const current = get_current();
    return current != nullptr ? current->topmost() : this;
}

GResponder* GResponder::find_sub_object(const char* name)
{
    const char* own = get_label();
    if (name == nullptr ? own == nullptr : own != nullptr && std::strcmp(name, own) == 0)
        return this;
    for (int index = 0; index < children_.count(); ++index) {
        if (GResponder* found = children_[index]->find_sub_object(name))
            return found;
    }
    return nullptr;
}

GResponder* GResponder::first_that(unsigned char (*test)(GResponder*, void*), void* argument) const
{
    for (int index = children_.count() - 1; index >= 0; --index) {
        if (index >= children_.count())
            continue;  // the test took some out
        GResponder* child = children_[index];
        if (test(child, argument) != 0)
            return child;
    }
    return nullptr;
}

GResponder* GResponder::first_match(unsigned long state_bits, unsigned long option_bits) const
{
    for (int index = 0; index < children_.count(); ++index) {
        GResponder* child = children_[index];
        if (child->get_state(state_bits) && (child->options_ & option_bits) == option_bits)
            return child;
    }
    return nullptr;
}

unsigned short GResponder::Priority() const
{
    return (options_ & option_high_priority) != 0 ? 0x8001 : 0x8000;
}

void GResponder::insert(GResponder* child)
{
    insert_before(child, first());
}

int GResponder::insert_before(GResponder* child, GResponder* target)
{
    return insert_to_list(child, target, 1);
}

int GResponder::insert_after(GResponder* child, GResponder* target)
{
    if (target == nullptr)
        return insert_before(child, first());
    const int index = children_.index_of(target);
    if (index == children_.count())
        return 0;
    return insert_before(child, at(static_cast<short>(index + 1)));
}

int GResponder::at_insert(short index, GResponder* child)
{
    return insert_before(child, at(std::max<short>(index, 0)));
}

bool GResponder::silent_insert(GResponder* child)
{
    return insert_to_list(child, first(), 1) != 0;
}

int GResponder::valid_inserted_pointer(GResponder* child, GResponder* target)
{
    return takes_in(child) && (target == nullptr || contains(target) != 0) ? 1 : 0;
}

/// Whether `child` can be inserted somewhere here.
bool GResponder::takes_in(const GResponder* child) const
{
    return child != nullptr && child->owner_ == nullptr &&
           children_.count() < zmr::ChildList::kMaxCount && !child->is_above(this);
}

/// The owner, also one that is hidden for a while: no responder may come to stand above itself.
const GResponder* GResponder::above() const
{
    return owner_ != nullptr ? owner_ : zmr::HiddenOwner::Of(this);
}

/// Whether this responder, which has no owner, is `other` or stands above it.
bool GResponder::is_above(const GResponder* other) const
{
    return this == other || (children_.count() > 0 && other->stands_below(this));
}

bool GResponder::stands_below(const GResponder* ancestor) const
{
    const GResponder* top = above();
    while (top != nullptr && top != ancestor)
        top = top->above();
    return top != nullptr;
}

// What few insertions and removals need stands apart, so that most save few registers.

/// Where `child` goes in front of `target`: behind the children of higher priority from there on.
/// -1 when `target` is no child.
[[gnu::noinline]] int GResponder::index_for(const GResponder* child, const GResponder* target) const
{
    int index = children_.index_of(target);
    if (index == children_.count())
        return -1;
    if ((child->state_ & state_keep_order) != 0)
        return index;
    const unsigned short priority = child->Priority();
    while (index < children_.count() && children_[index]->Priority() > priority)
        ++index;
    return index;
}

/// For a child that has come to `index`.
inline void GResponder::settle(int index, GResponder* child)
{
    child->place_ = children_.place_at(index);
    if (child->extras_ != nullptr || child->children_.count() > 0)
        drop_currents(child);
    child->owner_ = this;
    child->stop_borrowing(kOwner);
}

inline void GResponder::place(int index, GResponder* child)
{
    if (borrows(kChildren))
        own_children();
    children_.insert_at(index, child);
    settle(index, child);
}

/// False when `target` is no child.
[[gnu::noinline]] bool GResponder::place_before(GResponder* target, GResponder* child)
{
    const int index = target == nullptr ? children_.count() : index_for(child, target);
    if (index >= 0)
        place(index, child);
    return index >= 0;
}

int GResponder::insert_to_list(GResponder* child, GResponder* target, unsigned char announce)
{
    if (!takes_in(child))
        return 0;
    if (target == nullptr && !borrows(kChildren) && children_.append_in_room(child))
        settle(children_.count() - 1, child);
    else if (!place_before(target, child))
        return 0;
    if (announce != 0) {
        child->set_state(state_inserted, 1);
        if ((state_ & state_exposed) != 0)
            child->set_state(state_exposed, 1);
    }
    return 1;
}

/// What a child that comes here can't stay, or have, as a current one.
[[gnu::noinline]] void GResponder::drop_currents(GResponder* child)
{
    GResponder* const holder = child->current_of();
    if (holder != nullptr && holder != this)
        holder->hold_current(nullptr);  // its former owner's
    drop_circular_current(child);
}

/// The top of the tree that this responder stands in.
const GResponder* GResponder::root() const
{
    const GResponder* top = this;
    while (const GResponder* owner = top->above())
        top = owner;
    return top;
}

/// A child that was removed, and stands alone since, may still be the current one of its former
/// owner. With `child` in this tree, the path of current children must not lead round: from each
/// tree to the one where its root is current, none of these may be that of `child`.
void GResponder::drop_circular_current(const GResponder* child)
{
    const GResponder* top = root();
    while (GResponder* const holder = top->current_of()) {
        top = holder->root();
        if (top == child) {
            holder->hold_current(nullptr);
            return;
        }
    }
}

void GResponder::remove(GResponder* child)
{
    silent_remove(child);
}

bool GResponder::silent_remove(GResponder* child)
{
    if (child == nullptr || child->owner_ != this)
        return false;
    if ((state_ & state_exposed) != 0)
        child->set_state(state_exposed, 0);
    child->set_state(state_inserted, 0);
    return delete_from_list(child);
}

/// Takes a child out of the list, wherever it stands there, and tells nobody.
bool GResponder::delete_from_list(GResponder* child)
{
    if (child == nullptr || child->owner_ != this)
        return false;
    if (borrows(kChildren))
        own_children();
    if (!children_.remove(child, child->place_))
        return false;
    if (has_doubles_)
        remove_doubles(child);
    child->owner_ = nullptr;
    return true;
}

[[gnu::noinline]] void GResponder::remove_doubles(const GResponder* child)
{
    for (int index = 0; (index = children_.index_of(child)) < children_.count();)
        children_.remove_at(index);
}

GResponder& GResponder::operator+(GResponder* child)
{
    insert(child);
    return *this;
}

GResponder& GResponder::operator-(GResponder* child)
{
    remove(child);
    return *this;
}

void GResponder::rearrange(GResponder* child, GResponder* target)
{
    const int count = children_.count();
    const int from = children_.index_of(child);
    const int to = target == nullptr ? 0 : children_.index_of(target);
    if (child == nullptr || from == count || to == count || to == from)
        return;
    if (borrows(kChildren))
        own_children();
    if (to < from) {
        children_.move_entries(to + 1, to, from - to);
        children_.put_at(to, child);
        return;
    }
    std::vector<GResponder*> before;
    for (int index = 0; index < count; ++index)
        before.push_back(children_[index]);
    children_.move_entries(to, to + 1, std::min(to - from, count - to - 1));
    children_.put_at(to, child);
    has_doubles_ = true;
    for (GResponder* former : before) {
        if (former->owner_ == this && children_.index_of(former) == count)
            former->owner_ = nullptr;
    }
}

unsigned char GResponder::makeFirst()
{
    GResponder* const owner = owner_;
    if (owner == nullptr)
        return 0;
    const int index = owner->index_of_own(this);
    if (index == 0 || index == owner->children_.count() ||
        owner->children_[index - 1]->Priority() > Priority())
        return 0;
    GResponder* const front = owner->first();
    const std::uint32_t shown = state_ & static_cast<std::uint32_t>(state_shown);
    state_ &= ~shown;
    owner->delete_from_list(this);
    owner->insert_to_list(this, front, 0);
    if (owner_ == nullptr && index <= owner->children_.count())
        owner->place(index, this);  // refused by an override: back to where it was
    state_ |= shown;
    return 1;
}

namespace {

// What the callbacks of a sort that is running work on.
using Compare = short (*)(const GResponder*, const GResponder*);
constinit Compare g_compare = nullptr;
constinit zmr::ChildList* g_sorted = nullptr;

short compare_indices(long index1, long index2)
{
    return g_compare((*g_sorted)[static_cast<int>(index1)], (*g_sorted)[static_cast<int>(index2)]);
}

void swap_indices(long index1, long index2)
{
    g_sorted->swap(static_cast<int>(index1), static_cast<int>(index2));
}

}  // namespace

void GResponder::sort(short (*compare)(const GResponder*, const GResponder*))
{
    if (borrows(kChildren))
        own_children();
    g_compare = compare;
    g_sorted = &children_;
    MSort::HSort(children_.count(), compare_indices, swap_indices);
    reset_current();
}

void GResponder::simply_assign_current(GResponder* child)
{
    if (child == nullptr || (child->owner_ == this && contains(child) != 0))
        hold_current(child);
}

/// Both sides know of each other, so that the pointer goes when the child ends, also after its
/// removal. A child that was removed elsewhere and is current there ceases to be.
void GResponder::hold_current(GResponder* child)
{
    if (child == nullptr && extras_ == nullptr)
        return;
    Extras* const of_child = child != nullptr ? &child->own_extras() : nullptr;
    GResponder*& current = own_extras().current;
    if (current != nullptr && !borrows(kCurrent))
        current->extras_->current_of = nullptr;
    stop_borrowing(kCurrent);
    current = child;
    if (child == nullptr)
        return;
    if (of_child->current_of != nullptr)
        of_child->current_of->extras_->current = nullptr;
    of_child->current_of = this;
}

void GResponder::set_current(GResponder* child)
{
    GResponder* const former = get_current();
    if (child == former)
        return;
    if (child != nullptr && ((child->options_ & option_selectable) == 0 || !child->is_shown()))
        return;
    focus_view(former, 0);
    select_view(get_current(), 0);
    select_view(child, 1);
    focus_view(child, 1);
    simply_assign_current(child);
}

void GResponder::select_view(GResponder* child, unsigned char on)
{
    if (child != nullptr)
        child->set_state(state_selected, on);
}

void GResponder::focus_view(GResponder* child, unsigned char on)
{
    if (child != nullptr && (state_ & state_focused) != 0)
        child->set_state(state_focused, on);
}

void GResponder::reset_current()
{
    set_current(first_match(state_shown, option_selectable));
}
