#include "responder/GResponder_Iterators.h"
#include "tests/responder/TestResponders.h"

#include <gtest/gtest.h>

namespace {

std::string name_of(GResponder* responder)
{
    return responder == nullptr ? "-" : static_cast<TestResponder*>(responder)->name;
}

/// t: a (a1, a2), b, c (c1)
Ended<TestResponder> sample_tree()
{
    auto top = make<TestResponder>("t ");
    TestResponder* a = add(*top, "a ");
    add(*a, "a1 ");
    add(*a, "a2 ");
    add(*top, "b ");
    add(*add(*top, "c "), "c1 ");
    return top;
}

std::string walked(GResponder_Traverser walk)
{
    std::string names;
    for (; walk(); ++walk)
        names += name_of(walk.object());
    return names;
}

}  // namespace

TEST(GResponder_Iterator, WalksForwardAndRestarts)
{
    const auto top = sample_tree();
    std::string names;
    GResponder_Iterator child(*top);
    for (; child(); child++)
        names += name_of(child);
    EXPECT_EQ(names, "a b c ");
    EXPECT_EQ(child.object(), nullptr);  // beyond the end
    child.restart();
    EXPECT_EQ(child.object(), top->first());
}

TEST(GResponder_Iterator, FromForeign_IsFinishedAtOnce)
{
    const auto top = sample_tree();
    GResponder foreign;

    EXPECT_FALSE(GResponder_Iterator(*top, &foreign)());
    EXPECT_FALSE(GResponder_Iterator(*top, nullptr)());
}

TEST(GResponder_Iterator, RestartOfOneBuiltWithFrom_GoesToTheFront)
{
    const auto top = sample_tree();
    GResponder_Iterator child(*top, top->at(1));
    EXPECT_EQ(name_of(child.object()), "b ");
    child.restart();
    EXPECT_EQ(name_of(child.object()), "a ");
}

TEST(GResponder_Iterator, ChildrenAddedOnTheWay_AreSeen)
{
    const auto top = sample_tree();
    int seen = 0;
    for (GResponder_Iterator child(*top); child(); ++child) {
        if (++seen == 2)
            add(*top, "d ");
    }
    EXPECT_EQ(seen, 4);
}

TEST(GResponder_Iterator, AssignmentAndPostfix_KeepThePosition)
{
    const auto top = sample_tree();
    GResponder_Iterator child(*top);
    const GResponder_Iterator before = child++;
    GResponder_Iterator copy(*top);
    copy = child;

    EXPECT_EQ(name_of(before.object()), "a ");
    EXPECT_EQ(name_of(copy.object()), "b ");
}

TEST(GResponder_ReverseIterator, WalksBackward)
{
    const auto top = sample_tree();
    std::string names;
    GResponder_ReverseIterator child(*top);
    for (; child(); child--)
        names += name_of(child);
    EXPECT_EQ(names, "c b a ");
    EXPECT_EQ(child.object(), nullptr);
    child.restart();
    EXPECT_EQ(name_of(child.object()), "c ");
}

TEST(GResponder_ReverseIterator, FromForeign_IsFinishedAtOnce)
{
    const auto top = sample_tree();
    GResponder foreign;

    EXPECT_FALSE(GResponder_ReverseIterator(*top, &foreign)());
    EXPECT_FALSE(GResponder_ReverseIterator(*top, nullptr)());
    GResponder_ReverseIterator child(*top, top->at(1));
    EXPECT_EQ(name_of(child.object()), "b ");
    --child;
    EXPECT_EQ(name_of(child.object()), "a ");
}

TEST(GResponder_ReverseIterator, ChildrenTakenOutOnTheWay_LeaveTheOthers)
{
    const auto top = sample_tree();
    for (GResponder_ReverseIterator child(*top); child(); --child)
        GStreamable::Destroy(child.object());

    EXPECT_EQ(top->getCount(), 0);
}

TEST(GResponder_Traverser, AllOrLeavesOnly_PreOrderWithoutTheRoot)
{
    const auto top = sample_tree();

    EXPECT_EQ(walked(GResponder_Traverser(*top, 1)), "a a1 a2 b c c1 ");
    EXPECT_EQ(walked(GResponder_Traverser(*top, 0)), "a1 a2 b c1 ");
}

TEST(GResponder_Traverser, RootWithoutChildren_StandsForItself)
{
    TestResponder leaf("l");

    EXPECT_EQ(walked(GResponder_Traverser(leaf, 1)), "l");
    EXPECT_EQ(walked(GResponder_Traverser(leaf, 0)), "l");
}

TEST(GResponder_Traverser, TreeThatChanges_SnapshotStays)
{
    const auto top = sample_tree();
    GResponder_Traverser walk(*top, 1);
    add(*top, "d ");
    Ended<GResponder> b(top->at(1));
    top->remove(b.get());

    EXPECT_EQ(walked(walk), "a a1 a2 b c c1 ");
    while (walk())
        walk++;
    EXPECT_EQ(walk.object(), nullptr);
    walk.restart();
    EXPECT_EQ(name_of(walk), "a ");
}
