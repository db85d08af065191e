#include "foundation/fpstream.h"

#include "foundation/Immortal.h"
#include "foundation/Redirection.h"

namespace {

constinit zmr::Immortal<std::unique_ptr<RedirectionFile>> g_redirection;

}  // namespace

fpbase::fpbase(const char* name, GIO::IOOpenMode mode, GFileIO::IOCreateMode create,
               GFileIO::IOShareMode share)
{
    auto file = std::make_unique<GFileIO>(name, mode, create, share);
    open_error_ = file->open_error();
    if (file->is_open())
        file_buffer_ = std::make_unique<GBufferedIO>(file.release(), kBufferBytes);
}

fpbase::~fpbase() = default;

void fpbase::attach()
{
    init(file_buffer_.get());
}

RedirectionFile* fpbase::GetRedirectionFile()
{
    return g_redirection->get();
}

void fpbase::SetRedirectionFile(std::unique_ptr<RedirectionFile> redirection)
{
    *g_redirection = std::move(redirection);
}

GFile fpbase::RedirectedName(const char* name, unsigned char as_mask)
{
    GFile given(name);
    const RedirectionItem* item =
        GetRedirectionFile() == nullptr ? nullptr : GetRedirectionFile()->find(name);
    if (item == nullptr)
        return given;
    for (long index = 0; index < item->count; ++index) {
        GFile candidate(static_cast<const char*>(item->at(index)));
        candidate.add_name(given.get_name());
        if (as_mask != 0 || candidate.exists())
            return candidate;
    }
    return given;
}

ifpstream::ifpstream(const char* name, GIO::IOOpenMode mode, GFileIO::IOCreateMode create,
                     GFileIO::IOShareMode share)
    : fpbase(name, mode, create, share)
{
    attach();
}

ifpstream::~ifpstream() = default;

ofpstream::ofpstream(const char* name, GIO::IOOpenMode mode, GFileIO::IOCreateMode create,
                     GFileIO::IOShareMode share)
    : fpbase(name, mode, create, share)
{
    attach();
}

ofpstream::~ofpstream() = default;
