#include "scene_module/SourceFile.h"

#include "foundation/GException.h"
#include "foundation/GFile.h"
#include "platform/FileDevice.h"

#include <algorithm>
#include <memory>

namespace scene {

namespace {

std::unique_ptr<zmr::FileDevice> open_to_read(const char* file, zmr::FileError& error)
{
    return zmr::FileSystemDevice::Real().open(file, zmr::FileAccess::Read,
                                              zmr::FileCreate::OpenExisting,
                                              zmr::FileShare::ReadWrite, error);
}

}  // namespace

FileHead read_file_head(const char* file)
{
    FileHead head;
    zmr::FileError error;
    const auto device = open_to_read(file, error);
    if (device == nullptr || device->length(head.file_bytes))
        return head;
    head.bytes.resize(FileHead::kBytes);
    std::size_t done = 0;
    if (device->read_at(0, head.bytes.data(), head.bytes.size(), done))
        done = 0;
    head.bytes.resize(done);
    return head;
}

std::string read_whole_file(const char* file)
{
    zmr::FileError error;
    const auto device = open_to_read(file, error);
    std::uint64_t size = 0;
    if (device != nullptr)
        error = device->length(size);
    if (error)
        throw GLibraryException(error.text().c_str());
    if (size > kMaxModelBytes)
        throw GLibraryException("it is larger than a model may be");
    std::string bytes(static_cast<std::size_t>(size), '\0');
    std::size_t done = 0;
    error = device->read_at(0, bytes.data(), bytes.size(), done);
    if (error)
        throw GLibraryException(error.text().c_str());
    bytes.resize(done);
    return bytes;
}

bool write_whole_file(const char* file, const std::string& bytes)
{
    zmr::FileError error;
    const auto device = zmr::FileSystemDevice::Real().open(file, zmr::FileAccess::ReadWrite,
                                                           zmr::FileCreate::CreateOrTruncate,
                                                           zmr::FileShare::None, error);
    return device != nullptr && !device->write_at(0, bytes.data(), bytes.size());
}

bool has_extension(const char* file, const char* extension)
{
    GString own = GFile(file).get_extension();
    own.toLower();
    return own == extension;
}

}  // namespace scene
