#include "TestObjects.h"
#include "foundation/GException.h"
#include "foundation/OwnedObject.h"
#include "foundation/mpstream.h"
#include "odb/ODB_ClassFilter.h"
#include "odb/ODB_FiltersContainer.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_RegularExpressionFilter.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace {

using Bytes = std::vector<unsigned char>;

/// A note of a derived class.
class TestLetter : public TestNote {
    G_DECLARE_CLASS(TestLetter)
};

/// Counts what is asked of it.
class TestCounter : public ODB_ContentsFilter {
    G_DECLARE_CLASS(TestCounter)

public:
    TestCounter() { ++alive; }
    explicit TestCounter(unsigned char answer) : answer_(answer) { ++alive; }
    ~TestCounter() override { --alive; }

    void read(ipstream& in) override { answer_ = in.readByte(); }
    void write(opstream& out) override { out.writeByte(answer_); }
    unsigned char accept(const ODB_Mediator& mediator) override
    {
        asked.emplace_back(mediator.get_DB_key().text);
        return answer_;
    }
    static int alive;
    static std::vector<std::string> asked;

private:
    unsigned char answer_ = 1;
};

G_DEFINE_CLASS(TestLetter, TestNote);
G_DEFINE_CLASS(TestCounter, ODB_ContentsFilter);
int TestCounter::alive = 0;
std::vector<std::string> TestCounter::asked;

/// An entry whose object's class has the given name, known or not.
class FilterTest : public OdbTest {
public:
    ODB_Mediator& entry(const char* name, const char* class_name)
    {
        ompstream out;
        out.writeByte(2);  // a new object
        out.writeString("ODB_InternalObject");
        out.writeByte(3);
        out.writeByte(3);
        out << GString(class_name) << GResourceFullName();
        out.writeByte(0);
        impstream in(out.bytes());
        auto* const mediator = in.read_pointer<ODB_Mediator>();
        const GResourceFullName place(GResourcePath(), GString(name),
                                      ObjectDatabase::MediatorResourceType);
        database.put(mediator, place, true);
        return *database.get_mediator(GString(name));
    }
};

Bytes written(ODB_ContentsFilter& object)
{
    ompstream out;
    object.write(out);
    const auto bytes = out.bytes();
    return {bytes.begin(), bytes.end()};
}

template <class Filter>
void read_back(const Bytes& bytes, Filter& filter)
{
    impstream in((std::span<const unsigned char>(bytes)));
    filter.read(in);
    EXPECT_EQ(in.remaining(), 0);
}

using OwnedFilter = zmr::OwnedObject<ODB_ContentsFilter>;

std::vector<std::string> names_in(const ODB_MediatorsArray& array)
{
    std::vector<std::string> names;
    for (long i = 0; i < array.count; ++i)
        names.emplace_back(array.at(i).get_DB_key().text);
    return names;
}

}  // namespace

TEST(ODB_ContentsFilter, IsAbstract)
{
    const GMetaClass* const metaclass = GMetaClass::FindByName("ODB_ContentsFilter");

    ASSERT_NE(metaclass, nullptr);
    EXPECT_EQ(metaclass->getBuilder(), nullptr);
}

TEST(ODB_RegularExpressionFilter, MatchesTheWholeNameOnly)
{
    FilterTest test;
    ODB_RegularExpressionFilter filter("lamp.*");
    TestNote note("x");
    const GResourcePath path = path_of({"lamps"});
    test.database.append_object(&note, path, GString("chair"), nullptr);

    EXPECT_NE(filter.accept(test.entry("lamp12", "TestNote")), 0);
    EXPECT_EQ(filter.accept(test.entry("a lamp", "TestNote")), 0);
    EXPECT_EQ(filter.accept(test.entry("Lamp", "lamp")), 0);
    EXPECT_EQ(filter.accept(*test.database.get_mediator(path, GString("chair"))), 0);
}

TEST(ODB_RegularExpressionFilter, RefusedPattern_AcceptsNothingAndThrowsNothing)
{
    FilterTest test;
    ODB_Mediator& lamp = test.entry("lamp", "TestNote");
    ODB_RegularExpressionFilter open_group("(lamp");
    ODB_RegularExpressionFilter too_long(std::string(1001, '.').c_str());
    ODB_RegularExpressionFilter none(nullptr);

    EXPECT_EQ(open_group.accept(lamp), 0);
    EXPECT_EQ(too_long.accept(lamp), 0);
    EXPECT_EQ(none.accept(lamp), 0);
}

TEST(ODB_RegularExpressionFilter, Stream_IsAByteAndTheExpression)
{
    FilterTest test;
    ODB_RegularExpressionFilter filter("l.mp");
    ompstream expected;
    expected.writeByte(0);
    expected << RegularExpression("l.mp");

    const Bytes bytes = written(filter);

    EXPECT_TRUE(std::ranges::equal(bytes, expected.bytes()));
    ODB_RegularExpressionFilter back("other");
    read_back(bytes, back);
    EXPECT_NE(back.accept(test.entry("lamp", "TestNote")), 0);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        impstream in(std::span<const unsigned char>(bytes.data(), length));
        EXPECT_THROW(back.read(in), GStreamException) << length;
    }
}

TEST(ODB_RegularExpressionFilter, Copy_MatchesTheSame)
{
    FilterTest test;
    ODB_RegularExpressionFilter copy(ODB_RegularExpressionFilter("l.mp"));
    ODB_RegularExpressionFilter assigned("x");
    assigned = copy;

    EXPECT_NE(copy.accept(test.entry("lamp", "TestNote")), 0);
    EXPECT_NE(assigned.accept(test.entry("lump", "TestNote")), 0);
}

TEST(ODB_ClassFilter, NotRelated_AcceptsTheVeryClassOnly)
{
    FilterTest test;
    ODB_ClassFilter filter(&TestNote::metaclass_, 0);

    EXPECT_NE(filter.accept(test.entry("a", "TestNote")), 0);
    EXPECT_EQ(filter.accept(test.entry("b", "TestLetter")), 0);
    EXPECT_EQ(filter.accept(test.entry("c", "GStreamable")), 0);
    EXPECT_EQ(filter.get_class_name(), "TestNote");
}

TEST(ODB_ClassFilter, Related_AcceptsTheClassAndItsBasesButNoDerivedClass)
{
    FilterTest test;
    ODB_ClassFilter filter("TestNote", 1);

    EXPECT_NE(filter.accept(test.entry("a", "TestNote")), 0);
    EXPECT_NE(filter.accept(test.entry("b", "GStreamable")), 0);
    EXPECT_EQ(filter.accept(test.entry("c", "TestLetter")), 0);
    EXPECT_EQ(filter.accept(test.entry("d", "TestRating")), 0);
    ODB_ClassFilter letters("TestLetter", 1);
    EXPECT_NE(letters.accept(test.entry("e", "TestNote")), 0);
}

TEST(ODB_ClassFilter, ClassThatIsNotRegistered_IsComparedByName)
{
    FilterTest test;
    ODB_ClassFilter unknown("ClassOfAnotherProgram", 1);
    ODB_ClassFilter known("TestNote", 1);

    EXPECT_EQ(unknown.get_class_identifier(), nullptr);
    EXPECT_NE(unknown.accept(test.entry("a", "ClassOfAnotherProgram")), 0);
    EXPECT_EQ(unknown.accept(test.entry("b", "ClassOfAThirdOne")), 0);
    EXPECT_EQ(unknown.accept(test.entry("c", "TestNote")), 0);
    EXPECT_EQ(known.accept(test.entry("d", "ClassOfAnotherProgram")), 0);
}

TEST(ODB_ClassFilter, NoClassNameAndAnEmptyFilter_AreAcceptedByTheNameRule)
{
    FilterTest test;
    ODB_Mediator& nameless = test.entry("a", "");
    ODB_ClassFilter empty("", 0);
    ODB_ClassFilter null_class(static_cast<const GMetaClass*>(nullptr), 1);
    ODB_ClassFilter null_name(static_cast<const char*>(nullptr), 1);
    ODB_ClassFilter note("TestNote", 0);

    EXPECT_NE(empty.accept(nameless), 0);
    EXPECT_NE(null_class.accept(nameless), 0);
    EXPECT_NE(null_name.accept(nameless), 0);
    EXPECT_EQ(note.accept(nameless), 0);
    EXPECT_EQ(empty.accept(test.entry("b", "TestNote")), 0);
}

TEST(ODB_ClassFilter, Stream_IsAByteTheNameAndTheFlag)
{
    ODB_ClassFilter filter("TestNote", 1);
    ompstream expected;
    expected.writeByte(0);
    expected << GString("TestNote");
    expected.writeByte(1);

    const Bytes bytes = written(filter);

    EXPECT_TRUE(std::ranges::equal(bytes, expected.bytes()));
    ODB_ClassFilter back("Other", 0);
    read_back(bytes, back);
    EXPECT_EQ(back.get_class_identifier(), &TestNote::metaclass_);
    EXPECT_EQ(back.get_related(), 1);
}

TEST(ODB_ClassFilter, ReadWhereTheClassIsMissing_ComparesNames)
{
    FilterTest test;
    ODB_ClassFilter foreign("ClassOfAnotherProgram", 0);
    ODB_ClassFilter back("TestNote", 0);

    read_back(written(foreign), back);

    EXPECT_EQ(back.get_class_identifier(), nullptr);
    EXPECT_NE(back.accept(test.entry("a", "ClassOfAnotherProgram")), 0);
}

TEST(ODB_ClassFilter, EveryCutLength_EndsInAnException)
{
    ODB_ClassFilter filter("TestNote", 1);
    const Bytes bytes = written(filter);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        impstream in(std::span<const unsigned char>(bytes.data(), length));
        ODB_ClassFilter back("TestRating", 0);
        EXPECT_THROW(back.read(in), GStreamException) << length;
        EXPECT_EQ(back.get_class_identifier(), &TestRating::metaclass_);
    }
}

TEST(ODB_FiltersContainer, Empty_AcceptsEverything)
{
    FilterTest test;
    ODB_FiltersContainer container;

    EXPECT_NE(container.accept(test.entry("a", "")), 0);
}

TEST(ODB_FiltersContainer, StopsAtTheFirstRefusal)
{
    FilterTest test;
    ODB_Mediator& lamp = test.entry("lamp", "TestNote");
    ODB_FiltersContainer container;
    container.insert(new TestCounter(1));
    container.insert(new TestCounter(0));
    container.insert(new TestCounter(1));
    TestCounter::asked.clear();

    EXPECT_EQ(container.accept(lamp), 0);

    EXPECT_EQ(TestCounter::asked.size(), 2u);
    EXPECT_EQ(container.count, 3);
}

TEST(ODB_FiltersContainer, At_GivesTheFiltersInTheOrderOfTheirInsertion)
{
    ODB_FiltersContainer container;
    auto* const first = new TestCounter(1);
    auto* const second = new ODB_ClassFilter("TestNote", 0);
    container.insert(first);
    container.insert(second);

    EXPECT_EQ(&container.at(0), first);
    EXPECT_EQ(&container.at(1), second);
}

TEST(ODB_FiltersContainer, OwnsItsFilters)
{
    TestCounter::alive = 0;
    {
        ODB_FiltersContainer container;
        container.insert(new TestCounter);
        container.insert(new TestCounter);
        EXPECT_EQ(TestCounter::alive, 2);
    }
    EXPECT_EQ(TestCounter::alive, 0);
}

TEST(ODB_FiltersContainer, Containers_Nest)
{
    FilterTest test;
    auto* const inner = new ODB_FiltersContainer;
    inner->insert(new ODB_RegularExpressionFilter("l.*"));
    ODB_FiltersContainer outer;
    outer.insert(new ODB_ClassFilter("TestNote", 0));
    outer.insert(inner);

    EXPECT_NE(outer.accept(test.entry("lamp", "TestNote")), 0);
    EXPECT_EQ(outer.accept(test.entry("chair", "TestNote")), 0);
    EXPECT_EQ(outer.accept(test.entry("light", "TestRating")), 0);
}

TEST(ODB_FiltersContainer, Stream_IsAByteAndTheCollection)
{
    ODB_FiltersContainer container;
    container.insert(new ODB_ClassFilter("TestNote", 1));
    container.v_insert(nullptr);
    ompstream expected;
    expected.writeByte(0);
    container.GCollection::write(expected);

    EXPECT_TRUE(std::ranges::equal(written(container), expected.bytes()));
}

TEST(ODB_FiltersContainer, NestedWithNulls_ReadsBackAndOwnsAll)
{
    FilterTest test;
    TestCounter::alive = 0;
    {
        ODB_FiltersContainer container;
        container.insert(new TestCounter(1));
        container.v_insert(nullptr);
        auto* const inner = new ODB_FiltersContainer;
        inner->insert(new ODB_ClassFilter("TestNote", 0));
        inner->insert(new TestCounter(1));
        container.insert(inner);
        ompstream out;
        out.writePointer(static_cast<ODB_ContentsFilter*>(&container));

        impstream in(out.bytes());
        const OwnedFilter back(in.read_owned<ODB_ContentsFilter>());

        auto* const copy = zmr::class_cast<ODB_FiltersContainer>(back.get());
        ASSERT_NE(copy, nullptr);
        ASSERT_EQ(copy->count, 3);
        EXPECT_EQ(copy->GCollection::at(1), nullptr);
        EXPECT_EQ(TestCounter::alive, 4);
        EXPECT_NE(copy->accept(test.entry("a", "TestNote")), 0);
        EXPECT_EQ(copy->accept(test.entry("b", "TestRating")), 0);
    }
    EXPECT_EQ(TestCounter::alive, 0);
}

TEST(ODB_FiltersContainer, StreamThatDeniesOwnership_IsOwnedAllTheSame)
{
    TestCounter::alive = 0;
    {
        ODB_FiltersContainer container;
        container.insert(new TestCounter(1));
        container.owns_items = 0;
        const Bytes bytes = written(container);
        container.owns_items = 1;
        ODB_FiltersContainer back;
        read_back(bytes, back);
        EXPECT_NE(back.owns_items, 0);
    }
    EXPECT_EQ(TestCounter::alive, 0);
}

TEST(ODB_FiltersContainer, EveryCutLength_EndsInAnExceptionAndLeavesNoFilterBehind)
{
    TestCounter::alive = 0;
    {
        ODB_FiltersContainer container;
        container.insert(new TestCounter(1));
        container.insert(new ODB_ClassFilter("TestNote", 0));
        container.insert(new TestCounter(0));
        const Bytes bytes = written(container);
        for (std::size_t length = 0; length < bytes.size(); ++length) {
            impstream in(std::span<const unsigned char>(bytes.data(), length));
            ODB_FiltersContainer back;
            EXPECT_THROW(back.read(in), GStreamException) << length;
        }
        EXPECT_EQ(TestCounter::alive, 2);
    }
    EXPECT_EQ(TestCounter::alive, 0);
}

TEST(ODB_FiltersContainer, UnknownFilterClass_RaisesWhatReadPointerRaises)
{
    ODB_FiltersContainer container;
    container.insert(new TestCounter(1));
    Bytes bytes = written(container);
    const std::string name = "TestCounter";
    const auto at = std::search(bytes.begin(), bytes.end(), name.begin(), name.end());
    ASSERT_NE(at, bytes.end());
    *at = 'B';
    ODB_FiltersContainer back;
    impstream in((std::span<const unsigned char>(bytes)));

    EXPECT_THROW(back.read(in), UnknownStreamableType_Exception);
}

TEST(ODB_FiltersContainer, OneFilterTwice_IsRefused)
{
    TestCounter::alive = 0;
    {
        ODB_FiltersContainer container;
        auto* const filter = new TestCounter(1);
        container.insert(filter);
        container.insert(filter);
        const Bytes bytes = written(container);
        container.v_at_remove(1);
        ODB_FiltersContainer back;
        impstream in((std::span<const unsigned char>(bytes)));

        EXPECT_THROW(back.read(in), GStreamException);
    }
    EXPECT_EQ(TestCounter::alive, 0);
}

TEST(ODB_FiltersContainer, Clone_HasFiltersOfItsOwn)
{
    FilterTest test;
    ODB_FiltersContainer container;
    container.insert(new ODB_ClassFilter("TestNote", 0));

    ODB_ContentsFilter& filter = container;
    const std::unique_ptr<GStreamable> clone(filter.clone(true));

    auto* const copy = zmr::class_cast<ODB_FiltersContainer>(clone.get());
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->count, 1);
    EXPECT_NE(&copy->at(0), &container.at(0));
}

TEST(ODB_MediatorsArray, ApplyFilter_AsksFromTheLastToTheFirstAndKeepsTheOrder)
{
    FilterTest test;
    for (const char* const name : {"a", "b", "c", "d", "e"})
        test.entry(name, name[0] % 2 == 0 ? "TestNote" : "TestRating");
    ODB_MediatorsArray contents;
    test.database.get_contents(contents, false);
    ODB_FiltersContainer filter;
    filter.insert(new TestCounter(1));
    filter.insert(new ODB_ClassFilter("TestRating", 0));
    TestCounter::asked.clear();

    contents.apply_filter(filter);

    EXPECT_EQ(TestCounter::asked, (std::vector<std::string>{"e", "d", "c", "b", "a"}));
    EXPECT_EQ(names_in(contents), (std::vector<std::string>{"a", "c", "e"}));
}

TEST(ODB_MediatorsArray, ApplyFilter_ThatRefusesAllOrNone)
{
    FilterTest test;
    for (const char* const name : {"a", "b", "c"})
        test.entry(name, "TestNote");
    ODB_MediatorsArray contents;
    contents.apply_filter(ODB_ClassFilter("TestNote", 0));
    EXPECT_EQ(contents.count, 0);
    test.database.get_contents(contents, false);

    contents.apply_filter(ODB_ClassFilter("TestNote", 0));
    EXPECT_EQ(contents.count, 3);
    contents.apply_filter(ODB_ClassFilter("TestRating", 0));

    EXPECT_EQ(contents.count, 0);
}

TEST(ODB_MediatorsArray, ApplyFilter_ThatThrows_LeavesTheUnaskedAndTheWanted)
{
    class Throwing : public ODB_ContentsFilter {
    public:
        unsigned char accept(const ODB_Mediator& mediator) override
        {
            if (mediator.get_DB_key() == "b")
                throw std::runtime_error("enough");
            return mediator.get_DB_key() == "e" ? 1 : 0;
        }
    };
    FilterTest test;
    for (const char* const name : {"a", "b", "c", "d", "e"})
        test.entry(name, "TestNote");
    ODB_MediatorsArray contents;
    test.database.get_contents(contents, false);

    EXPECT_THROW(contents.apply_filter(Throwing()), std::runtime_error);

    EXPECT_EQ(names_in(contents), (std::vector<std::string>{"a", "b", "e"}));
}
