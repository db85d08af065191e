#include "SampleObjects.h"
#include "foundation/GClassDictionary.h"
#include "foundation/GClassRegistry.h"
#include "foundation/GMetaClass.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

const type_info kLateType("LateClass");

/// A class that is registered at run time, as by a module that is loaded late.
std::unique_ptr<GMetaClass> late_class(const char* name, const GMetaClass* base = nullptr)
{
    return std::make_unique<GMetaClass>(nullptr, kLateType, name, nullptr, nullptr, base);
}

}  // namespace

TEST(GMetaClass, FindByName_RegisteredClass_GivesItsObject)
{
    EXPECT_EQ(GMetaClass::FindByName("SampleLeaf"), &SampleLeaf::metaclass_);
    EXPECT_EQ(GMetaClass::FindByName("GStreamable"), &GStreamable::metaclass_);
    EXPECT_EQ(GMetaClass::FindByName("GRTTIObject"), &GRTTIObject::metaclass_);
    EXPECT_STREQ(SampleLeaf::metaclass_.name, "SampleLeaf");
}

TEST(GMetaClass, FindByName_UnknownNullOrEmptyName_GivesNull)
{
    EXPECT_EQ(GMetaClass::FindByName("NoSuchClassAtAll"), nullptr);
    EXPECT_EQ(GMetaClass::FindByName(nullptr), nullptr);
    EXPECT_EQ(GMetaClass::FindByName(""), nullptr);
}

TEST(GMetaClass, FindByName_NamesOfEveryLength_AreToldApart)
{
    std::vector<std::string> names;
    for (std::size_t length = 1; length <= 40; ++length) {
        for (const char last : {'a', 'b'}) {
            for (const char first : {'x', 'y'}) {
                std::string name(length, '-');
                name.front() = first;
                name.back() = last;
                names.push_back(name);
                if (length > 17) {
                    name[length / 2] = '+';
                    names.push_back(name);
                }
            }
        }
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    std::vector<std::unique_ptr<GMetaClass>> classes;
    for (const std::string& name : names)
        classes.push_back(late_class(name.c_str()));

    for (std::size_t index = 0; index < names.size(); ++index)
        EXPECT_EQ(GMetaClass::FindByName(names[index].c_str()), classes[index].get());
}

TEST(GMetaClass, FindByName_LongNamesThatDifferInOneByte_AreToldApart)
{
    std::vector<std::string> names;
    for (const std::size_t length : {24u, 25u, 26u, 31u, 33u, 60u, 200u}) {
        names.emplace_back(length, '-');
        for (std::size_t at = 0; at < length; ++at) {
            names.emplace_back(length, '-');
            names.back()[at] = '+';
        }
    }
    std::vector<std::unique_ptr<GMetaClass>> classes;
    for (const std::string& name : names)
        classes.push_back(late_class(name.c_str()));

    for (std::size_t index = 0; index < names.size(); ++index)
        EXPECT_EQ(GMetaClass::FindByName(names[index].c_str()), classes[index].get());
}

TEST(GMetaClass, Unregister_ManyInAnyOrder_TheOthersStayFindable)
{
    std::vector<std::string> names;
    for (int number = 0; number < 1000; ++number)
        names.push_back("Late" + std::to_string(number));
    std::vector<std::unique_ptr<GMetaClass>> classes;
    for (const std::string& name : names)
        classes.push_back(late_class(name.c_str()));

    for (std::size_t step = 0; step < names.size(); ++step) {
        const std::size_t gone = step * 617 % names.size();
        classes[gone].reset();
        ASSERT_EQ(GMetaClass::FindByName(names[gone].c_str()), nullptr);
        const std::size_t other = (gone + 1) % names.size();
        ASSERT_EQ(GMetaClass::FindByName(names[other].c_str()), classes[other].get());
    }
}

TEST(GMetaClass, SameNameTwice_LastAnswersAndFirstComesBack)
{
    const std::string name_of_first = "Twice";
    const std::string name_of_second = "Twice";
    const auto first = late_class(name_of_first.c_str());
    {
        const auto second = late_class(name_of_second.c_str());
        EXPECT_EQ(GMetaClass::FindByName("Twice"), second.get());
    }
    EXPECT_EQ(GMetaClass::FindByName("Twice"), first.get());
}

TEST(GMetaClass, SameNameThrice_MiddleLeaves_OrderOfOthersStays)
{
    const auto first = late_class("Thrice");
    auto second = late_class("Thrice");
    auto third = late_class("Thrice");

    second.reset();
    EXPECT_EQ(GMetaClass::FindByName("Thrice"), third.get());
    third.reset();
    EXPECT_EQ(GMetaClass::FindByName("Thrice"), first.get());
}

TEST(GMetaClass, Ordinal_OfClassThatLeft_IsUsedAgain)
{
    auto late = late_class("ShortLived");
    const std::uint32_t ordinal = late->ordinal();
    late.reset();

    EXPECT_EQ(late_class("Successor")->ordinal(), ordinal);
}

TEST(GMetaClass, Ordinals_OfAllClasses_AreDenseAndTheirOwn)
{
    const auto classes = GClassRegistry::Get().classes();

    for (std::size_t ordinal = 0; ordinal < classes.size(); ++ordinal) {
        if (classes[ordinal] != nullptr) {
            EXPECT_EQ(classes[ordinal]->ordinal(), ordinal);
        }
    }
    EXPECT_EQ(classes[SampleNode::metaclass_.ordinal()], &SampleNode::metaclass_);
}

TEST(GMetaClass, IsKindOf_ThroughAnyBase_GivesTheAskedClass)
{
    const GMetaClass& tagged = SampleTagged::metaclass_;

    EXPECT_EQ(tagged.isKindOf(&tagged), &tagged);
    EXPECT_EQ(tagged.isKindOf(&SampleNode::metaclass_), &SampleNode::metaclass_);
    EXPECT_EQ(tagged.isKindOf(&SampleTag::metaclass_), &SampleTag::metaclass_);
    EXPECT_EQ(tagged.isKindOf(&GRTTIObject::metaclass_), &GRTTIObject::metaclass_);
    EXPECT_EQ(tagged.isKindOf(&SampleGroup::metaclass_), nullptr);
    EXPECT_EQ(SampleNode::metaclass_.isKindOf(&tagged), nullptr);
    EXPECT_EQ(tagged.isKindOf(nullptr), nullptr);
}

TEST(GMetaClass, Bases_SeveralOnes_StandInOrderOfDeclaration)
{
    EXPECT_EQ(SampleTagged::metaclass_.getBaseCount(), 2);
    EXPECT_EQ(SampleTagged::metaclass_.getBase(0), &SampleLeaf::metaclass_);
    EXPECT_EQ(SampleTagged::metaclass_.getBase(1), &SampleTag::metaclass_);
    EXPECT_EQ(SampleTagged::metaclass_.getBase(2), nullptr);
    EXPECT_EQ(SampleTagged::metaclass_.getBase(-1), nullptr);
    EXPECT_EQ(GRTTIObject::metaclass_.getBaseCount(), 0);
}

TEST(GMetaClass, GetDerivedClasses_All_GivesDescendantsWithoutItself)
{
    GClassDictionary dictionary;
    SampleNode::metaclass_.getDerivedClasses(dictionary, true);

    ASSERT_EQ(dictionary.count, 3);
    EXPECT_EQ(dictionary.at(0), &SampleLeaf::metaclass_);
    EXPECT_EQ(dictionary.at(1), &SampleTagged::metaclass_);
    EXPECT_EQ(dictionary.at(2), &SampleThrower::metaclass_);
}

TEST(GMetaClass, GetDerivedClasses_NotAll_GivesOnlyThoseThatNameItAsBase)
{
    GClassDictionary of_node;
    SampleNode::metaclass_.getDerivedClasses(of_node, false);
    GClassDictionary of_tag;
    SampleTag::metaclass_.getDerivedClasses(of_tag, false);

    ASSERT_EQ(of_node.count, 2);
    EXPECT_EQ(of_node.at(0), &SampleLeaf::metaclass_);
    EXPECT_EQ(of_node.at(1), &SampleThrower::metaclass_);
    ASSERT_EQ(of_tag.count, 1);  // through its second base
    EXPECT_EQ(of_tag.at(0), &SampleTagged::metaclass_);
}

TEST(GMetaClass, GetModule_VariableHoldsHandle_GivesIt)
{
    static int module = 0;
    auto* const handle = reinterpret_cast<HINSTANCE>(&module);
    HINSTANCE variable = nullptr;
    const GMetaClass late(&variable, kLateType, "InModule", nullptr, nullptr, nullptr);

    const HINSTANCE found_by_address = late.get_module();
    variable = handle;

    EXPECT_EQ(late.get_module(), handle);
    EXPECT_EQ(found_by_address, zmr::module_of_address(&kLateType));
    EXPECT_NE(found_by_address, nullptr);
}

TEST(GMetaClass, Construction_ByCountAndBases_KeepsAll)
{
    const GMetaClass late(nullptr, kLateType, "Varied", nullptr, nullptr, 3,
                          static_cast<const GMetaClass*>(&SampleNode::metaclass_),
                          static_cast<const GMetaClass*>(&SampleTag::metaclass_),
                          static_cast<const GMetaClass*>(&SampleGroup::metaclass_));

    EXPECT_EQ(late.getBaseCount(), 3);
    EXPECT_EQ(late.getBase(2), &SampleGroup::metaclass_);
}
