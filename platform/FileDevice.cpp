#include "platform/FileDevice.h"

#include <system_error>

namespace zmr {

std::string FileError::text() const
{
    switch (kind) {
        case FileErrorKind::None:
            return "no error";
        case FileErrorKind::NotFound:
            return "there is no such file or folder";
        case FileErrorKind::AccessDenied:
            return "access is denied";
        case FileErrorKind::AlreadyExists:
            return "a file of that name exists";
        case FileErrorKind::InUse:
            return "another program uses the file";
        case FileErrorKind::DiskFull:
            return "no space is left on the disk";
        case FileErrorKind::TooManyOpen:
            return "too many files are open";
        case FileErrorKind::BadName:
            return "the name can't be a file's name";
        case FileErrorKind::OutOfMemory:
            return "memory ran out";
        case FileErrorKind::Damaged:
            return "the file is damaged";
        case FileErrorKind::Other:
            break;
    }
    return "the system reports error " + std::to_string(system_code) + " (" +
           std::system_category().message(system_code) + ")";
}

}  // namespace zmr
