#include "foundation/GSUSInfo.h"
#include "foundation/mpstream.h"
#include "tests/responder/TestResponders.h"

#include <gtest/gtest.h>

namespace {

/// The chain by name.
std::string chain_of(const GBehaviour* head)
{
    std::string names;
    for (; head != nullptr; head = head->get_next())
        names += static_cast<const TestBehaviour*>(head)->name;
    return names;
}

/// The words of the chain that a stream gives.
std::vector<std::uint32_t> words_of(const GBehaviour* head)
{
    std::vector<std::uint32_t> words;
    for (; head != nullptr; head = head->get_next())
        words.push_back(head->user_word);
    return words;
}

std::vector<std::uint32_t> streamed_words(GResponder& source)
{
    ompstream out;
    source.write_behaviours(out);
    impstream in(out.bytes());
    GResponder target;
    target.read_behaviours(in);
    EXPECT_EQ(in.remaining(), 0);
    return words_of(target.get_behaviours());
}

/// Responder with behaviours whose words are 1, 2, 3 from the head on.
struct ThreeBehaviours {
    ThreeBehaviours()
    {
        for (std::uint32_t word = 3; word >= 1; --word) {
            auto* behaviour = new TestBehaviour;
            behaviour->user_word = word;
            responder.attach(behaviour);
            all[word - 1] = behaviour;
        }
    }
    GResponder responder;
    TestBehaviour* all[3];
};

}  // namespace

TEST(GBehaviour, New_HasItsDefaults)
{
    GBehaviour behaviour;

    EXPECT_EQ(behaviour.mode, 1);
    EXPECT_EQ(behaviour.user_word, 0U);
    EXPECT_EQ(behaviour.get_next(), nullptr);
    GEvent event;
    EXPECT_FALSE(behaviour.mouse_ran_round(event));
    EXPECT_NE(GBehaviour::metaclass_.getBuilder(), nullptr);
    EXPECT_EQ(GMetaClass::FindByName("GBehaviour"), &GBehaviour::metaclass_);
}

TEST(GBehaviour, AttachAndDetachNull_DoNothing)
{
    GResponder responder;

    responder.attach_behaviour(nullptr);
    responder.detach_behaviour(nullptr);

    EXPECT_EQ(responder.get_behaviours(), nullptr);
}

TEST(GBehaviour, DetachFromAnotherResponder_DoesNothing)
{
    Log log;
    GResponder one;
    GResponder other;
    auto* behaviour = new TestBehaviour("b", &log);
    one.attach(behaviour);
    log.clear();

    other.detach(behaviour);

    EXPECT_EQ(one.get_behaviours(), behaviour);
    EXPECT_EQ(behaviour->host(), &one);
    EXPECT_TRUE(log.empty());
}

TEST(GBehaviour, LastAttached_IsTheHead)
{
    GResponder responder;
    auto* a = new TestBehaviour("a");
    auto* b = new TestBehaviour("b");
    responder.attach(a);
    responder.attach(b);

    EXPECT_EQ(responder.get_behaviours(), b);
    EXPECT_EQ(b->get_next(), a);
    EXPECT_EQ(a->get_next(), nullptr);
    EXPECT_EQ(a->host(), &responder);
}

TEST(GBehaviour, DetachFromEachPlace_LeavesTheOthersAndItsOwnLink)
{
    for (const int place : {0, 1, 2}) {
        GResponder responder;
        TestBehaviour* all[3];
        for (int number = 2; number >= 0; --number) {
            all[number] = new TestBehaviour(std::to_string(number).c_str());
            responder.attach(all[number]);
        }
        GBehaviour* const behind = all[place]->get_next();

        responder.detach(all[place]);

        std::string expected = "012";
        expected.erase(static_cast<unsigned>(place), 1);
        EXPECT_EQ(chain_of(responder.get_behaviours()), expected);
        EXPECT_EQ(all[place]->get_next(), behind);
        EXPECT_EQ(all[place]->host(), nullptr);
        GStreamable::Destroy(all[place]);
    }
}

TEST(GBehaviour, AttachedElsewhere_LeavesItsFormerPlaceFirst)
{
    Log log;
    GResponder one;
    GResponder other;
    auto* behaviour = new TestBehaviour("b", &log);
    one.attach(behaviour);
    other.attach(behaviour);
    other.attach(behaviour);  // also to the same one again

    EXPECT_EQ(one.get_behaviours(), nullptr);
    EXPECT_EQ(chain_of(other.get_behaviours()), "b");
    EXPECT_EQ(behaviour->get_next(), nullptr);
    const Log expected = {"b attached", "b detached", "b attached", "b detached", "b attached"};
    EXPECT_EQ(log, expected);
}

TEST(GBehaviour, Destroyed_DetachesItself)
{
    GResponder responder;
    auto* a = new TestBehaviour("a");
    auto* b = new TestBehaviour("b");
    responder.attach(a);
    responder.attach(b);

    GStreamable::destroy(b);
    EXPECT_EQ(chain_of(responder.get_behaviours()), "a");
    delete a;
    EXPECT_EQ(responder.get_behaviours(), nullptr);
}

TEST(GBehaviour, ResponderThatEnds_EndsItsBehavioursFromTheHead)
{
    Log log;
    const int alive = TestBehaviour::alive;
    {
        GResponder responder;
        responder.attach(new TestBehaviour("b", &log));
        responder.attach(new TestBehaviour("a", &log));
        log.clear();
        responder.destroy_all_behaviours();
        EXPECT_EQ(responder.get_behaviours(), nullptr);
        const Log expected = {"a detached", "b detached"};
        EXPECT_EQ(log, expected);
        responder.attach(new TestBehaviour("c"));
    }
    EXPECT_EQ(TestBehaviour::alive, alive);
}

TEST(GBehaviour, Copy_IsAttachedNowhereAndNamesTheNext)
{
    GResponder responder;
    responder.attach(new TestBehaviour("b"));
    auto* a = new TestBehaviour("a");
    a->mode = 3;
    a->user_word = 9;
    responder.attach(a);

    TestBehaviour copy(*a);
    EXPECT_EQ(copy.mode, 3);
    EXPECT_EQ(copy.user_word, 9U);
    EXPECT_EQ(copy.get_next(), a->get_next());
    EXPECT_EQ(copy.host(), nullptr);
}

TEST(GBehaviour, Assignment_KeepsThePlaceInTheChain)
{
    GResponder responder;
    auto* b = new GBehaviour;
    auto* a = new GBehaviour;
    responder.attach(b);
    responder.attach(a);
    GBehaviour other;
    other.user_word = 4;

    *a = other;
    EXPECT_EQ(a->user_word, 4U);
    EXPECT_EQ(a->get_next(), b);
    other = *a;
    EXPECT_EQ(other.get_next(), b);
}

TEST(GBehaviour, ChainWithNothingToWrite_StreamsAsOneNull)
{
    ThreeBehaviours three;
    for (TestBehaviour* behaviour : three.all)
        behaviour->leave_out();
    ompstream out;
    three.responder.write_behaviours(out);

    ASSERT_EQ(out.bytes().size(), 1U);
    EXPECT_EQ(out.bytes()[0], 0);
    EXPECT_TRUE(streamed_words(three.responder).empty());
}

TEST(GBehaviour, NotWrittenAnywhereInTheChain_IsLeftOut)
{
    for (const std::uint32_t left_out : {0U, 1U, 2U}) {
        ThreeBehaviours three;
        three.all[left_out]->leave_out();
        std::vector<std::uint32_t> expected = {1, 2, 3};
        expected.erase(expected.begin() + left_out);

        EXPECT_EQ(streamed_words(three.responder), expected);
    }
}

TEST(GBehaviour, Version1WithTheReadersConstructor_LeavesTheWordZero)
{
    ompstream out;
    out.writeByte(1);
    out.writeByte(2);
    out.writePointer(nullptr);
    impstream in(out.bytes());
    BuiltBehaviour behaviour;
    GSUSInfo::InputScale(5.0);

    behaviour.read(in);

    EXPECT_EQ(behaviour.user_word, 0U);
    EXPECT_EQ(behaviour.mode, 2);
    EXPECT_EQ(GSUSInfo::GetInputScale(), 1.0);
    EXPECT_EQ(in.remaining(), 0);
}

TEST(GBehaviour, EveryVersion_ReadsItsFields)
{
    for (unsigned char version = 0; version <= 4; ++version) {
        ompstream out;
        out.writeByte(version);
        if (version >= 2)
            out.writeByte(0);  // the base part
        if (version == 0) {
            out.writePointer(nullptr);  // the host
            out.writePointer(nullptr);
            out.writeByte(3);
        } else {
            out.writeByte(3);
            out.writePointer(nullptr);
        }
        if (version >= 3)
            out.writeDWord(0xFEDCBA98UL);
        impstream in(out.bytes());
        GBehaviour behaviour;
        behaviour.user_word = 11;

        behaviour.read(in);

        EXPECT_EQ(behaviour.mode, 3) << int{version};
        EXPECT_EQ(behaviour.user_word, version >= 3 ? 0xFEDCBA98U : 11U);
        EXPECT_EQ(in.remaining(), 0);
    }
}

TEST(GBehaviour, Write_IsVersion3FieldByField)
{
    GBehaviour behaviour;
    behaviour.mode = 2;
    behaviour.user_word = 0x01020304;
    ompstream out;
    behaviour.write(out);

    const std::vector<unsigned char> expected = {3, 0, 2, 0, 4, 3, 2, 1};
    EXPECT_EQ(std::vector<unsigned char>(out.bytes().begin(), out.bytes().end()), expected);
}

TEST(GBehaviour, CloneOfTheHead_ClonesTheChain)
{
    ThreeBehaviours three;
    GStreamable* clone = three.all[0]->clone(true);
    auto* head = static_cast<TestBehaviour*>(clone->cast_to_(TestBehaviour::gTypeInfo_));

    EXPECT_EQ(words_of(head), (std::vector<std::uint32_t>{1, 2, 3}));
    while (head != nullptr) {
        auto* next = static_cast<TestBehaviour*>(head->get_next());
        EXPECT_EQ(head->host(), nullptr);
        GStreamable::Destroy(head);
        head = next;
    }
}

TEST(GBehaviour, StreamThatGivesOneTwice_CutsTheChain)
{
    ompstream out;
    out.writeByte(2);  // a new class
    out.writeString("GBehaviour");
    out.writeByte(3);  // version
    out.writeByte(0);
    out.writeByte(1);
    out.writeByte(1);  // the next one is object number 0, this very one
    out.writeDWord(0);
    out.writeDWord(77);
    impstream in(out.bytes());
    GResponder responder;

    responder.read_behaviours(in);

    ASSERT_NE(responder.get_behaviours(), nullptr);
    EXPECT_EQ(responder.get_behaviours()->user_word, 77U);
    EXPECT_EQ(responder.get_behaviours()->get_next(), nullptr);
}
