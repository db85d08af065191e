#include "odb/MovieProcedure.h"

#include "foundation/Immortal.h"
#include "odb/MovieName.h"
#include "odb/OpenMovies.h"
#include "platform/Windows.h"

#include <mmsystem.h>

#include <mutex>

namespace zmr {

namespace {

constexpr LRESULT kFailed = -1;
constexpr DWORD kWriting = MMIO_WRITE | MMIO_READWRITE;
constexpr DWORD kJustAsking = MMIO_PARSE | MMIO_EXIST;

OpenMovies& open_movies()
{
    static Immortal<OpenMovies> all;
    return *all;
}

struct Installed {
    std::mutex mutex;
    std::vector<std::uint32_t> codes;
};

Installed& installed()
{
    static Immortal<Installed> all;
    return *all;
}

// The open movie's number lies in adwInfo[0], which can't hold a pointer; the position in
// lDiskOffset, which the layer reads too.

LRESULT open(MMIOINFO& info, const char* name)
{
    if ((info.dwFlags & kWriting) != 0)
        return MMIOERR_CANNOTOPEN;
    std::unique_ptr<MovieReader> movie = MovieReader::Open(name);
    if (movie == nullptr)
        return MMIOERR_CANNOTOPEN;
    if ((info.dwFlags & (kJustAsking | MMIO_GETTEMP)) != 0)
        return (info.dwFlags & kJustAsking) != 0 ? 0 : MMIOERR_CANNOTOPEN;
    info.adwInfo[0] = open_movies().add(std::move(movie));
    info.lDiskOffset = 0;
    return 0;
}

LRESULT read(MMIOINFO& info, void* buffer, LPARAM count)
{
    const std::shared_ptr<MovieReader> movie = open_movies().find(info.adwInfo[0]);
    if (movie == nullptr)
        return 0;
    const auto position = static_cast<std::uint32_t>(info.lDiskOffset);
    const std::int64_t done = movie->read(position, buffer, count);
    if (done > 0)
        info.lDiskOffset = static_cast<LONG>(position + static_cast<std::uint32_t>(done));
    return static_cast<LRESULT>(done);
}

LRESULT seek(MMIOINFO& info, LPARAM offset, LPARAM origin)
{
    const std::shared_ptr<MovieReader> movie = open_movies().find(info.adwInfo[0]);
    if (movie == nullptr)
        return 0;
    const std::int64_t target = movie->seek(static_cast<std::uint32_t>(info.lDiskOffset),
                                            static_cast<LONG>(offset), static_cast<int>(origin));
    if (target >= 0)
        info.lDiskOffset = static_cast<LONG>(target);
    return static_cast<LRESULT>(target);
}

LRESULT close(MMIOINFO& info)
{
    open_movies().remove(info.adwInfo[0]);
    info.adwInfo[0] = 0;
    return 0;
}

/// The layer is C: no exception may pass through it.
LRESULT CALLBACK movie_procedure(LPSTR text, UINT message, LPARAM first, LPARAM second) noexcept
{
    auto& info = *reinterpret_cast<MMIOINFO*>(text);
    try {
        switch (message) {
            case MMIOM_READ:
                return read(info, reinterpret_cast<void*>(first), second);
            case MMIOM_SEEK:
                return seek(info, first, second);
            case MMIOM_OPEN:
                return open(info, reinterpret_cast<const char*>(first));
            case MMIOM_CLOSE:
                return close(info);
            default:
                return 0;  // writing among them: nothing is written
        }
    } catch (...) {
        return message == MMIOM_OPEN ? MMIOERR_CANNOTOPEN : kFailed;
    }
}

}  // namespace

bool install_movie_procedure(const char* extension)
{
    const std::uint32_t code = movie_extension_code(extension);
    Installed& all = installed();
    const std::lock_guard locked(all.mutex);
    if (::mmioInstallIOProcA(code, nullptr, MMIO_FINDPROC) == &movie_procedure)
        return false;
    if (::mmioInstallIOProcA(code, &movie_procedure, MMIO_INSTALLPROC) == nullptr)
        return false;
    all.codes.push_back(code);
    return true;
}

void remove_movie_procedures()
{
    Installed& all = installed();
    const std::lock_guard locked(all.mutex);
    for (auto code = all.codes.rbegin(); code != all.codes.rend(); ++code)
        ::mmioInstallIOProcA(*code, &movie_procedure, MMIO_REMOVEPROC);
    all.codes.clear();
}

std::vector<std::uint32_t> installed_movie_codes()
{
    Installed& all = installed();
    const std::lock_guard locked(all.mutex);
    return all.codes;
}

}  // namespace zmr
