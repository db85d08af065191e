#include "foundation/GDynamicLinkLibrary.h"
#include "foundation/GString.h"

#include "platform/PlatformIds.h"
#include "platform/StringTable.h"

#include <gtest/gtest.h>

#include <cstdarg>

namespace {

void format_of_module(GString& target, HINSTANCE module, unsigned id, ...)
{
    std::va_list arguments;
    va_start(arguments, id);
    target.vformat(module, id, arguments);
    va_end(arguments);
}

}  // namespace

TEST(GStringResource, TextsOfAModule_AreReadByNumber)
{
    const GDynamicLinkLibrary library(ZMR_TEST_MODULE, 0);
    ASSERT_NE(library.module, nullptr);

    EXPECT_STREQ(GString(library.module, 20000), "A text of the module");
    GString text("before");
    EXPECT_TRUE(text.loadString(library.module, 20001));
    EXPECT_STREQ(text,
                 "\xC3\x9C"
                 "ber %s: %d \xE2\x82\xAC");
    format_of_module(text, library.module, 20001, "alles", 5);
    EXPECT_STREQ(text,
                 "\xC3\x9C"
                 "ber alles: 5 \xE2\x82\xAC");
}

TEST(GStringResource, LongTexts_AreNotCut)
{
    const GDynamicLinkLibrary library(ZMR_TEST_MODULE, 0);
    const GString text(library.module, 20002);

    ASSERT_EQ(text.length(), 700u);
    EXPECT_EQ(text.view().substr(690), "0123456789");
}

TEST(GStringResource, MissingNumber_GivesTheEmptyText)
{
    const GDynamicLinkLibrary library(ZMR_TEST_MODULE, 0);
    GString text("before");
    EXPECT_FALSE(text.loadString(library.module, 29999));
    EXPECT_TRUE(text.is_empty());
}

TEST(GStringResource, TextOfTheLibrary_ServesProgramsWithoutOne)
{
    std::string text;

    EXPECT_TRUE(zmr::find_string(AFX_IDP_PARSE_REAL, text));
    EXPECT_EQ(text, "Please enter a number.");
}
