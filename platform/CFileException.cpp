#include "platform/CFileException.h"

IMPLEMENT_DYNAMIC(CFileException, CException)

namespace {

int cause_of(zmr::FileErrorKind kind)
{
    switch (kind) {
        case zmr::FileErrorKind::None:
            return CFileException::none;
        case zmr::FileErrorKind::NotFound:
            return CFileException::fileNotFound;
        case zmr::FileErrorKind::AccessDenied:
        case zmr::FileErrorKind::AlreadyExists:
            return CFileException::accessDenied;
        case zmr::FileErrorKind::InUse:
            return CFileException::sharingViolation;
        case zmr::FileErrorKind::DiskFull:
            return CFileException::diskFull;
        case zmr::FileErrorKind::TooManyOpen:
            return CFileException::tooManyOpenFiles;
        case zmr::FileErrorKind::BadName:
            return CFileException::badPath;
        case zmr::FileErrorKind::OutOfMemory:
        case zmr::FileErrorKind::Damaged:
        case zmr::FileErrorKind::Other:
            break;
    }
    return CFileException::genericException;
}

const char* text_of(int cause)
{
    switch (cause) {
        case CFileException::none:
            return "no error";
        case CFileException::fileNotFound:
            return "there is no such file";
        case CFileException::badPath:
            return "the path is not valid";
        case CFileException::tooManyOpenFiles:
            return "too many files are open";
        case CFileException::accessDenied:
            return "access is denied";
        case CFileException::invalidFile:
            return "the file is not open";
        case CFileException::removeCurrentDir:
            return "the current folder can't be removed";
        case CFileException::directoryFull:
            return "the folder is full";
        case CFileException::badSeek:
            return "the position lies outside the file";
        case CFileException::hardIO:
            return "the device reports an error";
        case CFileException::sharingViolation:
            return "another program uses the file";
        case CFileException::lockViolation:
            return "another program has locked the file";
        case CFileException::diskFull:
            return "no space is left on the disk";
        case CFileException::endOfFile:
            return "the file ends too early";
        default:
            return "the operation failed";
    }
}

}  // namespace

CFileException::CFileException(const zmr::FileError& error, LPCTSTR name)
    : CFileException(cause_of(error.kind), error.system_code, name)
{
}

std::string CFileException::message() const
{
    const std::string name =
        m_strFileName.IsEmpty() ? std::string("A file") : std::string(m_strFileName.view());
    std::string text = name + ": " + text_of(m_cause);
    if (m_cause == genericException && m_lOsError >= 0)
        text += " (system error " + std::to_string(m_lOsError) + ")";
    return text + ".";
}

void AfxThrowFileException(int cause, LONG os_error, LPCTSTR name)
{
    throw new CFileException(cause, os_error, name);
}
