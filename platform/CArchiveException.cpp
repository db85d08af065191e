#include "platform/CArchiveException.h"

IMPLEMENT_DYNAMIC(CArchiveException, CException)

namespace {

const char* text_of(int cause)
{
    switch (cause) {
        case CArchiveException::none:
            return "no error";
        case CArchiveException::readOnly:
            return "the archive is loading and can't be written";
        case CArchiveException::endOfFile:
            return "the file ends too early";
        case CArchiveException::writeOnly:
            return "the archive is storing and can't be read";
        case CArchiveException::badIndex:
        case CArchiveException::badClass:
            return "the file is damaged or of another kind";
        case CArchiveException::badSchema:
            return "the file is of another version";
        default:
            return "the operation failed";
    }
}

}  // namespace

std::string CArchiveException::message() const
{
    const std::string name =
        m_strFileName.IsEmpty() ? std::string("An archive") : std::string(m_strFileName.view());
    return name + ": " + text_of(m_cause) + ".";
}

void AfxThrowArchiveException(int cause, LPCTSTR name)
{
    throw new CArchiveException(cause, name);
}
