#include "platform/Windows.h"

#include <vfw.h>

// A decoder of movies that takes every movie of its form, counts what it decodes in the file that
// ZMR_DECODER_CALLS names, and reads outside the memory: what a damaged movie makes of a decoder
// that trusts it.

namespace {

const int* volatile g_nowhere = nullptr;

void note_call()
{
    char name[1024]{};
    ::GetEnvironmentVariableA("ZMR_DECODER_CALLS", name, sizeof name);
    const HANDLE calls =
        ::CreateFileA(name, FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr);
    DWORD written = 0;
    ::WriteFile(calls, "decode\n", 7, &written, nullptr);
    ::CloseHandle(calls);
}

LRESULT tell_format(const BITMAPINFOHEADER& input, BITMAPINFOHEADER* output)
{
    if (output == nullptr)
        return sizeof(BITMAPINFOHEADER);
    *output = input;
    output->biSize = sizeof *output;
    output->biBitCount = 24;
    output->biCompression = BI_RGB;
    output->biSizeImage = static_cast<DWORD>(input.biWidth * input.biHeight * 3);
    return ICERR_OK;
}

}  // namespace

extern "C" LRESULT WINAPI DriverProc(DWORD_PTR, HDRVR, UINT message, LPARAM first, LPARAM second)
{
    switch (message) {
        case DRV_LOAD:
        case DRV_OPEN:
        case DRV_ENABLE:
        case DRV_CLOSE:
        case DRV_DISABLE:
        case DRV_FREE:
            return 1;
        case ICM_DECOMPRESS_GET_FORMAT:
            return tell_format(*reinterpret_cast<const BITMAPINFOHEADER*>(first),
                               reinterpret_cast<BITMAPINFOHEADER*>(second));
        case ICM_DECOMPRESS_QUERY:
        case ICM_DECOMPRESS_BEGIN:
        case ICM_DECOMPRESS_END:
        case ICM_DECOMPRESSEX_QUERY:
        case ICM_DECOMPRESSEX_BEGIN:
        case ICM_DECOMPRESSEX_END:
            return ICERR_OK;
        case ICM_DECOMPRESS:
        case ICM_DECOMPRESSEX:
            note_call();
            return *g_nowhere;
        default:
            return ICERR_UNSUPPORTED;
    }
}
