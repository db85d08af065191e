#pragma once

#include "foundation/GStreamable.h"
#include "foundation/Immortal.h"
#include "foundation/PooledObject.h"
#include "graphics/RGB_Color.h"
#include "responder/ChildList.h"
#include "responder/GCommandSet.h"
#include "responder/GEvent.h"
#include "responder/GIdler.h"

#include <cstdint>
#include <memory>

class GBehaviour;
class GCollection;
class PaletteCollection;
struct NotificationLink;

/// A node of the tree of objects that receive events: it has an owner, an ordered list of children
/// that it owns, and one child marked as current. It carries behaviours, states, options, a regime,
/// colours and a list of those who hear of its changes. Children stand in descending priority, the
/// latest first among equals.
///
/// Created detached; it enters a tree by an insertion and leaves it by remove, or when it ends by
/// GStreamable::destroy, which ends its children first. A class whose objects are deleted otherwise
/// calls shut_down in its destructor. docs/events.md tells how events pass. User-interface thread.
///
/// A bare one takes 72 bytes. Behaviours, label, palette, receivers of notifications and the
/// current child, on both sides of it, stand in a record of their own that is made at the first
/// need; a list of children is a block of its own.
class ZMR_GV_API GResponder : public GStreamable,
                              private zmr::ListPlace,
                              public GIdler,
                              public zmr::PooledObject {
    G_DECLARE_CLASS(GResponder)
    using NotBuiltByName = GResponder;

public:
    // Bits of the state. Those without a telling name are the derived classes'.
    static constexpr unsigned long state_shown = 0x0001;     ///< Wants to be shown.
    static constexpr unsigned long state_inserted = 0x0004;  ///< In an owner's list, announced.
    static constexpr unsigned long state_stored_8 = 0x0008;
    static constexpr unsigned long state_inherited_10 = 0x0010;
    static constexpr unsigned long state_selected = 0x0020;  ///< Selected within its owner.
    static constexpr unsigned long state_focused = 0x0040;   ///< On the focus path.
    static constexpr unsigned long state_inherited_80 = 0x0080;
    static constexpr unsigned long state_disabled = 0x0100;    ///< Refuses input events.
    static constexpr unsigned long state_keep_order = 0x0200;  ///< Inserted where it is told.
    static constexpr unsigned long state_stored_400 = 0x0400;
    static constexpr unsigned long state_exposed = 0x0800;      ///< Attached to an exposed tree.
    static constexpr unsigned long state_visible = 0x1000;      ///< Shown, exposed, owner visible.
    static constexpr unsigned long state_stored_mask = 0x0709;  ///< What copies and streams keep.

    // Bits of the options; the others are the derived classes'.
    static constexpr unsigned long option_selectable = 0x0001;  ///< May become current.
    static constexpr unsigned long option_to_front = 0x0002;  ///< Selecting moves it to the front.
    static constexpr unsigned long option_pass_click = 0x0004;  ///< A press that selects goes on.
    static constexpr unsigned long option_idle_when_exposed = 0x0800;
    static constexpr unsigned long option_high_priority = 0x2000;

    GResponder();
    /// Detached: label, regime, options, palette, the stored bits of the state and copies of the
    /// behaviours that are to be written. No children, no notifications.
    GResponder(const GResponder& other);
    /// Takes over all fields, pointers included: from then on this one borrows the other's arrays,
    /// frees nothing of them, and takes a copy of its own of what it changes. For derived classes
    /// that assign whole objects; not for responders in a tree.
    GResponder& operator=(const GResponder& other);
    /// Destroys behaviours and notifications. It does not end the children: see shut_down.
    ~GResponder() override;

    /// Ends the children, first child first, and the behaviours, leaves the owner, and drops the
    /// notifications.
    void shut_down() override;

    // Points to override. Their order is part of the interface.

    /// Handles an event that was sent here: a press may select this responder, and kinds outside
    /// GEvent::event_input_mask go on to the children, the current one first.
    virtual void handle_event(GEvent& event);
    /// Called for positional kinds in front of handle_event, unless a behaviour has taken them.
    virtual void mouse_ran_round(const GEvent& event);
    /// Whether `regime` suits this responder and all below.
    virtual unsigned char valid(unsigned long regime);
    /// The band among the siblings: higher ones stand in front.
    virtual unsigned short Priority() const;
    /// Sets or clears bits of the state and what follows from it here and below.
    virtual void set_state(unsigned long bits, unsigned char on);
    /// Moves to the front, if its options say so, and becomes the owner's current child.
    virtual void select();
    /// The colour of a palette index: from the nearest palette toward the root that has it, else
    /// the root's default.
    virtual RGB_Color get_palette_entry(long index);
    /// A transformation of colours; get_pal applies that of the responder that was asked.
    virtual RGB_Color get_color(RGB_Color color);
    virtual RGB_Color get_default_color(long index);
    // Two flags that are kept and streamed for derived classes.
    virtual bool use_parent_color();
    virtual void set_use_parent_color(bool use);
    virtual bool use_parent_select_color();
    virtual void set_use_parent_select_color(bool use);
    virtual unsigned long get_regime();
    /// Takes the behaviour over, at the head of the chain. One that is attached leaves its former
    /// place. Null is ignored.
    virtual void attach_behaviour(GBehaviour* behaviour);
    /// Gives the behaviour back to the caller. One that is not attached here is ignored.
    virtual void detach_behaviour(GBehaviour* behaviour);
    /// The label, or null; borrowed until the next set_label.
    virtual const char* get_label();
    /// Copies `label`; null for none.
    virtual void set_label(const char* label);
    /// Sends the events that were asked for by notify_when_modified, in that order. `info_long` is
    /// the address of this GResponder. Linear in the receivers; allocates nothing.
    virtual void object_modified();
    /// 1, or 0 with nothing changed: see valid_inserted_pointer.
    virtual int insert_before(GResponder* child, GResponder* target);
    virtual void remove(GResponder* child);
    /// Sorts the children, not keeping the order of equals, and then calls reset_current. `compare`
    /// must not sort another responder.
    virtual void sort(short (*compare)(const GResponder*, const GResponder*));
    /// Makes a shown and selectable child, or none, the current one; others are ignored. The first
    /// time both take some memory.
    virtual void set_current(GResponder* child);
    /// The end of the path of current children that starts here.
    virtual GResponder* topmost();
    /// Moves in front of the siblings of its band. 0 when it is the first there already.
    virtual unsigned char makeFirst();

protected:
    /// Stores the regime here and, from the last child to the first, below.
    virtual void set_regime(unsigned long regime);
    /// The one insertion. Unless `child` has state_keep_order it goes behind those of higher
    /// priority that stand from `target` on. 1, or 0 with nothing changed.
    virtual int insert_to_list(GResponder* child, GResponder* target, unsigned char announce);

public:
    /// Nothing here.
    void idle() override;

    // The tree.
    [[nodiscard]] GResponder* get_owner() const { return owner_; }
    /// The current child. One that was removed stays current until another is set, it ends or gets
    /// another owner, or keeping it would lead round in a circle.
    [[nodiscard]] GResponder* get_current() const
    {
        return extras_ != nullptr ? extras_->current : nullptr;
    }
    [[nodiscard]] short getCount() const { return static_cast<short>(children_.count()); }
    /// Null outside the list.
    [[nodiscard]] GResponder* at(short index) const
    {
        return index >= 0 && index < children_.count() ? children_[index] : nullptr;
    }
    [[nodiscard]] GResponder* first() const { return at(0); }
    [[nodiscard]] GResponder* last() const { return at(static_cast<short>(getCount() - 1)); }
    /// The count of children when it is none. Linear.
    [[nodiscard]] short index_of(const GResponder* child) const
    {
        return static_cast<short>(children_.index_of(child));
    }
    [[nodiscard]] unsigned char contains(const GResponder* child) const
    {
        return index_of(child) < getCount() ? 1 : 0;
    }
    /// Whether `ancestor` stands above this responder; true for null.
    [[nodiscard]] unsigned char isSubobject(const GResponder* ancestor) const;
    // The neighbours of a child, round the list; null when it is none.
    [[nodiscard]] GResponder* next(const GResponder* child) const;
    [[nodiscard]] GResponder* prev(const GResponder* child) const;
    // The neighbours of this responder in its owner, round the list; null for a root. Walking over
    // the siblings so is linear in all, also in a list of thousands.
    [[nodiscard]] GResponder* next() const;
    [[nodiscard]] GResponder* prev() const;
    // The same, but null at the end and at the front of the list.
    [[nodiscard]] GResponder* next_view() const;
    [[nodiscard]] GResponder* prev_view() const;
    // The children beside an index; null when one of the two is outside the list.
    [[nodiscard]] GResponder* next_object(short index) const;
    [[nodiscard]] GResponder* prev_object(short index) const;
    /// The first responder of that label, depth first, this one included. Null asks for one without
    /// a label.
    [[nodiscard]] GResponder* find_sub_object(const char* name);
    /// The first child that passes, from the last one to the first.
    GResponder* first_that(unsigned char (*test)(GResponder*, void*), void* argument) const;
    /// The first child with all these bits, from the first one to the last.
    [[nodiscard]] GResponder* first_match(unsigned long state_bits,
                                          unsigned long option_bits) const;

    /// In front of the first child, as far as priority allows. At either end of the list an
    /// insertion costs the same for any number of children, elsewhere up to a move of half of them.
    void insert(GResponder* child);
    int insert_after(GResponder* child, GResponder* target);
    /// An index outside the list inserts at the nearer end.
    int at_insert(short index, GResponder* child);
    /// As insert, but not through an overridden insert_before.
    bool silent_insert(GResponder* child);
    /// As remove, but not through an overridden remove. False when `child` is none of this one's.
    /// Linear: the children behind or in front of it close up.
    bool silent_remove(GResponder* child);
    GResponder& operator+(GResponder* child);
    GResponder& operator-(GResponder* child);
    /// Moves a child toward the front, to just in front of `target`, null for the very front. Not
    /// toward the back: that overwrites the child at `target`, and what is lost from the list so
    /// has no owner afterwards.
    void rearrange(GResponder* child, GResponder* target);
    /// Ends all children, first child first.
    void destroy_all();
    /// Makes the first child that is shown and selectable the current one, or none.
    void reset_current();

    // Events.
    /// Sends an event to `receiver`, which may be null, and returns who cleared it, null when
    /// nobody did. Responders and behaviours may end on the way.
    static GResponder* Message(GResponder* receiver, GEvent& event);
    static GResponder* Message(GResponder* receiver, GEvent::GEventType what, unsigned long word,
                               long value);
    static GResponder* Message(GResponder* receiver, GEvent::GEventType what, unsigned long word,
                               int value)
    {
        return Message(receiver, what, word, static_cast<long>(value));
    }
    static GResponder* Message(GResponder* receiver, GEvent::GEventType what, unsigned long word,
                               void* value);
    // The same under its other name.
    static GResponder* message(GResponder* receiver, GEvent& event)
    {
        return Message(receiver, event);
    }
    static GResponder* message(GResponder* receiver, GEvent::GEventType what, unsigned long word,
                               long value)
    {
        return Message(receiver, what, word, value);
    }
    static GResponder* message(GResponder* receiver, GEvent::GEventType what, unsigned long word,
                               int value)
    {
        return Message(receiver, what, word, value);
    }
    static GResponder* message(GResponder* receiver, GEvent::GEventType what, unsigned long word,
                               void* value)
    {
        return Message(receiver, what, word, value);
    }
    /// Takes the event: nobody behind handles it. An event of kind event_uncancellable, or one that
    /// was cleared before, stays as it is.
    void clear_event(GEvent& event);

    // Behaviours.
    void attach(GBehaviour* behaviour) { attach_behaviour(behaviour); }
    void detach(GBehaviour* behaviour) { detach_behaviour(behaviour); }
    [[nodiscard]] GBehaviour* get_behaviours() const
    {
        return extras_ != nullptr ? extras_->behaviours : nullptr;
    }
    void destroy_all_behaviours();
    void write_behaviours(opstream& out);
    void read_behaviours(ipstream& in);

    // State, options, regime.
    [[nodiscard]] unsigned long get_state() const { return state_; }
    [[nodiscard]] bool get_state(unsigned long bits) const { return (state_ & bits) == bits; }
    [[nodiscard]] bool is_shown() const { return (state_ & state_shown) != 0; }
    [[nodiscard]] bool is_disabled() const { return (state_ & state_disabled) != 0; }
    [[nodiscard]] bool exposed() const { return (state_ & state_exposed) != 0; }
    [[nodiscard]] bool is_exposed() const { return exposed(); }
    [[nodiscard]] bool is_visible() const { return (state_ & state_visible) != 0; }
    [[nodiscard]] unsigned long get_options() const { return options_; }
    void set_options(unsigned long bits, unsigned char on);
    /// Selects the next child behind the current one, or before it, that is shown, enabled and
    /// selectable; the current one itself when there is no other.
    void select_next(unsigned char forward);
    /// Asks the whole subtree by valid and then sets the regime in all of it; false, with nothing
    /// changed, when one refuses.
    bool change_regime(unsigned long regime);

    // Colours.
    [[nodiscard]] PaletteCollection* get_palette() const
    {
        return extras_ != nullptr ? extras_->palette : nullptr;
    }
    /// Takes `palette` over, which may be null.
    void set_palette(PaletteCollection* palette);
    void set_palette_entry(long index, const RGB_Color& color);
    void remove_palette_entry(long index);
    RGB_Color get_pal(long index) { return get_color(get_palette_entry(index)); }

    // Change notification.
    /// Asks for an event of `kind` with `word` to be sent to `receiver` by object_modified. The
    /// same three again, and null, are ignored. A receiver that ends drops out. Linear in the
    /// receivers that there are.
    void notify_when_modified(GResponder* receiver, GEvent::GEventType kind, unsigned long word);
    void cancel_notification(GResponder* receiver, GEvent::GEventType kind, unsigned long word);
    /// Puts the NotificationLinks of the living receivers in place of what `out` holds, which owns
    /// nothing then. Borrowed until the next change.
    void get_notification_receivers(GCollection& out) const;
    /// Drops the records of receivers that have ended.
    void pack_collection_of_notification_receivers();

    // The states of commands, one set for the process; nobody is told of a change.
    [[nodiscard]] static GCommandState GetCommandState(unsigned long id)
    {
        return (*commands_)[id];
    }
    static void SetCommandState(unsigned long id, GCommandState state);
    [[nodiscard]] static bool CommandEnabled(unsigned long id) { return commands_->enabled(id); }
    [[nodiscard]] static bool CommandSelected(unsigned long id)
    {
        return GetCommandState(id) == ::command_selected;
    }
    [[nodiscard]] static bool CommandChecked(unsigned long id)
    {
        return GetCommandState(id) == ::command_checked;
    }
    static void DisableCommand(unsigned long id) { SetCommandState(id, ::command_disabled); }
    static void EnableCommand(unsigned long id) { SetCommandState(id, ::command_enabled); }
    static void EnableCommand(unsigned long id, unsigned char on)
    {
        SetCommandState(id, on != 0 ? ::command_enabled : ::command_disabled);
    }
    /// Off enables the command, whatever it was.
    static void SelectCommand(unsigned long id, unsigned char on)
    {
        SetCommandState(id, on != 0 ? ::command_selected : ::command_enabled);
    }
    /// Off enables the command, whatever it was.
    static void CheckCommand(unsigned long id, unsigned char on)
    {
        SetCommandState(id, on != 0 ? ::command_checked : ::command_enabled);
    }
    static void GetCommands(GCommandSet& out);
    static void SetCommands(const GCommandSet& commands);
    /// Whether any state was ever changed; it never goes back.
    [[nodiscard]] static unsigned char CommandSetChanged() { return command_set_changed_ ? 1 : 0; }

    // The same under their other names.
    [[nodiscard]] static GCommandState get_command_state(unsigned long id)
    {
        return GetCommandState(id);
    }
    static void set_command_state(unsigned long id, GCommandState state)
    {
        SetCommandState(id, state);
    }
    [[nodiscard]] static bool command_enabled(unsigned long id) { return CommandEnabled(id); }
    [[nodiscard]] static bool command_selected(unsigned long id) { return CommandSelected(id); }
    [[nodiscard]] static bool command_checked(unsigned long id) { return CommandChecked(id); }
    static void disable_command(unsigned long id) { DisableCommand(id); }
    static void enable_command(unsigned long id) { EnableCommand(id); }
    static void enable_command(unsigned long id, unsigned char on) { EnableCommand(id, on); }
    static void select_command(unsigned long id, unsigned char on) { SelectCommand(id, on); }
    static void check_command(unsigned long id, unsigned char on) { CheckCommand(id, on); }
    static void get_commands(GCommandSet& out) { GetCommands(out); }
    static void set_commands(const GCommandSet& commands) { SetCommands(commands); }

    static constexpr unsigned char kVersion = 7;  ///< Of old_write.

protected:
    /// For objects that `read` will fill.
    explicit GResponder(StreamableInit) : GResponder() {}

    /// 1 when `child` is a responder without an owner, not this one nor above it, `target` is null
    /// or a child, and there is room (ChildList::kMaxCount).
    int valid_inserted_pointer(GResponder* child, GResponder* target);
    /// Stores null or a child as the current one and tells nobody; others are ignored.
    void simply_assign_current(GResponder* child);

    // Building blocks for `read` and `write` of derived classes; docs/responder-stream.md tells
    // the bytes.
    void old_write(opstream& out);
    /// Reads all versions in place of behaviours, label, notifications and palette.
    void old_read(ipstream& in);
    void write_subobjects(opstream& out);
    /// Reads children in place of the present ones. What is no responder, or has an owner already,
    /// is left out.
    void read_subobjects(ipstream& in);
    /// Reads a link to a responder; one to the writer itself gives null.
    [[nodiscard]] static GResponder* read_linked_object(ipstream& in);
    /// Makes the next GView that is read take its children also from data of version 0.
    [[nodiscard]] static bool ForceReadSubobjects();
    static void ForceReadSubobjects(bool force);

private:
    friend class GBehaviour;
    struct PlainFields {};

    /// What most responders are without.
    struct Extras {
        GBehaviour* behaviours = nullptr;  ///< Head of the chain.
        GResponder* current = nullptr;
        GResponder* current_of = nullptr;  ///< Whose `current` this one is.
        char* label = nullptr;
        GCollection* receivers = nullptr;  ///< NotificationLinks; made at the first need.
        PaletteCollection* palette = nullptr;
    };

    // What another responder owns, by operator=: bits of `borrowed_`.
    static constexpr unsigned char kChildren = 0x01;
    static constexpr unsigned char kBehaviours = 0x02;
    static constexpr unsigned char kLabel = 0x04;
    static constexpr unsigned char kReceivers = 0x08;
    static constexpr unsigned char kPalette = 0x10;
    static constexpr unsigned char kCurrent = 0x20;
    static constexpr unsigned char kOwner = 0x40;

    GResponder(const GResponder& other, PlainFields);
    void copy_behaviours(GBehaviour* head);
    void release_all();
    void release_extras();
    /// Makes them at the first need. Throws std::bad_alloc.
    Extras& own_extras();
    [[nodiscard]] GCollection* receivers() const
    {
        return extras_ != nullptr ? extras_->receivers : nullptr;
    }
    [[nodiscard]] GResponder* current_of() const
    {
        return extras_ != nullptr ? extras_->current_of : nullptr;
    }
    [[nodiscard]] bool borrows(unsigned char what) const { return (borrowed_ & what) != 0; }
    void stop_borrowing(unsigned char what)
    {
        borrowed_ = static_cast<unsigned char>(borrowed_ & ~what);
    }
    void own_children();
    void own_behaviours();
    void own_receivers();
    void own_palette();

    [[nodiscard]] bool is_above(const GResponder* other) const;
    [[nodiscard]] bool takes_in(const GResponder* child) const;
    [[nodiscard]] int index_for(const GResponder* child, const GResponder* target) const;
    [[nodiscard]] bool stands_below(const GResponder* ancestor) const;
    [[nodiscard]] const GResponder* above() const;
    [[nodiscard]] const GResponder* root() const;
    void drop_currents(GResponder* child);
    void drop_circular_current(const GResponder* child);
    void place(int index, GResponder* child);
    void settle(int index, GResponder* child);
    [[nodiscard]] int index_of_own(const GResponder* child) const;
    [[nodiscard]] GResponder* behind(int index) const;
    [[nodiscard]] GResponder* before(int index) const;
    [[nodiscard]] bool place_before(GResponder* target, GResponder* child);
    bool delete_from_list(GResponder* child);
    void remove_doubles(const GResponder* child);
    void hold_current(GResponder* child);
    void select_view(GResponder* child, unsigned char on);
    void focus_view(GResponder* child, unsigned char on);
    void change_state(std::uint32_t bits, unsigned char on);
    void follow_state(std::uint32_t bits, unsigned char on);
    void pass_state_on(std::uint32_t bits, unsigned char on);
    void show_by_owner();
    void unlink_behaviour(GBehaviour* behaviour);
    void set_behaviours(GBehaviour* head);

    /// Whether the event passes nothing on its way to handle_event here.
    [[nodiscard]] bool takes_directly(const GEvent& event) const
    {
        return (event.what & GEvent::event_input_mask) == 0 && !has_behaviours_;
    }
    void dispatch_by_behaviours(GEvent& event);
    void broadcast(GEvent& event);
    void take_press(GEvent& event);

    NotificationLink* add_receiver(GResponder* receiver, GEvent::GEventType kind,
                                   std::uint32_t word);
    void destroy_linked_object_collection();
    void write_link(opstream& out, GResponder* target);
    [[nodiscard]] GResponder* read_link(ipstream& in);
    void take_label(char* label);
    void read_receivers(ipstream& in);

    static zmr::Immortal<GCommandSet> commands_;
    static bool command_set_changed_;

    // Few bytes, and what the way of an event through a leaf touches in front: the memory that a
    // large tree takes is what its events, walks and end cost.
    [[no_unique_address]] zmr::ChildList children_;
    bool has_behaviours_ : 1 = false;
    bool has_doubles_ : 1 = false;  ///< A child may stand in the list twice, by rearrange.
    bool parent_color_ : 1 = false;
    bool parent_select_color_ : 1 = false;
    /// The rest of the byte: a constructor writes it whole and reads nothing of new memory.
    [[maybe_unused]] unsigned char no_flags_ : 4 = 0;
    unsigned char borrowed_ = 0;
    std::uint32_t state_ = state_shown;
    std::uint32_t options_ = 0;
    std::uint32_t regime_ = 0;
    GResponder* owner_ = nullptr;
    std::unique_ptr<Extras> extras_;
};
