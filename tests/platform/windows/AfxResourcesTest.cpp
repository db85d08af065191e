#include "platform/AfxResources.h"

#include "platform/AfxState.h"
#include "platform/Handles.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr UINT kInBoth = 50001;
constexpr UINT kInFirst = 50002;
constexpr UINT kNowhere = 50009;
const LPCTSTR kData = MAKEINTRESOURCE(50010);

/// A module whose resources the program finds while the object lives.
class Extension {
public:
    explicit Extension(LPCTSTR file) : module_(::LoadLibrary(file))
    {
        if (AfxInitExtensionModule(record_, module_.get()))
            new CDynLinkLibrary(record_);
    }
    ~Extension() { AfxTermExtensionModule(record_); }
    Extension(const Extension&) = delete;
    Extension& operator=(const Extension&) = delete;

    [[nodiscard]] HMODULE module() const { return module_.get(); }
    [[nodiscard]] bool registered() const { return record_.bInitialized != FALSE; }

private:
    zmr::OwnedModule module_;
    AFX_EXTENSION_MODULE record_{};
};

std::string text_of(UINT id)
{
    char text[64] = "before";
    AfxLoadString(id, text, sizeof text);
    return text;
}

}  // namespace

TEST(AfxResources, TextOfAModule_IsFoundWhileItIsRegistered)
{
    EXPECT_EQ(text_of(kInFirst), "");
    {
        const Extension first(ZMR_FIRST_MODULE);
        ASSERT_TRUE(first.registered());
        EXPECT_EQ(text_of(kInFirst), "only in the first");
    }
    EXPECT_EQ(text_of(kInFirst), "");
}

TEST(AfxResources, SameNumberInTwoModules_LastRegisteredWinsAndEarlierOnesAreStillAsked)
{
    const Extension first(ZMR_FIRST_MODULE);
    const Extension second(ZMR_SECOND_MODULE);

    EXPECT_EQ(text_of(kInBoth), "second module");
    EXPECT_EQ(text_of(kInFirst), "only in the first");
}

TEST(AfxResources, FindResourceHandle_TheModuleThatHasItElseTheProgram)
{
    EXPECT_EQ(AfxFindResourceHandle(kData, RT_RCDATA), AfxGetResourceHandle());

    const Extension first(ZMR_FIRST_MODULE);
    const Extension second(ZMR_SECOND_MODULE);
    EXPECT_EQ(AfxFindResourceHandle(kData, RT_RCDATA), first.module());
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(kNowhere), RT_RCDATA), AfxGetResourceHandle());
}

TEST(AfxResources, ResourceHandle_IsAskedFirstAndIsTheProgramsUnlessSet)
{
    const Extension first(ZMR_FIRST_MODULE);
    const Extension second(ZMR_SECOND_MODULE);
    EXPECT_EQ(AfxGetResourceHandle(), AfxGetInstanceHandle());

    AfxSetResourceHandle(first.module());
    EXPECT_EQ(text_of(kInBoth), "first module");
    AfxSetResourceHandle(nullptr);
    EXPECT_EQ(text_of(kInBoth), "second module");
}

TEST(AfxResources, NullModule_IsNotRegistered)
{
    AFX_EXTENSION_MODULE record{};

    EXPECT_FALSE(AfxInitExtensionModule(record, nullptr));
    AfxTermExtensionModule(record);
}

TEST(AfxResources, LoadString_CutToTheBuffer)
{
    const Extension first(ZMR_FIRST_MODULE);
    char text[5];

    EXPECT_EQ(AfxLoadString(kInFirst, text, sizeof text), 4);
    EXPECT_STREQ(text, "only");
}

TEST(AfxResources, ExtractSubString_PartsByNumber)
{
    CString part;

    EXPECT_TRUE(AfxExtractSubString(part, "one\ntwo\n", 1));
    EXPECT_STREQ(part, "two");
    EXPECT_TRUE(AfxExtractSubString(part, "one\ntwo\n", 2));
    EXPECT_STREQ(part, "");
    EXPECT_FALSE(AfxExtractSubString(part, "one\ntwo\n", 3));
    EXPECT_TRUE(AfxExtractSubString(part, "a|b", 1, '|'));
    EXPECT_STREQ(part, "b");
    EXPECT_FALSE(AfxExtractSubString(part, nullptr, 0));
    EXPECT_FALSE(AfxExtractSubString(part, "one", -1));
}
