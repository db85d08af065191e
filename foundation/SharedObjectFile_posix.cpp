#include "foundation/SharedObjectFile.h"

#include "platform/FileDevice.h"

#include <elf.h>
#include <link.h>

#include <cstdint>
#include <cstring>
#include <memory>

namespace zmr {
namespace {

using Head = ElfW(Ehdr);
using Segment = ElfW(Phdr);

/// Reads a whole `Record` at `position`; false when the file ends before.
template <class Record>
[[nodiscard]] bool read_record(const FileDevice& file, std::uint64_t position, Record& record)
{
    std::size_t done = 0;
    return !file.read_at(position, &record, sizeof record, done) && done == sizeof record;
}

}  // namespace

bool is_cut_shared_object(const std::string& path)
{
    FileError error;
    const std::unique_ptr<FileDevice> file = FileSystemDevice::Real().open(
        path, FileAccess::Read, FileCreate::OpenExisting, FileShare::ReadWrite, error);
    std::uint64_t length = 0;
    Head head;
    if (file == nullptr || file->length(length) || !read_record(*file, 0, head))
        return false;
    if (std::memcmp(head.e_ident, ELFMAG, SELFMAG) != 0 || head.e_phentsize != sizeof(Segment))
        return false;
    for (std::uint64_t number = 0; number < head.e_phnum; ++number) {
        Segment segment;
        if (!read_record(*file, head.e_phoff + number * sizeof segment, segment))
            return true;
        if (segment.p_offset > length || segment.p_filesz > length - segment.p_offset)
            return true;
    }
    return false;
}

}  // namespace zmr
