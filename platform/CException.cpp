#include "platform/CException.h"

#include "platform/ByteText.h"
#include "platform/StringTable.h"

#include <cstdio>
#include <utility>

IMPLEMENT_DYNAMIC(CException, CObject)

namespace {

constexpr int kAnswerOk = 1;

int report_to_standard_error(const std::string& text, UINT, UINT)
{
    std::fprintf(stderr, "%s\n", text.c_str());
    return kAnswerOk;
}

zmr::FailureReporter installed = report_to_standard_error;

}  // namespace

void CException::Delete()
{
    if (m_bAutoDelete)
        delete this;
}

BOOL CException::GetErrorMessage(LPSTR text, UINT size, UINT* help) const
{
    if (help != nullptr)
        *help = 0;
    const std::string own = message();
    if (text != nullptr)
        zmr::copy_cut(text, size, own);
    return !own.empty();
}

int CException::ReportError(UINT type, UINT fallback)
{
    std::string text = message();
    if (text.empty() && (fallback == 0 || !zmr::find_string(fallback, text)))
        text = "An unknown error has occurred.";
    return installed(text, type, 0);
}

zmr::FailureReporter zmr::set_failure_reporter(FailureReporter reporter)
{
    return std::exchange(installed, reporter != nullptr ? reporter : report_to_standard_error);
}
