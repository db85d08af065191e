#include "SampleObjects.h"
#include "foundation/GException.h"
#include "foundation/GPointer.h"
#include "foundation/GSUSInfo.h"
#include "foundation/mpstream.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

/// Ended by GStreamable::destroy at the end of the scope.
struct Ender {
    void operator()(GStreamable* object) const { GStreamable::destroy(object); }
};
template <class T>
using Held = std::unique_ptr<T, Ender>;

/// `depth` nodes, each the child of the one before.
Held<SampleNode> chain(int depth)
{
    Held<SampleNode> top(new SampleNode("0"));
    SampleNode* last = top.get();
    for (int level = 1; level < depth; ++level) {
        last->child = new SampleNode(std::to_string(level).c_str());
        last = last->child;
    }
    return top;
}

constexpr unsigned char kNull = 0;
constexpr unsigned char kKnown = 1;
constexpr unsigned char kNewClass = 2;
constexpr unsigned char kFirstClass = 3;

/// Writes an object's bytes by hand, as data from outside may be.
class Forger : public ompstream {
public:
    void new_object(const char* class_name)
    {
        writeByte(kNewClass);
        writeString(class_name);
    }
    void known(unsigned long number)
    {
        writeByte(kKnown);
        writeDWord(number);
    }
    /// Version, base part and name of a node; child and peer follow.
    void node_head()
    {
        writeByte(1);
        writeByte(0);
        writeString("forged");
    }
    void null() { writeByte(kNull); }
};

/// The number of sample objects is the same again at the end.
class NothingLeaks {
public:
    ~NothingLeaks()
    {
        EXPECT_EQ(SampleNode::alive, nodes_);
        EXPECT_EQ(SampleWatcher::alive, watchers_);
    }

private:
    int nodes_ = SampleNode::alive;
    int watchers_ = SampleWatcher::alive;
};

/// Finds one class under another name.
class RenamingReader : public impstream {
public:
    using impstream::impstream;

protected:
    const GMetaClass* find_class(const char* name) override
    {
        return std::string_view(name) == "OldNode" ? &SampleNode::metaclass_
                                                   : impstream::find_class(name);
    }
};

}  // namespace

TEST(ObjectStream, Null_ComesBackAsNull)
{
    ompstream out;
    out.writePointer(nullptr);
    out.writeStreamablePointer(nullptr, false);
    impstream in(out.bytes());

    EXPECT_EQ(out.tellp(), 2);
    EXPECT_EQ(in.readPointer(GStreamable::gTypeInfo_), nullptr);
    EXPECT_EQ(in.readPointer(GStreamable::gTypeInfo_), nullptr);
    in.claim();  // of nothing
    EXPECT_TRUE(in.good());
}

TEST(ObjectStream, Object_ComesBackWithItsOwnClassAndContents)
{
    const NothingLeaks check;
    SampleLeaf leaf;
    leaf.name = "leaf";
    leaf.value = -12;
    ompstream out;
    out.writePointer(&leaf);
    impstream in(out.bytes());
    const Held<SampleNode> back(in.read_pointer<SampleNode>());

    ASSERT_NE(back, nullptr);
    ASSERT_EQ(back->getMetaClass(), &SampleLeaf::metaclass_);
    EXPECT_EQ(back->name, "leaf");
    EXPECT_EQ(zmr::class_cast<SampleLeaf>(back.get())->value, -12);
}

TEST(ObjectStream, Encoding_IsAsDocumented)
{
    SampleNode first("a");
    SampleNode second("b");
    ompstream out;
    out.writePointer(&first);
    out.writePointer(&second);
    out.writePointer(&first);
    const std::string_view text(
        "\2\12SampleNode"  // a new class; then the first object:
        "\1\0\1a\0\0"      // version, base part, name, no child, no peer
        "\3\1\0\1b\0\0"    // class number 0
        "\1\0\0\0\0",      // object number 0
        12 + 6 + 7 + 5);
    const std::vector<unsigned char> expected(text.begin(), text.end());

    const auto bytes = out.bytes();
    EXPECT_EQ(std::vector<unsigned char>(bytes.begin(), bytes.end()), expected);
}

TEST(ObjectStream, SecondReference_GivesTheSameObject)
{
    const NothingLeaks check;
    SampleNode node("shared");
    ompstream out;
    out.writePointer(&node);
    out.writeStreamablePointer(&node, false);
    impstream in(out.bytes());
    const Held<SampleNode> back(in.read_pointer<SampleNode>());

    EXPECT_EQ(in.read_pointer<SampleNode>(), back.get());
    EXPECT_EQ(in.remaining(), 0);
}

TEST(ObjectStream, Cycles_ComeBackAsCycles)
{
    const NothingLeaks check;
    const Held<SampleNode> top = chain(3);
    top->peer = top.get();
    top->child->child->peer = top.get();
    ompstream out;
    out.writePointer(top.get());
    impstream in(out.bytes());
    const Held<SampleNode> back(in.read_pointer<SampleNode>());

    EXPECT_EQ(back->peer, back.get());
    EXPECT_EQ(back->child->child->peer, back.get());
    EXPECT_EQ(back->child->child->name, "2");
}

TEST(ObjectStream, ObjectWrittenThroughEitherBase_IsOneObject)
{
    const NothingLeaks check;
    SampleTagged object;
    object.name = "tagged";
    ompstream out;
    out.writePointer(static_cast<SampleLeaf*>(&object));
    out.writePointer(static_cast<SampleTag*>(&object));
    impstream in(out.bytes());
    const Held<SampleLeaf> back(in.read_pointer<SampleLeaf>());
    SampleTag* same = in.read_pointer<SampleTag>();

    ASSERT_NE(back, nullptr);
    EXPECT_EQ(static_cast<void*>(zmr::class_cast<SampleTagged>(back.get())),
              static_cast<void*>(zmr::class_cast<SampleTagged>(same)));
    EXPECT_NE(static_cast<void*>(same), static_cast<void*>(back.get()));
    EXPECT_EQ(same->tag, 77);
}

TEST(ObjectStream, OnlyKnown_WritesUnknownObjectAsNull)
{
    const NothingLeaks check;
    SampleNode known("known");
    SampleNode other("other");
    ompstream out;
    out.writePointer(&known);
    out.writeStreamablePointer(&other, true);
    out.writeStreamablePointer(&known, true);
    impstream in(out.bytes());
    const Held<SampleNode> back(in.read_pointer<SampleNode>());

    EXPECT_EQ(in.read_pointer<SampleNode>(), nullptr);
    EXPECT_EQ(in.read_pointer<SampleNode>(), back.get());
}

TEST(ObjectStream, ManyObjects_AllReferencesHold)
{
    std::vector<std::unique_ptr<SampleNode>> nodes;
    for (int number = 0; number < 3000; ++number)
        nodes.push_back(std::make_unique<SampleNode>(std::to_string(number).c_str()));
    ompstream out;
    for (const auto& node : nodes)
        out.writePointer(node.get());
    for (std::size_t number = 0; number < nodes.size(); ++number)
        out.writePointer(nodes[number * 7 % nodes.size()].get());
    impstream in(out.bytes());
    std::vector<Held<SampleNode>> back;
    for (std::size_t number = 0; number < nodes.size(); ++number)
        back.emplace_back(in.read_pointer<SampleNode>());

    for (std::size_t number = 0; number < nodes.size(); ++number)
        ASSERT_EQ(in.read_pointer<SampleNode>(), back[number * 7 % nodes.size()].get());
    EXPECT_EQ(back[2999]->name, "2999");
}

TEST(ObjectStream, MoreClassesThanFitATag_AllComeBack)
{
    const NothingLeaks check;
    constexpr int kClasses = 600;
    std::vector<std::string> names;
    for (int number = 0; number < kClasses; ++number)
        names.push_back("Numbered" + std::to_string(number));
    static const type_info type("Numbered");
    std::vector<std::unique_ptr<GMetaClass>> classes;
    for (const std::string& name : names)
        classes.push_back(std::make_unique<GMetaClass>(nullptr, type, name.c_str(),
                                                       &SampleNode::ClassBuilder_, nullptr,
                                                       &SampleNode::metaclass_));
    class Posing : public SampleNode {
    public:
        const GMetaClass* getMetaClass() const override { return posed; }
        const GMetaClass* posed = nullptr;
    };
    std::vector<Posing> nodes(2 * kClasses);
    ompstream out;
    for (std::size_t number = 0; number < nodes.size(); ++number) {
        nodes[number].posed = classes[number % kClasses].get();
        nodes[number].name = std::to_string(number).c_str();
        out.writePointer(&nodes[number]);
    }
    impstream in(out.bytes());

    for (std::size_t number = 0; number < nodes.size(); ++number) {
        const Held<SampleNode> back(in.read_pointer<SampleNode>());
        ASSERT_NE(back, nullptr);
        ASSERT_EQ(back->name, nodes[number].name);
    }
    EXPECT_EQ(in.remaining(), 0);
}

TEST(ObjectStream, FindClass_Overridden_ReadsOldNames)
{
    Forger out;
    out.new_object("OldNode");
    out.node_head();
    out.null();
    out.null();
    RenamingReader in(out.bytes());
    const Held<SampleNode> back(in.read_pointer<SampleNode>());

    EXPECT_EQ(back->name, "forged");
}

TEST(ObjectStream, UnknownClass_ThrowsAndNamesIt)
{
    Forger out;
    out.new_object("ClassOfAMissingModule");
    impstream in(out.bytes());
    try {
        in.readPointer(GStreamable::gTypeInfo_);
        FAIL() << "nothing was thrown";
    } catch (const UnknownStreamableType_Exception& unknown) {
        EXPECT_EQ(unknown.class_name, "ClassOfAMissingModule");
    }
}

TEST(ObjectStream, ClassNameWithZeroByte_IsUnknown)
{
    Forger out;
    out.writeByte(kNewClass);
    out.write_text(std::string_view("SampleNode\0x", 12));
    impstream in(out.bytes());

    EXPECT_THROW(in.readPointer(GStreamable::gTypeInfo_), UnknownStreamableType_Exception);
}

TEST(ObjectStream, ClassThatCantBeBuilt_ThrowsUnknown)
{
    Forger out;
    out.new_object("SampleTag");
    impstream in(out.bytes());

    EXPECT_THROW(in.readPointer(GStreamable::gTypeInfo_), UnknownStreamableType_Exception);
}

TEST(ObjectStream, NewObjectOfWrongClass_GivesNullAndIsDestroyed)
{
    const NothingLeaks check;
    const Held<SampleNode> node = chain(3);
    ompstream out;
    out.writePointer(node.get());
    out.writeByte(42);
    impstream in(out.bytes());
    const int alive = SampleNode::alive;

    EXPECT_EQ(in.read_pointer<SampleGroup>(), nullptr);
    EXPECT_EQ(SampleNode::alive, alive);
    EXPECT_EQ(in.readByte(), 42);
}

TEST(ObjectStream, ReferenceToObjectDestroyedForItsClass_GivesNull)
{
    const NothingLeaks check;
    const Held<SampleNode> node = chain(2);
    ompstream out;
    out.writePointer(node.get());
    out.writePointer(node.get());
    out.writePointer(node->child);  // went with its owner
    impstream in(out.bytes());

    EXPECT_EQ(in.read_pointer<SampleGroup>(), nullptr);
    EXPECT_EQ(in.read_pointer<SampleNode>(), nullptr);
    EXPECT_EQ(in.read_owned<SampleNode>(), nullptr);
}

TEST(ObjectStream, KnownObjectOfWrongClass_GivesNullAndLivesOn)
{
    const NothingLeaks check;
    SampleNode node("n");
    ompstream out;
    out.writePointer(&node);
    out.writePointer(&node);
    out.writePointer(&node);
    impstream in(out.bytes());
    const Held<SampleNode> back(in.read_pointer<SampleNode>());

    EXPECT_EQ(in.read_pointer<SampleGroup>(), nullptr);
    EXPECT_EQ(in.read_pointer<SampleNode>(), back.get());
}

TEST(ObjectStream, WrongClassButHeldByOneThatOutlivesIt_StaysAlive)
{
    const NothingLeaks check;
    // A watcher watches another watcher, which watches the first and is owned by nobody.
    Forger out;
    out.new_object("SampleWatcher");
    out.writeByte(0);
    out.writeByte(1);
    out.writeByte(kFirstClass);
    out.writeByte(0);
    out.writeByte(1);
    out.known(0);
    out.known(1);
    out.known(0);
    impstream in(out.bytes());
    EXPECT_EQ(in.read_pointer<SampleNode>(), nullptr);
    const Held<SampleWatcher> inner(in.read_owned<SampleWatcher>());
    const Held<SampleWatcher> outer(in.read_owned<SampleWatcher>());

    ASSERT_NE(inner, nullptr);
    ASSERT_NE(outer, nullptr);
    EXPECT_EQ(inner->watched.at(0), outer.get());
}

TEST(ObjectStream, WrongClassWhosePartIsHeldByASurvivor_StaysAlive)
{
    // The node is no group; but a peer that nobody owns has got a pointer to the node's child.
    const NothingLeaks check;
    Forger out;
    out.new_object("SampleNode");
    out.node_head();
    out.writeByte(kFirstClass);
    out.node_head();
    out.null();
    out.null();
    out.writeByte(kFirstClass);
    out.node_head();
    out.null();
    out.known(1);
    out.known(2);
    out.known(0);
    impstream in(out.bytes());
    EXPECT_EQ(in.read_pointer<SampleGroup>(), nullptr);
    const Held<SampleNode> peer(in.read_owned<SampleNode>());
    const Held<SampleNode> top(in.read_owned<SampleNode>());

    ASSERT_NE(peer, nullptr);
    ASSERT_NE(top, nullptr);
    EXPECT_EQ(peer->peer, top->child);
}

TEST(ObjectStream, ReadingFailsButWhatItOwnedIsHeldOutside_StaysAlive)
{
    // The watcher has got the node before a group takes it as its child and then fails.
    const NothingLeaks check;
    Forger out;
    out.new_object("SampleWatcher");
    out.writeByte(0);
    out.writeByte(1);
    out.new_object("SampleNode");
    out.node_head();
    out.null();
    out.null();
    out.new_object("SampleNode");
    out.node_head();
    out.known(1);
    impstream in(out.bytes());
    const Held<SampleWatcher> watcher(in.read_owned<SampleWatcher>());
    EXPECT_THROW(in.readPointer(GStreamable::gTypeInfo_), GStreamException);

    auto* node = zmr::class_cast<SampleNode>(watcher->watched.at(0));
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->name, "forged");
    EXPECT_TRUE(node->has_owner);
    SampleNode::end_orphans_beyond(0);
}

TEST(ObjectStream, WrongClassHeldByItsOwnChild_IsDestroyedWithIt)
{
    const NothingLeaks check;
    const Held<SampleNode> node = chain(3);
    node->child->child->peer = node.get();
    ompstream out;
    out.writePointer(node.get());
    impstream in(out.bytes());
    const int alive = SampleNode::alive;

    EXPECT_EQ(in.read_pointer<SampleGroup>(), nullptr);
    EXPECT_EQ(SampleNode::alive, alive);
}

TEST(ObjectStream, GraphCutAtEveryLength_ThrowsWithoutLeak)
{
    const NothingLeaks check;
    SampleGroup group;
    SampleNode* node = chain(4).release();
    node->child->peer = node;
    group.children.push_back(node);
    auto* tagged = new SampleTagged;
    tagged->peer = node;
    tagged->child = new SampleLeaf;
    group.children.push_back(static_cast<SampleLeaf*>(tagged));
    ompstream out;
    out.writePointer(&group);
    const auto bytes = out.bytes();

    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const NothingLeaks check_of_cut;
        const std::vector<unsigned char> cut(bytes.begin(),
                                             bytes.begin() + static_cast<std::ptrdiff_t>(length));
        impstream in{std::span<const unsigned char>(cut)};
        EXPECT_THROW(in.readPointer(GStreamable::gTypeInfo_), GStreamException) << length;
    }
    impstream whole(bytes);
    const Held<SampleGroup> back(whole.read_pointer<SampleGroup>());
    EXPECT_EQ(back->children.size(), 2u);
}

TEST(ObjectStream, EveryByteChanged_EndsInObjectOrException)
{
    const NothingLeaks check;
    const Held<SampleNode> node = chain(3);
    node->child->peer = node.get();
    ompstream out;
    out.writePointer(node.get());
    const auto bytes = out.bytes();
    int refused = 0;

    for (std::size_t at = 0; at < bytes.size(); ++at) {
        for (int change = 1; change < 256; ++change) {
            const NothingLeaks check_of_change;
            std::vector<unsigned char> changed(bytes.begin(), bytes.end());
            changed[at] = static_cast<unsigned char>(changed[at] ^ change);
            impstream in{std::span<const unsigned char>(changed)};
            try {
                const Held<SampleNode> back(in.read_pointer<SampleNode>());
                EXPECT_EQ(back == nullptr, changed[0] == kNull);
            } catch (const GStreamException&) {
                ++refused;
            }
            SampleNode::end_orphans_beyond(3);
        }
    }
    EXPECT_GT(refused, 1000);
}

TEST(ObjectStream, ReferenceOrClassNumberBeyondWhatWasMet_Throws)
{
    Forger unmet;
    unmet.known(0);
    impstream in(unmet.bytes());
    EXPECT_THROW(in.readPointer(GStreamable::gTypeInfo_), GStreamException);

    for (const std::uint8_t tag : std::initializer_list<std::uint8_t>{3, 100, 254}) {
        const unsigned char bytes[] = {tag, 0, 0, 0};
        impstream classes{std::span(bytes)};
        EXPECT_THROW(classes.readPointer(GStreamable::gTypeInfo_), GStreamException);
    }
    const unsigned char wide[] = {255, 0, 0};
    impstream wide_in{std::span(wide)};
    EXPECT_THROW(wide_in.readPointer(GStreamable::gTypeInfo_), GStreamException);
}

TEST(ObjectStream, OneObjectForTwoOwners_IsRefused)
{
    const NothingLeaks check;
    Forger out;
    out.new_object("SampleGroup");
    out.writeByte(0);
    out.writeByte(2);
    out.new_object("SampleNode");
    out.node_head();
    out.null();
    out.null();
    out.known(1);
    impstream in(out.bytes());

    EXPECT_THROW(in.readPointer(GStreamable::gTypeInfo_), GStreamException);
}

TEST(ObjectStream, ObjectThatOwnsItself_IsRefused)
{
    const NothingLeaks check;
    Forger out;
    out.new_object("SampleNode");
    out.node_head();
    out.known(0);
    out.null();
    impstream in(out.bytes());

    EXPECT_THROW(in.readPointer(GStreamable::gTypeInfo_), GStreamException);
}

TEST(ObjectStream, ChildThatOwnsItsOwner_IsRefused)
{
    const NothingLeaks check;
    Forger out;
    out.new_object("SampleNode");
    out.node_head();
    out.writeByte(kFirstClass);
    out.node_head();
    out.known(0);
    out.null();
    out.null();
    impstream in(out.bytes());

    EXPECT_THROW(in.readPointer(GStreamable::gTypeInfo_), GStreamException);
}

TEST(ObjectStream, PeerFirstAndOwnerLater_IsOwnedOnce)
{
    const NothingLeaks check;
    Forger out;
    out.new_object("SampleWatcher");  // meets the node without owning it
    out.writeByte(0);
    out.writeByte(1);
    out.new_object("SampleNode");
    out.node_head();
    out.null();
    out.null();
    out.new_object("SampleGroup");
    out.writeByte(0);
    out.writeByte(1);
    out.known(1);
    impstream in(out.bytes());
    const Held<SampleWatcher> watcher(in.read_owned<SampleWatcher>());
    const Held<SampleGroup> group(in.read_owned<SampleGroup>());

    ASSERT_EQ(group->children.size(), 1u);
    EXPECT_EQ(group->children[0], watcher->watched.at(0));
}

TEST(ObjectStream, ReaderThrows_ObjectAndWhatItOwnsAreDestroyed)
{
    const NothingLeaks check;
    SampleGroup group;
    auto* thrower = new SampleThrower;
    thrower->child = new SampleNode("owned");
    group.children.push_back(thrower);
    ompstream out;
    out.writePointer(&group);
    out.writePointer(thrower->child);
    impstream in(out.bytes());

    EXPECT_THROW(in.readPointer(GStreamable::gTypeInfo_), GStreamException);
    EXPECT_EQ(in.readPointer(GStreamable::gTypeInfo_), nullptr);  // what is gone can't be had
}

TEST(ObjectStream, NestingUpToTheLimit_ComesBack)
{
    const NothingLeaks check;
    const Held<SampleNode> top = chain(ipstream::kMaxDepth);
    ompstream out;
    out.writePointer(top.get());
    impstream in(out.bytes());
    const Held<SampleNode> back(in.read_pointer<SampleNode>());

    int depth = 0;
    for (const SampleNode* node = back.get(); node != nullptr; node = node->child)
        ++depth;
    EXPECT_EQ(depth, ipstream::kMaxDepth);
}

TEST(ObjectStream, NestingBeyondTheLimit_IsRefusedOnWriting)
{
    const NothingLeaks check;
    const Held<SampleNode> top = chain(ipstream::kMaxDepth + 1);
    ompstream out;

    EXPECT_THROW(out.writePointer(top.get()), GStreamException);
}

TEST(ObjectStream, NestingBeyondTheLimit_IsRefusedOnReading)
{
    const NothingLeaks check;
    Forger out;
    out.new_object("SampleNode");
    for (int level = 0; level <= ipstream::kMaxDepth; ++level) {
        out.node_head();
        out.writeByte(kFirstClass);
    }
    impstream in(out.bytes());

    EXPECT_THROW(in.readPointer(GStreamable::gTypeInfo_), GStreamException);
}

TEST(ObjectStream, OwnersChainedThroughReferences_AreLimitedTheSame)
{
    // Each node takes the one before as its child, so that none of them nests in the data; yet the
    // last one would end through all of them.
    const NothingLeaks check;
    Forger out;
    for (unsigned long number = 0; number < ipstream::kMaxDepth + 10; ++number) {
        if (number == 0)
            out.new_object("SampleNode");
        else
            out.writeByte(kFirstClass);
        out.node_head();
        if (number == 0)
            out.null();
        else
            out.known(number - 1);
        out.null();
    }
    impstream in(out.bytes());
    Held<SampleNode> last;
    int read = 0;
    const auto read_all = [&] {
        while (true) {
            SampleNode* next = in.read_pointer<SampleNode>();
            static_cast<void>(last.release());  // it is the child of the next
            last.reset(next);
            ++read;
        }
    };

    EXPECT_THROW(read_all(), GStreamException);
    EXPECT_EQ(read, ipstream::kMaxDepth + 1);
}

TEST(GStreamable, Clone_CopiesTheWholeChain)
{
    const NothingLeaks check;
    const Held<SampleNode> top = chain(3);
    top->child->peer = top.get();
    const Held<GStreamable> copy(top->clone(true));
    const auto* node = zmr::class_cast<SampleNode>(copy.get());

    ASSERT_NE(node, nullptr);
    EXPECT_NE(node, top.get());
    EXPECT_EQ(node->child->name, "1");
    EXPECT_EQ(node->child->peer, node);
    EXPECT_NE(node->child, top->child);
}

TEST(GStreamable, Clone_OfClassThatCantBeBuilt_GivesNull)
{
    SampleTag tag;

    EXPECT_EQ(tag.clone(true), nullptr);
}

TEST(GStreamable, Clone_KeepsTheInputScale)
{
    SampleNode node("n");
    GSUSInfo::InputScale(25.4);
    const Held<GStreamable> copy(node.clone(true));

    EXPECT_EQ(GSUSInfo::GetInputScale(), 25.4);
    GSUSInfo::InputScale(1.0);
}

TEST(GStreamable, BasePart_SetsTheInputScale)
{
    GSUSInfo::InputScale(3.0);
    ompstream out;
    SampleGroup group;
    group.GStreamable::write(out);
    impstream in(out.bytes());
    group.GStreamable::read(in);
    EXPECT_EQ(out.tellp(), 1);
    EXPECT_EQ(GSUSInfo::GetInputScale(), 1.0);

    ompstream scaled;
    scaled.writeByte(1);
    scaled.writeDouble(0.01);
    impstream scaled_in(scaled.bytes());
    group.GStreamable::read(scaled_in);
    EXPECT_EQ(GSUSInfo::GetInputScale(), 0.01);
    GSUSInfo::InputScale(1.0);
}

TEST(GStreamable, BasePart_OfUnknownKind_Throws)
{
    const unsigned char bytes[] = {2};
    impstream in{std::span(bytes)};
    SampleGroup group;

    EXPECT_THROW(group.GStreamable::read(in), GStreamException);
}

TEST(GSUSInfo, Scales_ThatCantBe_CountAsOne)
{
    for (const double scale : {0.0, -1.0, std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
        GSUSInfo::InputScale(scale);
        EXPECT_EQ(GSUSInfo::GetInputScale(), 1.0);
    }
}

TEST(GSUSInfo, ViewScale_TellsWhetherItWasSet)
{
    bool is_default = false;
    EXPECT_EQ(GSUSInfo::GetViewScale(&is_default), 1.0);
    EXPECT_TRUE(is_default);
    GSUSInfo::SetViewScale(2.0);

    EXPECT_EQ(GSUSInfo::GetViewScale(&is_default), 2.0);
    EXPECT_FALSE(is_default);
    EXPECT_EQ(GSUSInfo::GetViewScale(nullptr), 2.0);
}
