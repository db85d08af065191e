#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "graphics/PaletteCollection.h"
#include "tests/responder/TestResponders.h"

#include <gtest/gtest.h>

#include <random>

// Bytes from anywhere: the result is an object or a GStreamException, every object that nobody owns
// can be ended, and nothing is left behind.

namespace {

using Bytes = std::vector<unsigned char>;

/// A tree with something of everything.
Bytes sample()
{
    auto owner = make<StreamedResponder>();
    owner->set_label("owner");
    owner->set_palette_entry(4, RGB_Color(1, 2, 3));
    owner->attach(new TestBehaviour);
    owner->attach(new TestBehaviour);
    for (int number = 0; number < 4; ++number) {
        auto* child = new StreamedResponder;
        child->set_options(GResponder::option_selectable, 1);
        child->attach(new TestBehaviour);
        owner->insert(child);
        if (number > 0)
            child->notify_when_modified(owner->last(), kBroadcast, 3);
        child->insert(new StreamedResponder);
        child->notify_when_modified(owner.get(), kBroadcast, 4);
    }
    owner->set_current(owner->at(2));
    ompstream out;
    out.writePointer(owner.get());
    return {out.bytes().begin(), out.bytes().end()};
}

/// Objects that nobody owns end; with them goes all that they own.
void end_living()
{
    while (!StreamedResponder::living.empty()) {
        GResponder* top = StreamedResponder::living.front();
        while (top->get_owner() != nullptr)
            top = top->get_owner();
        GStreamable::Destroy(top);
    }
    while (!TestBehaviour::living.empty()) {
        ASSERT_EQ(TestBehaviour::living.back()->host(), nullptr);
        GStreamable::Destroy(TestBehaviour::living.back());
    }
}

/// True when it was read whole.
bool try_read(const Bytes& bytes)
{
    bool whole = true;
    impstream in(bytes);
    try {
        if (auto* read = in.read_pointer<GResponder>()) {
            GEvent event = event_of(kBroadcast);
            GResponder::Message(read, event);
            read->object_modified();
            read->set_state(GResponder::state_exposed, 1);
        }
    } catch (const GStreamException&) {
        whole = false;
    }
    end_living();
    return whole;
}

void expect_nothing_left()
{
    EXPECT_TRUE(StreamedResponder::living.empty());
    EXPECT_TRUE(TestBehaviour::living.empty());
}

/// `depth` responders, each the child of the one before.
Bytes nested(int depth)
{
    ompstream head;
    head.writeByte(2);
    head.writeString("StreamedResponder");
    ompstream body;
    body.writeByte(0);  // its version
    body.writeByte(0);  // old_read's
    for (int word = 0; word < 3; ++word)
        body.writeWord(0);
    body.writePointer(nullptr);
    body.writeWord(1);  // one child
    Bytes bytes(head.bytes().begin(), head.bytes().end());
    for (int level = 0; level < depth; ++level) {
        if (level > 0)
            bytes.push_back(3);  // of the first class
        bytes.insert(bytes.end(), body.bytes().begin(), body.bytes().end());
    }
    bytes.push_back(0);  // a null child
    for (int level = 0; level < depth; ++level) {
        bytes.push_back(1);
        bytes.push_back(0);  // no current child
    }
    return bytes;
}

}  // namespace

TEST(DamagedResponderStream, EveryCut_EndsInAnException)
{
    const Bytes whole = sample();
    ASSERT_TRUE(try_read(whole));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        ASSERT_FALSE(try_read(cut)) << length;
    }
    expect_nothing_left();
}

TEST(DamagedResponderStream, EveryFlippedBit_GivesObjectsOrAnException)
{
    const Bytes whole = sample();
    int refused = 0;
    for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
        Bytes flipped = whole;
        flipped[bit / 8] = static_cast<unsigned char>(flipped[bit / 8] ^ 1U << (bit % 8));
        refused += try_read(flipped) ? 0 : 1;
    }
    EXPECT_GT(refused, 0);
    expect_nothing_left();
}

TEST(DamagedResponderStream, RandomSplices_GiveObjectsOrAnException)
{
    const Bytes whole = sample();
    std::mt19937 random(11);
    int refused = 0;
    for (int round = 0; round < 5000; ++round) {
        Bytes damaged = whole;
        for (auto change = random() % 6 + 1; change > 0; --change) {
            const auto from = static_cast<std::ptrdiff_t>(random() % whole.size());
            const auto to = static_cast<std::ptrdiff_t>(random() % damaged.size());
            const auto length = static_cast<std::ptrdiff_t>(random() % 12);
            const auto end = std::min(from + length, static_cast<std::ptrdiff_t>(whole.size()));
            damaged.insert(damaged.begin() + to, whole.begin() + from, whole.begin() + end);
        }
        refused += try_read(damaged) ? 0 : 1;
    }
    EXPECT_GT(refused, 0);
    expect_nothing_left();
}

TEST(DamagedResponderStream, CountsAtTheBorders_EndCleanly)
{
    for (const unsigned count : {0x7FFFU, 0x8000U, 0xFFFFU}) {
        ompstream out;
        out.writeByte(2);
        out.writeString("StreamedResponder");
        out.writeByte(0);
        out.writeByte(0);
        for (int word = 0; word < 3; ++word)
            out.writeWord(0);
        out.writePointer(nullptr);
        out.writeWord(static_cast<unsigned short>(count));
        // A negative one reads no child but a current pointer.
        out.writeByte(1);
        out.writePointer(nullptr);
        const bool negative = count > 0x7FFF;
        EXPECT_EQ(try_read({out.bytes().begin(), out.bytes().end()}), negative) << count;
    }
    expect_nothing_left();
}

TEST(DamagedResponderStream, Nesting_UpToTheStreamsLimitOnly)
{
    EXPECT_TRUE(try_read(nested(ipstream::kMaxDepth)));
    EXPECT_FALSE(try_read(nested(ipstream::kMaxDepth + 1)));
    EXPECT_FALSE(try_read(nested(20 * ipstream::kMaxDepth)));
    expect_nothing_left();
}

TEST(DamagedResponderStream, ManyLinks_AreReadInTime)
{
    ompstream out;
    out.writeByte(2);
    out.writeString("StreamedResponder");
    out.writeByte(0);
    out.writeByte(3);
    out.writeWord(0);
    out.writeWord(0);
    out.writeDWord(0);
    out.writePointer(nullptr);
    out.writeString(nullptr);
    out.writeWord(0x7FFF);
    for (unsigned long link = 0; link < 0x7FFF; ++link) {
        out.writeByte(4);
        out.writeWord(0x4000);
        out.writeDWord(link);
    }
    out.writeWord(0);
    out.writeByte(1);

    EXPECT_TRUE(try_read({out.bytes().begin(), out.bytes().end()}));
    expect_nothing_left();
}

TEST(DamagedResponderStream, ChildThatIsItsOwnAncestor_IsLeftOut)
{
    ompstream out;
    out.writeByte(2);
    out.writeString("StreamedResponder");
    out.writeByte(0);
    out.writeByte(0);
    for (int word = 0; word < 3; ++word)
        out.writeWord(0);
    out.writePointer(nullptr);
    out.writeWord(2);
    out.writeByte(1);  // object number 0, the one being read
    out.writeDWord(0);
    out.writeByte(1);
    out.writeDWord(0);
    out.writeByte(1);
    out.writeByte(1);  // and as the current child
    out.writeDWord(0);

    EXPECT_TRUE(try_read({out.bytes().begin(), out.bytes().end()}));
    expect_nothing_left();
}

TEST(DamagedResponderStream, OwnerAmongItsChildsChildren_IsLeftOut)
{
    ompstream out;
    out.writeByte(2);
    out.writeString("StreamedResponder");  // object number 0, the child
    out.writeByte(0);
    out.writeByte(3);
    out.writeWord(0);
    out.writeWord(0);
    out.writeDWord(0);
    out.writePointer(nullptr);
    out.writeString(nullptr);
    out.writeWord(1);  // a link
    out.writeByte(0);
    out.writeByte(3);  // to object number 1, the owner, which is read here
    out.writeByte(0);
    out.writeByte(0);
    for (int word = 0; word < 3; ++word)
        out.writeWord(0);
    out.writePointer(nullptr);
    out.writeWord(1);
    out.writeByte(1);  // it has the child
    out.writeDWord(0);
    out.writeByte(1);
    out.writePointer(nullptr);
    out.writeWord(0x4000);
    out.writeDWord(1);
    out.writeWord(1);
    out.writeByte(1);  // and the child has it
    out.writeDWord(1);
    out.writeByte(1);
    out.writePointer(nullptr);
    const Bytes bytes(out.bytes().begin(), out.bytes().end());

    impstream in(bytes);
    const auto* child = in.read_pointer<GResponder>();
    ASSERT_NE(child, nullptr);
    ASSERT_NE(child->get_owner(), nullptr);
    EXPECT_EQ(child->get_owner()->get_owner(), nullptr);
    EXPECT_EQ(child->get_owner()->getCount(), 1);
    EXPECT_EQ(child->getCount(), 0);

    end_living();
    expect_nothing_left();
}

TEST(DamagedResponderStream, OtherObjectsInTheListOfChildren_AreLeftOutAndFreed)
{
    const int alive = TestBehaviour::alive;
    TestBehaviour behaviour;
    PaletteCollection palette;
    ompstream out;
    out.writeWord(2);
    out.writePointer(&behaviour);
    out.writePointer(&palette);
    out.writeByte(1);
    out.writePointer(nullptr);
    impstream in(out.bytes());
    StreamedResponder target;

    target.read_subobjects(in);

    EXPECT_EQ(target.getCount(), 0);
    EXPECT_EQ(TestBehaviour::alive, alive + 1);  // the one that was written
}

TEST(DamagedResponderStream, PaletteWithAHugeStepOfGrowth_TakesLittleMemory)
{
    ompstream out;
    out.writeByte(0);  // sorted collection: version, no duplicates
    out.writeByte(0);
    out.writeByte(0);  // collection: version, base part, owner of its items, step, count
    out.writeByte(0);
    out.writeByte(1);
    out.writeDWord(0x0FFFFFFF);
    out.writeDWord(1);
    out.writeDWord(7);
    for (int colour = 0; colour < 3; ++colour)
        out.writeByte(9);
    impstream in(out.bytes());
    struct Measured : PaletteCollection {
        [[nodiscard]] long room() const { return limit_; }
    } palette;

    palette.read(in);
    palette.add_entry(8, RGB_Color());

    EXPECT_EQ(palette.count, 2);
    EXPECT_LT(palette.room(), 10'000);
}

TEST(DamagedResponderStream, PaletteOfTwoOwners_IsRefused)
{
    ompstream out;
    out.writeByte(2);
    out.writeString("StreamedResponder");
    out.writeByte(0);
    const auto own_part = [&](bool first) {
        out.writeByte(4);
        out.writeWord(0);
        out.writeWord(0);
        out.writeDWord(0);
        out.writePointer(nullptr);
        out.writeString(nullptr);
        out.writeWord(0);
        if (first) {
            out.writeByte(2);
            out.writeString("PaletteCollection");
            ompstream inner;
            PaletteCollection palette;
            palette.write(inner);
            out.writeBytes(inner.bytes().data(), static_cast<long>(inner.bytes().size()));
        } else {
            out.writeByte(1);
            out.writeDWord(1);
        }
    };
    own_part(true);
    out.writeWord(1);
    out.writeByte(3);
    out.writeByte(0);
    own_part(false);

    EXPECT_FALSE(try_read({out.bytes().begin(), out.bytes().end()}));
    expect_nothing_left();
}
