#include "odb/NamesMapper.h"

#include "platform/Windows.h"

#include <gtest/gtest.h>

TEST(NamesMapper, InitializeFromBEM_ReadsTheStringTableOfTheModule)
{
    constexpr unsigned kFirst = 20000;
    EXPECT_EQ(NamesMapper::category_name_for(CString("MapperTestStool")), "");

    NamesMapper::InitializeFromBEM(::GetModuleHandleA(nullptr), kFirst);

    EXPECT_EQ(NamesMapper::category_name_for(CString("MapperTestTable")), "Furniture");
    EXPECT_EQ(NamesMapper::category_name_for(CString("MapperTestStool")), "Furniture");
    EXPECT_EQ(NamesMapper::category_name_for(CString("MapperTestBeyond")), "");
}
