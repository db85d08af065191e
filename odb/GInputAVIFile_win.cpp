#include "odb/GInputAVIFile.h"

#include "platform/Windows.h"

#include <vfw.h>

GInputAVIFile::GInputAVIFile(const char* name)
{
    ::AVIFileInit();
    if (::AVIFileOpenA(&handle, name, OF_READ | OF_SHARE_DENY_NONE, nullptr) != AVIERR_OK)
        handle = nullptr;
}

GInputAVIFile::~GInputAVIFile()
{
    if (handle != nullptr)
        ::AVIFileRelease(handle);
    ::AVIFileExit();
}
