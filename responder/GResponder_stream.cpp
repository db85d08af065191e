#include "foundation/GCollection.h"
#include "foundation/GSUSInfo.h"
#include "foundation/GString.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "graphics/PaletteCollection.h"
#include "responder/GBehaviour.h"
#include "responder/GResponder.h"
#include "responder/HiddenOwner.h"
#include "responder/NotificationLink.h"
#include "responder/ReadingFrame.h"
#include "responder/StreamOwnership.h"

#include <algorithm>
#include <limits>
#include <set>
#include <tuple>

// Building blocks for the streams of derived classes; docs/responder-stream.md tells the bytes.

namespace {

constexpr unsigned char kLinkToObject = 0;
constexpr unsigned char kLinkToSelf = 4;

// What each version added, up to GResponder::kVersion.
constexpr unsigned char kWideRegime = 1;
constexpr unsigned char kWithLabel = 2;
constexpr unsigned char kWithReceivers = 3;
constexpr unsigned char kWithPalette = 4;
constexpr unsigned char kWideState = 5;
constexpr unsigned char kWithBasePart = 6;
constexpr unsigned char kWithColorFlags = 7;

constexpr std::uint32_t kStored = static_cast<std::uint32_t>(GResponder::state_stored_mask);
constexpr std::uint32_t kShown = static_cast<std::uint32_t>(GResponder::state_shown);

constinit bool g_force_read_subobjects = false;

std::uint32_t read_bits(ipstream& in, bool wide)
{
    return wide ? static_cast<std::uint32_t>(in.readDWord()) : in.readWord();
}

/// A count in 16 bits, signed: a negative one counts nothing.
int read_count(ipstream& in)
{
    return static_cast<std::int16_t>(in.readWord());
}

}  // namespace

void GResponder::write_behaviours(opstream& out)
{
    GBehaviour::WriteList(out, get_behaviours());
}

void GResponder::read_behaviours(ipstream& in)
{
    destroy_all_behaviours();
    set_behaviours(GBehaviour::ReadList(in));
    for (GBehaviour* behaviour = get_behaviours(); behaviour != nullptr;
         behaviour = behaviour->get_next())
        behaviour->attaching_to_object(this, 1);
}

void GResponder::old_write(opstream& out)
{
    out.writeByte(kVersion);
    GStreamable::write(out);
    out.writeDWord(state_ & kStored);
    out.writeDWord(options_);
    out.writeDWord(regime_);
    GBehaviour::WriteList(out, get_behaviours());
    out.writeString(extras_ != nullptr ? extras_->label : nullptr);
    const GCollection* told = receivers();
    const long links = told == nullptr ? 0 : told->count;
    // More would be read as a negative number.
    const long written = std::min<long>(links, std::numeric_limits<std::int16_t>::max());
    out.writeWord(static_cast<unsigned short>(written));
    for (long index = 0; index < written; ++index) {
        const auto* link = static_cast<const NotificationLink*>(told->items[index]);
        write_link(out, static_cast<GResponder*>(link->target));
        out.writeWord(static_cast<unsigned short>(link->event_kind & 0xFFFF));
        out.writeDWord(link->event_word);
    }
    out.writeStreamablePointer(get_palette(), false);
    out.writeDWord(parent_color_ ? 1 : 0);
    out.writeDWord(parent_select_color_ ? 1 : 0);
}

void GResponder::old_read(ipstream& in)
{
    const zmr::ReadingFrame frame(this);
    const std::uint32_t former_state = state_;
    destroy_linked_object_collection();
    const unsigned char version = in.readByte();
    if (version >= kWithBasePart)
        GStreamable::read(in);
    else
        GSUSInfo::InputScale(1.0);
    const std::uint32_t state = read_bits(in, version >= kWideState);
    options_ = read_bits(in, version >= kWideState);
    regime_ = read_bits(in, version >= kWideRegime);
    destroy_all_behaviours();
    set_behaviours(GBehaviour::ReadList(in));

    take_label(version >= kWithLabel ? in.readString() : nullptr);
    if (version >= kWithReceivers)
        read_receivers(in);
    if (version >= kWithPalette)
        set_palette(in.read_owned<PaletteCollection>());
    if (version >= kWithColorFlags) {
        parent_color_ = in.readDWord() != 0;
        parent_select_color_ = in.readDWord() != 0;
    }
    state_ = (state & kStored) | (former_state & ~kStored);
    if (((state ^ former_state) & kShown) != 0)
        state_ &= ~kShown;
    for (GBehaviour* behaviour = get_behaviours(); behaviour != nullptr;
         behaviour = behaviour->get_next())
        behaviour->attaching_to_object(this, 1);
}

/// As notify_when_modified for each record, without looking through all of them for each.
void GResponder::read_receivers(ipstream& in)
{
    std::set<std::tuple<GResponder*, std::uint32_t, std::uint32_t>> known;
    for (int left = read_count(in); left > 0; --left) {
        GResponder* receiver = read_link(in);
        const std::uint32_t kind = in.readWord();
        const auto word = static_cast<std::uint32_t>(in.readDWord());
        if (receiver != nullptr && known.emplace(receiver, kind, word).second)
            add_receiver(receiver, static_cast<GEvent::GEventType>(kind), word);
    }
}

void GResponder::write_link(opstream& out, GResponder* target)
{
    if (target == this) {
        out.writeByte(kLinkToSelf);
        return;
    }
    out.writeByte(kLinkToObject);
    out.writePointer(target);
}

GResponder* GResponder::read_link(ipstream& in)
{
    const unsigned char tag = in.readByte();
    if (tag == kLinkToObject)
        return in.read_pointer<GResponder>();
    return tag == kLinkToSelf ? this : nullptr;  // no other tag is written
}

GResponder* GResponder::read_linked_object(ipstream& in)
{
    return in.readByte() == kLinkToObject ? in.read_pointer<GResponder>() : nullptr;
}

void GResponder::write_subobjects(opstream& out)
{
    unsigned short written = 0;
    for (int index = 0; index < children_.count(); ++index)
        written = static_cast<unsigned short>(written + (children_[index]->shouldWrite() ? 1 : 0));
    out.writeWord(written);
    for (int index = children_.count() - 1; index >= 0; --index) {
        if (children_[index]->shouldWrite())
            out.writeStreamablePointer(children_[index], false);
    }
    out.writeByte(1);
    if (written == 0)
        return;
    // One that was removed is no part of this data.
    GResponder* const current = get_current();
    const bool written_current =
        current != nullptr && current->owner_ == this && current->shouldWrite();
    out.writeStreamablePointer(written_current ? current : nullptr, false);
}

void GResponder::read_subobjects(ipstream& in)
{
    const zmr::ReadingFrame frame(this);
    // No change of state goes up the tree meanwhile.
    const zmr::HiddenOwner hidden(this, owner_);
    hold_current(nullptr);
    destroy_all();
    const int count = read_count(in);
    for (int left = count; left > 0; --left) {
        auto* child = in.read_pointer<GResponder>();
        if (child == nullptr || child->owner_ != nullptr)
            continue;
        if (zmr::try_claim(in))
            insert(child);
        else if (child != this)
            static_cast<void>(zmr::ReadingFrame::Await(this, child));
    }
    const unsigned char tag = in.readByte();
    if (count != 0 || tag == 0) {
        auto* current = in.read_pointer<GResponder>();
        if (current == nullptr || current->owner_ == this ||
            !zmr::ReadingFrame::AwaitAsCurrent(this, current))
            set_current(current);
    }
    if (tag == 0)
        static_cast<void>(in.readByte());
}

bool GResponder::ForceReadSubobjects()
{
    return g_force_read_subobjects;
}

void GResponder::ForceReadSubobjects(bool force)
{
    g_force_read_subobjects = force;
}
