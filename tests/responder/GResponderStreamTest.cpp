#include "foundation/GCollection.h"
#include "foundation/GException.h"
#include "foundation/GSUSInfo.h"
#include "foundation/mpstream.h"
#include "graphics/PaletteCollection.h"
#include "responder/NotificationLink.h"
#include "tests/responder/TestResponders.h"

#include <gtest/gtest.h>

namespace {

constexpr RGB_Color kRed(255, 0, 0);

std::vector<unsigned char> bytes_of(const ompstream& out)
{
    return {out.bytes().begin(), out.bytes().end()};
}

std::vector<const NotificationLink*> links_of(const GResponder& responder)
{
    GCollection out(0, 4, 0);
    responder.get_notification_receivers(out);
    std::vector<const NotificationLink*> links;
    for (long index = 0; index < out.count; ++index)
        links.push_back(static_cast<const NotificationLink*>(out.at(index)));
    return links;
}

/// A responder's own part as an old program wrote it, field by field. The base part says a scale.
void write_version(ompstream& out, unsigned char version, std::uint32_t state,
                   PaletteCollection* palette)
{
    out.writeByte(version);
    if (version >= 6) {
        out.writeByte(1);
        out.writeDouble(4.0);
    }
    const auto bits = [&](bool wide, std::uint32_t value) {
        if (wide)
            out.writeDWord(value);
        else
            out.writeWord(static_cast<unsigned short>(value));
    };
    bits(version >= 5, state);
    bits(version >= 5, 0x92005);
    bits(version >= 1, 0x8000F00D);
    out.writeByte(2);  // one behaviour, of a class met for the first time
    out.writeString("GBehaviour");
    out.writeByte(3);
    out.writeByte(0);
    out.writeByte(2);
    out.writePointer(nullptr);
    out.writeDWord(0x77);
    if (version >= 2)
        out.writeString("old label");
    if (version >= 3) {
        out.writeWord(2);
        out.writeByte(4);  // to itself
        out.writeWord(0x10);
        out.writeDWord(0xAABBCCDD);
        out.writeByte(0);
        out.writePointer(nullptr);  // one that had ended
        out.writeWord(0x20);
        out.writeDWord(1);
    }
    if (version >= 4) {
        ompstream inner;
        palette->write(inner);
        out.writeByte(2);
        out.writeString("PaletteCollection");
        out.writeBytes(inner.bytes().data(), static_cast<long>(inner.bytes().size()));
    }
    if (version >= 7) {
        out.writeDWord(5);
        out.writeDWord(0);
    }
}

/// A stream of GView, field by field.
void write_view(ompstream& out, unsigned char version, bool with_children, bool with_font)
{
    PaletteCollection palette;
    write_version(out, 0, 1, &palette);
    out.writeByte(version);
    for (int side = 0; side < 4; ++side)
        out.writeWord(static_cast<unsigned short>(side));
    out.writeWord(0x1234);
    if (with_children) {
        out.writeWord(0);
        out.writeByte(1);
    }
    if (version == 2 || version == 3)
        out.writeString("dropped");
    if (version >= 3) {
        out.writeByte(with_font ? 1 : 0);
        if (with_font) {
            out.writeByte(9);
            out.writeString("a font");
            out.writeWord(1);
            out.writeWord(2);
        }
    }
}

/// Owner of streamed children with labels "a", "b", ... from first to last.
Ended<StreamedResponder> family(int children)
{
    auto owner = make<StreamedResponder>();
    for (int number = 0; number < children; ++number) {
        auto* child = new StreamedResponder;
        const char label[] = {static_cast<char>('a' + number), '\0'};
        child->set_label(label);
        child->set_options(GResponder::option_selectable, 1);
        owner->insert_before(child, nullptr);
    }
    return owner;
}

std::string labels_of(const GResponder& owner)
{
    std::string labels;
    for (short index = 0; index < owner.getCount(); ++index)
        labels += owner.at(index)->get_label();
    return labels;
}

/// What is read in place of `target`'s present children.
void copy_children(StreamedResponder& source, StreamedResponder& target)
{
    ompstream out;
    source.write_subobjects(out);
    impstream in(out.bytes());
    target.read_subobjects(in);
    EXPECT_EQ(in.remaining(), 0);
}

}  // namespace

TEST(ResponderStream, EveryVersion_IsReadFieldByField)
{
    for (unsigned char version = 0; version <= 7; ++version) {
        SCOPED_TRACE(int{version});
        PaletteCollection palette;
        palette.add_entry(8, kRed);
        ompstream out;
        write_version(out, version, 0x0701, &palette);
        impstream in(out.bytes());
        StreamedResponder target;
        target.set_label("present");
        target.set_palette_entry(8, RGB_Color(1, 1, 1));
        target.attach(new TestBehaviour("present"));
        target.set_use_parent_select_color(true);
        GSUSInfo::InputScale(3.0);

        target.old_read(in);

        EXPECT_EQ(in.remaining(), 0);
        EXPECT_EQ(GSUSInfo::GetInputScale(), 1.0);  // that of the part read last
        EXPECT_EQ(target.get_state(), 0x701UL);
        EXPECT_EQ(target.get_options(), version >= 5 ? 0x92005UL : 0x2005UL);
        EXPECT_EQ(target.get_regime(), version >= 1 ? 0x8000F00DUL : 0xF00DUL);
        ASSERT_NE(target.get_behaviours(), nullptr);
        EXPECT_EQ(target.get_behaviours()->user_word, 0x77U);
        EXPECT_EQ(target.get_behaviours()->get_next(), nullptr);
        if (version >= 2)
            EXPECT_STREQ(target.get_label(), "old label");
        else
            EXPECT_EQ(target.get_label(), nullptr);
        const auto links = links_of(target);
        ASSERT_EQ(links.size(), version >= 3 ? 1U : 0U);
        if (version >= 3) {
            EXPECT_EQ(links[0]->target, static_cast<GResponder*>(&target));
            EXPECT_EQ(links[0]->event_kind, kBroadcast);
            EXPECT_EQ(links[0]->event_word, 0xAABBCCDDU);
        }
        EXPECT_EQ(target.get_pal(8), version >= 4 ? kRed : RGB_Color(1, 1, 1));
        EXPECT_EQ(target.use_parent_color(), version >= 7);
        EXPECT_EQ(target.use_parent_select_color(), version < 7);
    }
}

TEST(ResponderStream, Version0_HasARegimeOf16Bits)
{
    ompstream out;
    write_version(out, 0, 1, nullptr);
    impstream in(out.bytes());
    StreamedResponder target;

    target.old_read(in);

    EXPECT_EQ(target.get_regime(), 0xF00DUL);
}

TEST(ResponderStream, BehavioursRead_AreAttached)
{
    Log log;
    StreamedResponder source;
    source.attach(new TestBehaviour("b"));
    ompstream out;
    source.old_write(out);
    impstream in(out.bytes());
    StreamedResponder target;
    target.old_read(in);

    ASSERT_NE(target.get_behaviours(), nullptr);
    EXPECT_EQ(static_cast<TestBehaviour*>(target.get_behaviours())->host(), &target);
}

TEST(ResponderStream, ShownInTheStreamOrInTheObjectOnly_BecomesHidden)
{
    for (const bool stream_shown : {false, true}) {
        ompstream out;
        StreamedResponder source;
        source.set_state(GResponder::state_shown, stream_shown ? 1 : 0);
        source.old_write(out);
        for (const bool object_shown : {false, true}) {
            impstream in(out.bytes());
            StreamedResponder target;
            target.set_state(GResponder::state_shown, object_shown ? 1 : 0);
            target.old_read(in);
            EXPECT_EQ(target.is_shown(), stream_shown && object_shown);
        }
    }
}

TEST(ResponderStream, StoredBitsComeFromTheStream_OthersStayTheObjects)
{
    PaletteCollection palette;
    ompstream out;
    write_version(out, 5, 0xFFFFFFFF & ~0x200U, &palette);
    impstream in(out.bytes());
    StreamedResponder target;
    target.set_state(GResponder::state_inserted | GResponder::state_keep_order | 0x10000, 1);

    target.old_read(in);

    EXPECT_EQ(target.get_state(), 0x10000UL | 0x4UL | 0x509UL);
}

TEST(ResponderStream, Version6_KeepsTheParentColourFlags)
{
    PaletteCollection palette;
    ompstream out;
    write_version(out, 6, 1, &palette);
    impstream in(out.bytes());
    StreamedResponder target;
    target.set_use_parent_color(true);

    target.old_read(in);

    EXPECT_TRUE(target.use_parent_color());
    EXPECT_FALSE(target.use_parent_select_color());
}

TEST(ResponderStream, Write_IsVersion7FieldByField)
{
    StreamedResponder responder;
    responder.set_state(0xFFFFU & ~GResponder::state_exposed & ~GResponder::state_visible, 1);
    responder.set_options(0x01020304, 1);
    responder.set_label("L");
    responder.notify_when_modified(&responder, static_cast<GEvent::GEventType>(0x56781234), 9);
    responder.set_use_parent_color(true);
    ompstream out;
    responder.old_write(out);

    const std::vector<unsigned char> expected = {
        7,    0,                          // version, base part
        0x09, 0x07, 0,    0,              // the stored bits of the state
        0x04, 0x03, 0x02, 0x01,           // options
        0,    0,    0,    0,              // regime
        0,                                // no behaviours
        1,    'L',                        // label
        1,    0,                          // one link
        4,    0x34, 0x12, 9,    0, 0, 0,  // to itself, the low 16 bits of its kind, its word
        0,                                // no palette
        1,    0,    0,    0,              // parent colour
        0,    0,    0,    0};
    EXPECT_EQ(bytes_of(out), expected);
}

TEST(ResponderStream, RoundTrip_BringsAllBack)
{
    auto source = family(3);
    source->at(0)->set_state(GResponder::state_disabled, 1);
    source->set_palette_entry(2, kRed);
    source->attach(new TestBehaviour("b"));
    source->set_use_parent_select_color(true);
    source->change_regime(5);
    source->set_current(source->at(1));
    // Two children tell each other and their owner.
    source->at(0)->notify_when_modified(source->at(2), kBroadcast, 1);
    source->at(2)->notify_when_modified(source->at(0), kBroadcast, 2);
    source->at(1)->notify_when_modified(source.get(), kBroadcast, 3);
    ompstream out;
    out.writePointer(source.get());
    impstream in(out.bytes());

    Ended<StreamedResponder> copy(in.read_pointer<StreamedResponder>());

    EXPECT_EQ(in.remaining(), 0);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(labels_of(*copy), "abc");
    EXPECT_EQ(copy->get_current(), copy->at(1));
    EXPECT_TRUE(copy->at(1)->get_state(GResponder::state_selected));
    EXPECT_TRUE(copy->at(0)->is_disabled());
    EXPECT_EQ(copy->at(2)->get_regime(), 5UL);
    EXPECT_EQ(copy->get_pal(2), kRed);
    EXPECT_NE(copy->get_behaviours(), nullptr);
    EXPECT_TRUE(copy->use_parent_select_color());
    ASSERT_EQ(links_of(*copy->at(0)).size(), 1U);
    EXPECT_EQ(links_of(*copy->at(0))[0]->target, copy->at(2));
    EXPECT_EQ(links_of(*copy->at(2))[0]->target, copy->at(0));
    EXPECT_EQ(links_of(*copy->at(1))[0]->target, static_cast<GResponder*>(copy.get()));
}

TEST(ResponderStream, ChildThatIsReadBeforeItsOwner_IsBackInItsPlace)
{
    // "a" is written first and tells "y", which is so written before its owner "b"; "y" tells "b",
    // which is so written within "y".
    auto source = make<StreamedResponder>();
    auto* b = new StreamedResponder;
    b->set_label("b");
    source->insert_before(b, nullptr);
    auto* a = new StreamedResponder;
    a->set_label("a");
    source->insert_before(a, nullptr);
    for (const char* label : {"x", "y", "z"}) {
        auto* child = new StreamedResponder;
        child->set_label(label);
        child->set_options(GResponder::option_selectable, 1);
        b->insert_before(child, nullptr);
    }
    auto* y = b->at(1);
    b->set_current(y);
    a->notify_when_modified(y, kBroadcast, 1);
    y->notify_when_modified(b, kBroadcast, 2);
    ompstream out;
    out.writePointer(source.get());
    impstream in(out.bytes());

    Ended<StreamedResponder> copy(in.read_pointer<StreamedResponder>());

    EXPECT_EQ(in.remaining(), 0);
    ASSERT_EQ(labels_of(*copy), "ba");
    ASSERT_EQ(labels_of(*copy->at(0)), "xyz");
    EXPECT_EQ(copy->at(0)->get_current(), copy->at(0)->at(1));
    EXPECT_TRUE(copy->at(0)->at(1)->get_state(GResponder::state_inserted));
    EXPECT_TRUE(copy->at(0)->at(1)->get_state(GResponder::state_selected));
    EXPECT_EQ(links_of(*copy->at(1))[0]->target, copy->at(0)->at(1));
    EXPECT_EQ(links_of(*copy->at(0)->at(1))[0]->target, copy->at(0));
}

TEST(ResponderStream, DeadReceivers_AreWrittenAsNullAndDropOut)
{
    StreamedResponder source;
    auto* dead = new StreamedResponder;
    source.notify_when_modified(dead, kBroadcast, 1);
    delete dead;
    ompstream out;
    source.old_write(out);
    impstream in(out.bytes());
    StreamedResponder target;

    target.old_read(in);

    EXPECT_EQ(in.remaining(), 0);
    EXPECT_TRUE(links_of(target).empty());
}

TEST(ResponderStream, SameTripleTwiceInTheStream_IsOneRecord)
{
    ompstream out;
    out.writeByte(3);
    for (int word = 0; word < 2; ++word)
        out.writeWord(0);
    out.writeDWord(0);
    out.writePointer(nullptr);
    out.writeString(nullptr);
    out.writeWord(3);
    for (int link = 0; link < 3; ++link) {
        out.writeByte(4);
        out.writeWord(0x10);
        out.writeDWord(link == 2 ? 8 : 7);
    }
    impstream in(out.bytes());
    StreamedResponder target;

    target.old_read(in);

    EXPECT_EQ(links_of(target).size(), 2U);
}

TEST(ResponderStream, UnknownLinkTag_GivesNull)
{
    for (const unsigned tag : {1U, 2U, 3U, 5U, 255U}) {
        ompstream out;
        out.writeByte(static_cast<unsigned char>(tag));
        impstream in(out.bytes());
        EXPECT_EQ(StreamedResponder::read_linked_object(in), nullptr);
        EXPECT_EQ(in.remaining(), 0);
    }
}

TEST(ResponderStream, LinkWithoutASelf_ReadsThePointerOrNull)
{
    StreamedResponder source;
    ompstream out;
    out.writeByte(4);
    out.writeByte(0);
    out.writePointer(&source);
    impstream in(out.bytes());

    EXPECT_EQ(StreamedResponder::read_linked_object(in), nullptr);
    Ended<GResponder> read(StreamedResponder::read_linked_object(in));
    EXPECT_NE(read, nullptr);
}

TEST(ResponderStream, NegativeLinkCount_CountsNothing)
{
    ompstream out;
    out.writeByte(3);
    out.writeWord(0);
    out.writeWord(0);
    out.writeDWord(0);
    out.writePointer(nullptr);
    out.writeString(nullptr);
    out.writeWord(0x8000);
    impstream in(out.bytes());
    StreamedResponder target;

    target.old_read(in);

    EXPECT_TRUE(links_of(target).empty());
    EXPECT_EQ(in.remaining(), 0);
}

TEST(Subobjects, None_AreAWordAndAByte)
{
    StreamedResponder owner;
    ompstream out;
    owner.write_subobjects(out);

    EXPECT_EQ(bytes_of(out), (std::vector<unsigned char>{0, 0, 1}));
    copy_children(owner, owner);
    EXPECT_EQ(owner.getCount(), 0);
}

TEST(Subobjects, NotWritten_LowersTheCountAndNullStandsForTheCurrent)
{
    auto source = family(3);
    source->set_current(source->at(1));
    static_cast<StreamedResponder*>(source->at(1))->leave_out();
    ompstream out;
    source->write_subobjects(out);
    EXPECT_EQ(out.bytes()[0], 2);
    EXPECT_EQ(bytes_of(out).back(), 0);
    auto target = family(5);

    copy_children(*source, *target);

    EXPECT_EQ(labels_of(*target), "ac");
    EXPECT_EQ(target->get_current(), nullptr);
}

TEST(Subobjects, AllNotWritten_AreAWordAndAByte)
{
    auto source = family(2);
    source->set_current(source->at(0));
    for (short index = 0; index < 2; ++index)
        static_cast<StreamedResponder*>(source->at(index))->leave_out();
    ompstream out;
    source->write_subobjects(out);

    EXPECT_EQ(bytes_of(out), (std::vector<unsigned char>{0, 0, 1}));
}

TEST(Subobjects, RemovedChildThatIsStillCurrent_IsNotWritten)
{
    auto source = family(2);
    source->set_current(source->at(0));
    Ended<GResponder> removed(source->at(0));
    source->remove(removed.get());
    auto target = family(0);

    copy_children(*source, *target);

    EXPECT_EQ(labels_of(*target), "b");
    EXPECT_EQ(target->get_current(), nullptr);
}

TEST(Subobjects, PresentChildren_AreReplacedAndTheOwnerStays)
{
    auto source = family(2);
    auto top = family(1);
    auto* target = static_cast<StreamedResponder*>(top->first());
    target->insert(new StreamedResponder);
    target->simply_assign_current(target->first());

    copy_children(*source, *target);

    EXPECT_EQ(labels_of(*target), "ab");
    EXPECT_EQ(target->get_owner(), top.get());
    EXPECT_EQ(target->get_current(), nullptr);
}

TEST(Subobjects, TagZeroWithoutChildren_ReadsACurrentPointerAndOneByteMore)
{
    ompstream out;
    out.writeWord(0);
    out.writeByte(0);
    out.writePointer(nullptr);
    out.writeByte(99);
    out.writeByte(7);  // behind it all
    impstream in(out.bytes());
    StreamedResponder target;

    target.read_subobjects(in);

    EXPECT_EQ(in.readByte(), 7);
}

TEST(Subobjects, TagZeroWithChildren_MakesTheCurrentOne)
{
    auto child = make<StreamedResponder>();
    child->set_options(GResponder::option_selectable, 1);
    ompstream out;
    out.writeWord(1);
    out.writePointer(child.get());
    out.writeByte(0);
    out.writePointer(child.get());
    out.writeByte(99);
    impstream in(out.bytes());
    auto target = make<StreamedResponder>();

    target->read_subobjects(in);

    EXPECT_EQ(in.remaining(), 0);
    ASSERT_EQ(target->getCount(), 1);
    EXPECT_EQ(target->get_current(), target->first());
}

TEST(Subobjects, NullsInTheList_AreSkipped)
{
    ompstream out;
    out.writeWord(3);
    for (int pointer = 0; pointer < 3; ++pointer)
        out.writePointer(nullptr);
    out.writeByte(1);
    out.writePointer(nullptr);
    impstream in(out.bytes());
    StreamedResponder target;

    target.read_subobjects(in);

    EXPECT_EQ(target.getCount(), 0);
    EXPECT_EQ(in.remaining(), 0);
}

TEST(Subobjects, ExceptionOnTheWay_BringsTheOwnerBack)
{
    auto top = family(1);
    auto* target = static_cast<StreamedResponder*>(top->first());
    ompstream out;
    out.writeWord(5);
    impstream in(out.bytes());

    EXPECT_THROW(target->read_subobjects(in), GStreamException);

    EXPECT_EQ(target->get_owner(), top.get());
    EXPECT_EQ(target->getCount(), 0);
}

TEST(Subobjects, SameChildTwice_IsInsertedOnce)
{
    auto child = make<StreamedResponder>();
    ompstream out;
    out.writeWord(3);
    for (int pointer = 0; pointer < 3; ++pointer)
        out.writePointer(child.get());
    out.writeByte(1);
    out.writePointer(nullptr);
    impstream in(out.bytes());
    auto target = make<StreamedResponder>();

    target->read_subobjects(in);

    EXPECT_EQ(target->getCount(), 1);
}

TEST(GView, EveryVersion_IsReadFieldByField)
{
    for (unsigned char version = 0; version <= 5; ++version) {
        for (const bool font : {false, true}) {
            SCOPED_TRACE(int{version});
            ompstream out;
            write_view(out, version, version >= 1, font);
            impstream in(out.bytes());
            GView view;

            view.read(in);

            EXPECT_EQ(in.remaining(), 0);
            EXPECT_EQ(view.get_regime(), 0xF00DUL);
        }
    }
}

TEST(GView, Version0Forced_ReadsChildrenOnce)
{
    ompstream forced;
    write_view(forced, 0, true, false);
    ompstream plain;
    write_view(plain, 0, false, false);
    GView view;

    StreamedResponder::ForceReadSubobjects(true);
    EXPECT_TRUE(StreamedResponder::ForceReadSubobjects());
    impstream in(forced.bytes());
    view.read(in);
    EXPECT_EQ(in.remaining(), 0);
    EXPECT_FALSE(StreamedResponder::ForceReadSubobjects());
    impstream again(plain.bytes());
    view.read(again);
    EXPECT_EQ(again.remaining(), 0);
}

TEST(GView, Write_IsEmpty)
{
    GView view;
    ompstream out;
    view.write(out);

    EXPECT_TRUE(out.bytes().empty());
    EXPECT_NE(GView::metaclass_.getBuilder(), nullptr);
    EXPECT_EQ(GView::metaclass_.getBase(0), &GResponder::metaclass_);
}

TEST(GView, DeletedDirectly_EndsItsChildrenAndLeavesItsOwner)
{
    const int alive = TestResponder::alive;
    TestResponder owner;
    auto* view = new GView;
    owner.insert(view);
    add(*view);

    delete view;

    EXPECT_EQ(owner.getCount(), 0);
    EXPECT_EQ(TestResponder::alive, alive + 1);
}
