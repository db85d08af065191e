#include "odb/MovieReader.h"

#include "foundation/GException.h"
#include "odb/MovieName.h"
#include "odb/ShortMovieName.h"

#include <algorithm>
#include <limits>

namespace zmr {

std::unique_ptr<MovieReader> MovieReader::Open(const char* movie_name)
{
    GFile file;
    GResourceFullName name;
    GString full_name = movie_name;
    ShortMovieName::Find(movie_name, full_name);
    if (!parse_movie_name(full_name.text, file, name))
        return nullptr;
    std::unique_ptr<MovieReader> reader(new MovieReader(file, name));
    if (!reader->found_ || reader->content_.length > std::numeric_limits<std::uint32_t>::max())
        return nullptr;
    reader->length_ = static_cast<std::uint32_t>(reader->content_.length);
    if (reader->content_.compressed) {
        reader->block_ = reader->file_.get_resource_block(name);
        if (reader->block_.presence == 0)
            return nullptr;
        reader->length_ = reader->block_.length;
    }
    return reader;
}

MovieReader::MovieReader(const GFile& file, const GResourceFullName& name)
    : file_(file.text, GIO::OpenRead)
{
    found_ = file_.server != nullptr && file_.server->find_content(name, content_);
}

MovieReader::~MovieReader()
{
    if (found_)
        file_.server->release_content(content_);
}

std::int64_t MovieReader::read(std::uint32_t position, void* buffer, std::int64_t count)
{
    if (count <= 0 || position >= length_)
        return 0;
    constexpr std::int64_t kMostAtOnce = std::numeric_limits<std::int32_t>::max();
    const auto part =
        static_cast<long>(std::min({count, kMostAtOnce, std::int64_t{length_} - position}));
    return content_.compressed ? read_sequentially(position, buffer, part)
                               : read_in_place(position, buffer, part);
}

std::int64_t MovieReader::read_in_place(std::uint32_t position, void* buffer, long count)
{
    const auto size = static_cast<std::size_t>(count);
    return file_.server->read_content(content_, position, buffer, size) == size ? count : -1;
}

std::int64_t MovieReader::read_sequentially(std::uint32_t position, void* buffer, long count)
{
    // The stream belongs to all clients of the file, and its state may be that of another's read.
    const GSingleLock locked(file_.server->lock);
    iopstream& stream = file_.server->get_stream();
    try {
        stream.clear(stream.bad() ? pstream::kEnd : 0);
        stream.seekg(static_cast<long>(block_.offset), GIO::SeekBegin);
        for (std::uint32_t left = position; left > 0 && stream.good();) {
            const auto part = static_cast<long>(std::min<std::uint32_t>(left, 1u << 30));
            stream.skipBytes(part);
            left -= static_cast<std::uint32_t>(part);
        }
        if (!stream.good())
            return -1;
        const long done = stream.readBytes(buffer, count);
        return stream.good() ? done : -1;
    } catch (const GException&) {
        return -1;
    }
}

std::int64_t MovieReader::seek(std::uint32_t position, std::int64_t offset, int origin) const
{
    // In 64 bits, where no offset of 32 can run over.
    std::int64_t target = offset;
    if (origin == 1)
        target = std::int64_t{position} + offset;
    else if (origin == 2)
        target = std::int64_t{length_} - offset;
    return target >= 0 && target <= std::int64_t{length_} ? target : -1;
}

}  // namespace zmr
