#include "store/ObjectFile.h"

#include "foundation/FileSystem.h"
#include "foundation/GException.h"
#include "foundation/GFileIO.h"
#include "foundation/PathSyntax.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "store/StoreFiles.h"

#include <array>
#include <chrono>
#include <thread>

namespace zmr {
namespace {

constexpr std::uint32_t kMagic = 0x4F524D5A;  // "ZMRO"
constexpr unsigned char kVersion = 1;
constexpr long kBufferBytes = 65536;

/// A stream over one file of store_files().
template <class Stream>
class FileStream final : public Stream {
public:
    FileStream(const GFile& file, GIO::IOOpenMode mode, GFileIO::IOCreateMode create,
               GFileIO::IOShareMode share)
    {
        auto io = std::make_unique<GFileIO>(file.text, mode, create, share, &store_files());
        if (!io->is_open())
            return;
        // The memory is taken before the file is let go of.
        buffer_.reset(new GBufferedIO(io.release(), kBufferBytes));
        this->init(buffer_.get());
    }

private:
    std::unique_ptr<GBufferedIO> buffer_;
};

/// Opened, the stream stands behind the head, and `class_name` has the object's class.
class ObjectReader {
public:
    explicit ObjectReader(const GFile& file)
        : in(file, GIO::OpenRead, GFileIO::OpenExisting, GFileIO::ShareRead)
    {
    }
    [[nodiscard]] bool read_head()
    {
        if (!in.good() || in.readDWord() != kMagic || in.readByte() != kVersion)
            return false;
        in >> class_name;
        return true;
    }

    FileStream<ipstream> in;
    GString class_name;
};

void write_bytes_of(const GFile& file, GStreamable& object)
{
    FileStream<opstream> out(file, GIO::OpenWrite, GFileIO::CreateNew, GFileIO::ShareNone);
    if (!out.good())
        throw GStreamException("The file can't be made.");
    out.writeDWord(kMagic);
    out.writeByte(kVersion);
    out.writeString(object.getClassName());
    out.writePointer(&object);
    out.flush();
}

void copy_bytes_of(const GFile& from, const GFile& to)
{
    GFileIO in(from.text, GIO::OpenRead, GFileIO::OpenExisting, GFileIO::ShareRead, &store_files());
    GFileIO out(to.text, GIO::OpenWrite, GFileIO::CreateNew, GFileIO::ShareNone, &store_files());
    const auto piece = std::make_unique<std::array<char, kBufferBytes>>();
    while (const long count = in.gread(piece->data(), kBufferBytes))
        out.gwrite(piece->data(), count);
}

/// Brings what was written to the disk. A file's bytes are the system's, not a handle's.
bool sync_file(const std::string& path)
{
    FileError error;
    const auto device = store_files().open(path, FileAccess::ReadWrite, FileCreate::OpenExisting,
                                           FileShare::Read, error);
    return device != nullptr && !device->sync();
}

/// Moves `from` onto `to`. Where the system refuses that while somebody reads `to`, which takes him
/// a moment, it is tried again for a tenth of a second.
bool move_onto(const std::string& from, const std::string& to)
{
    constexpr int kTries = 20;
    for (int attempt = 0; attempt < kTries; ++attempt) {
        const FileError error = store_files().rename(from, to);
        if (!error)
            return true;
        if (error.kind != FileErrorKind::InUse && error.kind != FileErrorKind::AccessDenied)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

/// Replaces `file` by one that `fill`, given its name, makes anew.
template <class Fill>
bool replace_file(const GFile& file, const Fill& fill)
{
    if (file.is_empty() || file.isDirectory())
        return false;
    GFile beside = file;
    beside.replace_name(".~????????.tmp");  // short: the name itself may be as long as names can be
    if (!FileSystem::UniqueName(beside, '?'))
        return false;
    const std::string temporary = system_path(beside.view());
    const std::string target = system_path(file.view());
    bool is_there = false;
    try {
        fill(beside);
        is_there = sync_file(temporary) && move_onto(temporary, target);
    } catch (const GException&) {
        is_there = false;
    } catch (...) {
        static_cast<void>(store_files().remove(temporary));
        throw;
    }
    if (is_there)
        return !store_files().sync_directory_of(target);
    static_cast<void>(store_files().remove(temporary));  // what is left of it is of no use
    return false;
}

}  // namespace

GStreamable* read_object_file(const GFile& file)
{
    try {
        ObjectReader reader(file);
        return reader.read_head() ? reader.in.read_pointer<GStreamable>() : nullptr;
    } catch (const GException&) {
        return nullptr;
    }
}

GString object_file_class(const GFile& file)
{
    try {
        ObjectReader reader(file);
        return reader.read_head() ? reader.class_name : GString();
    } catch (const GException&) {
        return {};
    }
}

bool write_object_file(const GFile& file, GStreamable& object)
{
    return replace_file(file, [&](const GFile& beside) { write_bytes_of(beside, object); });
}

bool copy_object_file(const GFile& from, const GFile& to)
{
    if (object_file_class(from).is_empty())
        return false;
    return replace_file(to, [&](const GFile& beside) { copy_bytes_of(from, beside); });
}

bool remove_file(const GFile& file)
{
    return !file.is_empty() && !store_files().remove(system_path(file.view()));
}

}  // namespace zmr
