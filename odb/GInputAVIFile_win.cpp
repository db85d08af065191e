#include "odb/GInputAVIFile.h"

#include "odb/ShortMovieName.h"
#include "platform/Windows.h"

#include <vfw.h>

GInputAVIFile::GInputAVIFile(const char* name)
{
    ::AVIFileInit();
    const zmr::ShortMovieName short_name(name);
    if (::AVIFileOpenA(&handle, short_name.text(), OF_READ | OF_SHARE_DENY_NONE, nullptr) !=
        AVIERR_OK)
        handle = nullptr;
}

GInputAVIFile::~GInputAVIFile()
{
    if (handle != nullptr)
        ::AVIFileRelease(handle);
    ::AVIFileExit();
}
