#include "platform/CException.h"

#include "platform/CArchiveException.h"
#include "platform/CFileException.h"
#include "platform/CMemoryException.h"
#include "platform/CNotSupportedException.h"
#include "platform/CUserException.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string reported;
UINT reported_type = 0;

int remember(const std::string& text, UINT type, UINT)
{
    reported = text;
    reported_type = type;
    return 6;
}

/// The text of what `action` throws, by way of the base.
template <class Action>
std::string text_of_thrown(Action action)
{
    try {
        action();
    } catch (CException* failure) {
        char text[300];
        failure->GetErrorMessage(text, sizeof text);
        failure->Delete();
        return text;
    }
    return "nothing was thrown";
}

}  // namespace

TEST(CException, ThrowFunctions_ThrowTheirClassByPointer)
{
    EXPECT_THROW(AfxThrowUserException(), CUserException*);
    EXPECT_THROW(AfxThrowMemoryException(), CMemoryException*);
    EXPECT_THROW(AfxThrowNotSupportedException(), CNotSupportedException*);
    EXPECT_EQ(text_of_thrown([] { AfxThrowMemoryException(); }), "There is not enough memory.");
}

TEST(CException, DeleteOfTheOneObject_LeavesItForTheNextThrow)
{
    for (int round = 0; round < 3; ++round)
        EXPECT_EQ(text_of_thrown([] { AfxThrowNotSupportedException(); }),
                  "The operation is not supported.");
}

TEST(CException, GetErrorMessage_CutsToTheBufferAndTellsWhetherThereIsOne)
{
    const CFileException failure(CFileException::diskFull, 28, "a.zlib");
    char text[9] = "????????";
    UINT help = 99;

    EXPECT_TRUE(failure.GetErrorMessage(text, sizeof text, &help));
    EXPECT_STREQ(text, "a.zlib: ");
    EXPECT_EQ(help, 0u);
    EXPECT_FALSE(CUserException().GetErrorMessage(text, sizeof text));
    EXPECT_STREQ(text, "");
}

TEST(CException, ReportError_GoesToTheInstalledReporter)
{
    const auto former = zmr::set_failure_reporter(remember);
    CFileException failure(CFileException::accessDenied, 5, "b.zlib");
    const int answer = failure.ReportError(0x30);
    zmr::set_failure_reporter(former);

    EXPECT_EQ(answer, 6);
    EXPECT_EQ(reported, "b.zlib: access is denied.");
    EXPECT_EQ(reported_type, 0x30u);
}

TEST(CException, ReportErrorWithoutAText_SaysSomething)
{
    const auto former = zmr::set_failure_reporter(remember);
    CUserException().ReportError();
    zmr::set_failure_reporter(former);

    EXPECT_EQ(reported, "An unknown error has occurred.");
}

TEST(CFileException, DeviceErrors_BecomeTheirCauses)
{
    using zmr::FileErrorKind;
    const auto cause = [](FileErrorKind kind) {
        return CFileException(zmr::FileError{kind, 1}, "x").m_cause;
    };

    EXPECT_EQ(cause(FileErrorKind::NotFound), CFileException::fileNotFound);
    EXPECT_EQ(cause(FileErrorKind::DiskFull), CFileException::diskFull);
    EXPECT_EQ(cause(FileErrorKind::InUse), CFileException::sharingViolation);
    EXPECT_EQ(cause(FileErrorKind::BadName), CFileException::badPath);
    EXPECT_EQ(cause(FileErrorKind::Other), CFileException::genericException);
}

TEST(CFileException, OwnNumberOfTheSystem_IsInTheTextOfUnknownErrors)
{
    EXPECT_EQ(text_of_thrown([] { AfxThrowFileException(CFileException::genericException, 77); }),
              "A file: the operation failed (system error 77).");
}

TEST(CArchiveException, Text_NamesTheFileAndTheReason)
{
    EXPECT_EQ(text_of_thrown([] { AfxThrowArchiveException(CArchiveException::endOfFile, "s"); }),
              "s: the file ends too early.");
}
