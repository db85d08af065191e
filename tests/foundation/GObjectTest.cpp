#include "SampleObjects.h"
#include "foundation/GPointer.h"
#include "foundation/SuspendedDestruction.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <vector>

namespace {

/// Deferring is on in the scope.
class Deferring {
public:
    Deferring() { SuspendedDestruction::Enable(1); }
    ~Deferring() { SuspendedDestruction::Enable(0); }
    Deferring(const Deferring&) = delete;
    Deferring& operator=(const Deferring&) = delete;
};

/// A record with fields behind the pointer, as a link of a list of observers is.
struct Link : GPointer {
    void follow(GObject* followed)
    {
        remove_from_list();
        target = followed;
        object = followed;
        link_object();
    }
    int kind = 0;
};

/// A child that takes itself out of its owner when it is shut down.
class Child;
class Owner : public GStreamable {
public:
    std::vector<Child*> children;
};
class Child : public GStreamable {
public:
    explicit Child(Owner* of) : owner(of) { owner->children.push_back(this); }
    void shut_down() override
    {
        if (owner != nullptr)
            std::erase(owner->children, this);
        owner = nullptr;
    }
    Owner* owner;
};

class Refuser : public SampleNode {
public:
    void shut_down() override
    {
        if (refuses)
            throw std::runtime_error("not now");
    }
    bool refuses = true;
};

/// Destroys another object in its own destructor.
class Chained : public SampleNode {
public:
    ~Chained() override
    {
        GStreamable::destroy(destroyed_with);
        delete deleted_with;
    }
    GStreamable* destroyed_with = nullptr;
    GStreamable* deleted_with = nullptr;
};

}  // namespace

TEST(GPointer, IsFivePointerSizedWords)
{
    EXPECT_EQ(sizeof(GPointer), 5 * sizeof(void*));
}

TEST(GPointer, TargetIsDeleted_BothTargetWordsReadNull)
{
    auto node = std::make_unique<SampleNode>();
    Link link;
    link.follow(node.get());
    ASSERT_EQ(link.target, node.get());
    node.reset();

    EXPECT_EQ(link.target, nullptr);
    EXPECT_EQ(link.object, nullptr);
}

TEST(GPointer, TargetIsDestroyedWhileDeferring_ReadsNullAtOnce)
{
    const Deferring deferring;
    auto* node = new SampleNode;
    Link link;
    link.follow(node);
    GStreamable::destroy(node);

    EXPECT_EQ(link.target, nullptr);
    link.follow(node);  // its memory is still there
    EXPECT_EQ(link.target, nullptr);
}

TEST(GPointer, SeveralOnOneTarget_EachUnhooksAlone)
{
    auto node = std::make_unique<SampleNode>();
    auto first = std::make_unique<TGPointer<SampleNode>>(node.get());
    auto second = std::make_unique<TGPointer<SampleNode>>(node.get());
    auto third = std::make_unique<TGPointer<SampleNode>>(node.get());
    second.reset();  // the middle of the list
    third.reset();   // its head
    EXPECT_EQ(first->get(), node.get());
    node.reset();

    EXPECT_FALSE(*first);
}

TEST(GPointer, SetToAnother_FormerTargetLetsGo)
{
    auto former = std::make_unique<SampleNode>();
    SampleNode present;
    TGPointer<SampleNode> pointer(former.get());
    pointer = &present;
    former.reset();

    EXPECT_EQ(pointer.get(), &present);
    pointer = nullptr;
    EXPECT_EQ(pointer.get(), nullptr);
}

TEST(GPointer, RemovedFromList_TargetDies_NothingIsTouched)
{
    auto node = std::make_unique<SampleNode>();
    Link link;
    link.follow(node.get());
    link.remove_from_list();
    EXPECT_EQ(link.target, node.get());
    node.reset();

    link.remove_from_list();  // a second time, of a target that is gone
    EXPECT_EQ(link.previous, nullptr);
}

TEST(GPointer, Copies_FollowTheSameTarget)
{
    auto node = std::make_unique<SampleNode>();
    Link link;
    link.kind = 5;
    link.follow(node.get());
    Link copy(link);
    Link assigned;
    assigned = link;
    ASSERT_EQ(copy.target, node.get());
    ASSERT_EQ(assigned.target, node.get());
    node.reset();

    EXPECT_EQ(copy.target, nullptr);
    EXPECT_EQ(assigned.target, nullptr);
    EXPECT_EQ(assigned.kind, 5);
}

TEST(GPointer, UnhookedCopied_FollowsNothing)
{
    SampleNode node;
    Link link;
    link.follow(&node);
    link.remove_from_list();
    const Link copy(link);

    EXPECT_EQ(copy.target, nullptr);
    EXPECT_EQ(copy.previous, nullptr);
}

TEST(GPointer, TargetOfSecondBase_KeepsTheAddressItWasGiven)
{
    auto object = std::make_unique<SampleTagged>();
    GPointer pointer;
    pointer.set(static_cast<SampleTag*>(object.get()), static_cast<SampleLeaf*>(object.get()));
    EXPECT_EQ(pointer.target, static_cast<SampleTag*>(object.get()));
    object.reset();

    EXPECT_EQ(pointer.target, nullptr);
}

TEST(GObject, Copied_NobodyFollowsTheCopy)
{
    SampleNode original("a");
    TGPointer<SampleNode> pointer(&original);
    {
        SampleNode copy(original);
        copy.name = "b";
    }
    EXPECT_EQ(pointer.get(), &original);

    SampleNode assigned;
    TGPointer<SampleNode> follower(&assigned);
    assigned = original;
    EXPECT_EQ(follower.get(), &assigned);
    EXPECT_EQ(pointer.get(), &original);
}

TEST(GObject, EnableSmartPointers_Off_ZeroesAndRefusesPointers)
{
    SampleNode node;
    TGPointer<SampleNode> pointer(&node);
    node.enableSmartPointers(false);
    EXPECT_EQ(pointer.get(), nullptr);
    pointer = &node;
    EXPECT_EQ(pointer.get(), nullptr);
    node.enableSmartPointers(true);
    pointer = &node;

    EXPECT_EQ(pointer.get(), &node);
}

TEST(GObject, Condemn_EndsTheObjectAsDestroyDoes)
{
    const int alive = SampleNode::alive;
    const Deferring deferring;
    auto* node = new SampleNode;
    TGPointer<SampleNode> pointer(node);
    node->condemn();
    EXPECT_EQ(pointer.get(), nullptr);
    EXPECT_EQ(node->shut_downs, 1);
    SuspendedDestruction::DestroyAll();

    EXPECT_EQ(SampleNode::alive, alive);
}

TEST(GStreamable, Destroy_Null_IsIgnored)
{
    const int alive = SampleNode::alive;
    GStreamable::destroy(nullptr);
    GStreamable::Destroy(nullptr);

    EXPECT_EQ(SampleNode::alive, alive);
}

TEST(GStreamable, Destroy_NotDeferring_FreesAtOnce)
{
    const int alive = SampleNode::alive;
    GStreamable::destroy(new SampleNode);

    EXPECT_EQ(SampleNode::alive, alive);
}

TEST(GStreamable, Destroy_OfChild_LeavesOwnerBeforeItReturns)
{
    Owner owner;
    auto* child = new Child(&owner);
    GStreamable::destroy(child);

    EXPECT_TRUE(owner.children.empty());
}

TEST(GStreamable, Destroy_OfChildWhileDeferring_LeavesOwnerBeforeItReturns)
{
    const Deferring deferring;
    Owner owner;
    new Child(&owner);
    new Child(&owner);
    while (!owner.children.empty())
        GStreamable::destroy(owner.children.front());

    EXPECT_TRUE(owner.children.empty());
}

TEST(GStreamable, DestroyTwiceWhileDeferring_ShutsDownAndFreesOnce)
{
    const int alive = SampleNode::alive;
    const Deferring deferring;
    auto* node = new SampleNode;
    GStreamable::destroy(node);
    GStreamable::destroy(node);
    GStreamable::Destroy(node);
    EXPECT_EQ(node->shut_downs, 1);
    EXPECT_EQ(SampleNode::alive, alive + 1);
    SuspendedDestruction::DestroyAll();

    EXPECT_EQ(SampleNode::alive, alive);
}

TEST(GStreamable, DestroyOfSingleOwner_FreesAtOnceWhileDeferring)
{
    const int alive = SampleNode::alive;
    const Deferring deferring;
    GStreamable::Destroy(new SampleNode);

    EXPECT_EQ(SampleNode::alive, alive);
}

TEST(GStreamable, Destroy_ShutDownThrows_ObjectLivesOn)
{
    auto* refuser = new Refuser;
    TGPointer<Refuser> pointer(refuser);
    EXPECT_THROW(GStreamable::destroy(refuser), std::runtime_error);
    EXPECT_EQ(pointer.get(), refuser);
    refuser->refuses = false;
    GStreamable::destroy(refuser);

    EXPECT_EQ(pointer.get(), nullptr);
}

TEST(SuspendedDestruction, EnableOff_FreesWhatWaits)
{
    const int alive = SampleNode::alive;
    SuspendedDestruction::Enable(1);
    EXPECT_TRUE(SuspendedDestruction::IsEnabled());
    GStreamable::destroy(new SampleNode);
    EXPECT_EQ(SampleNode::alive, alive + 1);
    SuspendedDestruction::Enable(0);

    EXPECT_FALSE(SuspendedDestruction::IsEnabled());
    EXPECT_EQ(SampleNode::alive, alive);
}

TEST(SuspendedDestruction, DestroyAll_FreesAlsoWhatIsAddedMeanwhile)
{
    const int alive = SampleNode::alive;
    const Deferring deferring;
    auto* outer = new Chained;
    auto* inner = new Chained;
    outer->destroyed_with = inner;
    inner->destroyed_with = new SampleNode;
    GStreamable::destroy(outer);
    SuspendedDestruction::DestroyAll();

    EXPECT_EQ(SampleNode::alive, alive);
}

TEST(SuspendedDestruction, WaitingObjectIsDeletedDirectly_IsNotFreedAgain)
{
    const int alive = SampleNode::alive;
    const Deferring deferring;
    auto* first = new SampleNode;
    auto* second = new SampleNode;
    GStreamable::destroy(first);
    GStreamable::destroy(second);
    delete first;
    EXPECT_EQ(SampleNode::alive, alive + 1);
    SuspendedDestruction::DestroyAll();

    EXPECT_EQ(SampleNode::alive, alive);
}

TEST(SuspendedDestruction, DestructorDeletesOneThatWaits_IsNotFreedAgain)
{
    const int alive = SampleNode::alive;
    const Deferring deferring;
    auto* outer = new Chained;
    outer->deleted_with = new SampleNode;
    GStreamable::destroy(outer);
    GStreamable::destroy(outer->deleted_with);
    SuspendedDestruction::DestroyAll();

    EXPECT_EQ(SampleNode::alive, alive);
}

TEST(SuspendedDestruction, CalledInsideItself_FreesEachOnce)
{
    class Nested : public SampleNode {
    public:
        ~Nested() override { SuspendedDestruction::DestroyAll(); }
    };
    const int alive = SampleNode::alive;
    const Deferring deferring;
    for (int count = 0; count < 5; ++count)
        GStreamable::destroy(new Nested);
    SuspendedDestruction::DestroyAll();

    EXPECT_EQ(SampleNode::alive, alive);
}
