// Any text as a movie's name: parsed, built again, and opened in a small library in memory.
#include "MemoryFile.h"
#include "graphics/PixelMap.h"
#include "odb/MovieName.h"
#include "odb/MovieReader.h"
#include "odb/ODB_MovieAttribute.h"
#include "odb/ObjectDatabase.h"
#include "store/StoreFiles.h"

#include "foundation/mpstream.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

/// The library that the names may lead into; made once.
class Library {
public:
    Library() : in_place_(files_), database_("lib.odb", GIO::OpenReadWrite)
    {
        PixelMap map(40, 40, AbstractImage::Format24, nullptr);
        database_.append_object(&map, GString("lamp"), nullptr);
        const std::string bytes(200'000, 'm');
        for (const std::size_t size : {std::size_t{5}, bytes.size()}) {
            impstream in(std::span(reinterpret_cast<const unsigned char*>(bytes.data()), size));
            GResourceFullName name(GResourcePath(), GString(size == 5 ? "a" : "lamp"),
                                   ODB_MovieAttribute::GetMovieResourceType());
            database_.copy_from(name, in, -1, 0);
        }
        database_.flush();
    }

private:
    MemoryFileSystem files_;
    zmr::StoreFilesInPlace in_place_;
    ObjectDatabase database_;
};

void check_round_trip(const GFile& file, const GResourceFullName& name)
{
    GFile file_again;
    GResourceFullName again;
    if (!zmr::parse_movie_name(zmr::build_movie_name(file, name), file_again, again) ||
        !(again == name) || !(file_again == file))
        std::abort();
}

void play(const std::string& text)
{
    const auto movie = zmr::MovieReader::Open(text.c_str());
    if (movie == nullptr)
        return;
    char buffer[500];
    const auto last = movie->length();
    for (const std::uint32_t position : {0u, last / 2, last - 1, last, last + 1}) {
        const std::int64_t done = movie->read(position, buffer, sizeof buffer);
        if (done > 0 && position + static_cast<std::uint64_t>(done) > last)
            std::abort();
    }
    if (movie->seek(0, 0, 2) != last || movie->seek(0, std::int64_t{last} + 1, 0) != -1)
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Library& library = *new Library;
    static_cast<void>(library);
    const std::string text(reinterpret_cast<const char*>(data), size);
    for (const std::string& name : {text, "lib.odb+" + text}) {
        GFile file;
        GResourceFullName resource;
        if (zmr::parse_movie_name(name.c_str(), file, resource))
            check_round_trip(file, resource);
        play(name);
    }
    static_cast<void>(zmr::movie_extension_code(text.c_str()));
    return 0;
}
