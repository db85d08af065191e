#include "odb/NamesMapper.h"

#include "TestObjects.h"
#include "odb/NamesMapperInitializer.h"
#include "platform/StringTable.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

// What is contributed stays for the life of the process: each case has class names of its own.

namespace {

/// The program's texts while a case lasts.
class ProgramTexts {
public:
    explicit ProgramTexts(std::vector<std::string> texts)
    {
        all = std::move(texts);
        former_ = zmr::set_string_lookup([](UINT id, std::string& found) {
            if (id < kFirst || id - kFirst >= all.size())
                return false;
            found = all[id - kFirst];
            return true;
        });
    }
    ~ProgramTexts() { zmr::set_string_lookup(former_); }
    ProgramTexts(const ProgramTexts&) = delete;
    ProgramTexts& operator=(const ProgramTexts&) = delete;

    static constexpr UINT kFirst = 41000;
    static inline std::vector<std::string> all;

private:
    zmr::StringLookup former_;
};

CString name_of(const char* class_name)
{
    const GMetaClass metaclass(nullptr, TestNote::gTypeInfo_, class_name, nullptr, nullptr,
                               static_cast<const GMetaClass*>(nullptr));
    return NamesMapper::user_name_for(metaclass);
}

constexpr unsigned kModuleTexts = 52000;

/// Texts as a host adds them for all modules without a table; they stay, too.
unsigned module_text(unsigned id, char* buffer, unsigned size, void*)
{
    static constexpr std::array<const char*, 3> texts = {"MapperTestWheel=(Wheel)",
                                                         "MapperTestWheel]:Parts;", "the end"};
    if (id < kModuleTexts || id - kModuleTexts >= texts.size())
        return 0;
    std::strncpy(buffer, texts[id - kModuleTexts], size);
    return static_cast<unsigned>(std::strlen(texts[id - kModuleTexts]));
}

}  // namespace

TEST(NamesMapper, Constants_AreTheNamesOfTheTwoSpecialCategories)
{
    EXPECT_EQ(NamesMapper::globalShadersCategory, "Global Shaders");
    EXPECT_EQ(NamesMapper::hiddenClassesCategory, "HIDDEN");
}

TEST(NamesMapper, UnknownClass_HasItsOwnNameAndNoCategory)
{
    EXPECT_EQ(NamesMapper::user_name_for(ODB_InternalObject::metaclass_), "ODB_InternalObject");
    EXPECT_EQ(NamesMapper::user_name_for(&ODB_InternalObject::metaclass_), "ODB_InternalObject");
    EXPECT_EQ(NamesMapper::category_name_for(ODB_InternalObject::metaclass_), "");
}

TEST(NamesMapper, NullClass_HasNoName)
{
    const GMetaClass* const none = nullptr;

    EXPECT_EQ(NamesMapper::user_name_for(none), "");
    EXPECT_EQ(NamesMapper::category_name_for(none), "");
}

TEST(NamesMapper, Initialize_OneText_AnswersByClassAndByName)
{
    NamesMapper::Initialize(CString("TestNote=(Remark) "));
    NamesMapper::Initialize(CString("TestNote,MapperTestNote]:Writing;"));

    EXPECT_EQ(NamesMapper::user_name_for(TestNote::metaclass_), "Remark");
    EXPECT_EQ(NamesMapper::user_name_for(&TestNote::metaclass_), "Remark");
    EXPECT_EQ(NamesMapper::category_name_for(TestNote::metaclass_), "Writing");
    EXPECT_EQ(NamesMapper::category_name_for(&TestNote::metaclass_), "Writing");
    EXPECT_EQ(NamesMapper::category_name_for(CString("MapperTestNote")), "Writing");
}

TEST(NamesMapper, InitializeByNumber_EndsAtTheFirstTextOfNeitherForm)
{
    const ProgramTexts texts({"MapperTestA=(A)", "MapperTestB]:Letters;", "MapperTestC=(C)",
                              "neither", "MapperTestD=(D)"});

    NamesMapper::Initialize(ProgramTexts::kFirst);

    EXPECT_EQ(name_of("MapperTestA"), "A");
    EXPECT_EQ(NamesMapper::category_name_for(CString("MapperTestB")), "Letters");
    EXPECT_EQ(name_of("MapperTestC"), "C");
    EXPECT_EQ(name_of("MapperTestD"), "MapperTestD");
}

TEST(NamesMapper, InitializeByNumber_EndsAtAMissingText)
{
    const ProgramTexts texts({"MapperTestE=(E)"});

    NamesMapper::Initialize(ProgramTexts::kFirst);
    NamesMapper::Initialize(ProgramTexts::kFirst + 1);

    EXPECT_EQ(name_of("MapperTestE"), "E");
}

TEST(NamesMapper, TableThatNeverEnds_IsReadOnce)
{
    static unsigned asked = 0;
    const auto former = zmr::set_string_lookup([](UINT, std::string& found) {
        ++asked;
        found = "MapperTestF=(F)";
        return true;
    });

    NamesMapper::Initialize(0xFFFFFF00u);

    zmr::set_string_lookup(former);
    EXPECT_EQ(asked, 65536u);
    EXPECT_EQ(name_of("MapperTestF"), "F");
}

TEST(NamesMapper, InitializeFromBEM_WithoutAModule_TakesTheTextsThatHostsAdd)
{
    GString::AddLoadStringFunc(&module_text, nullptr);

    NamesMapper::InitializeFromBEM(nullptr, kModuleTexts);

    EXPECT_EQ(name_of("MapperTestWheel"), "Wheel");
    EXPECT_EQ(NamesMapper::category_name_for(CString("MapperTestWheel")), "Parts");
}

TEST(NamesMapper, ClassNameFor_IsEmptyWhateverItIsGiven)
{
    NamesMapper::Initialize(CString("MapperTestG=(Gear)"));

    EXPECT_EQ(NamesMapper::ClassNameFor("Gear"), "");
    EXPECT_EQ(NamesMapper::ClassNameFor(nullptr), "");
}

TEST(NamesMapperInitializer, EachConstructor_Contributes)
{
    GString::AddLoadStringFunc(&module_text, nullptr);
    const ProgramTexts texts({"MapperTestH=(H)"});

    const NamesMapperInitializer by_number(ProgramTexts::kFirst);
    const NamesMapperInitializer by_module(nullptr, kModuleTexts);
    const NamesMapperInitializer by_text(CString("MapperTestI=(I)"));

    EXPECT_EQ(name_of("MapperTestH"), "H");
    EXPECT_EQ(name_of("MapperTestWheel"), "Wheel");
    EXPECT_EQ(name_of("MapperTestI"), "I");
}
