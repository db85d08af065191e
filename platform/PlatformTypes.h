#pragma once

// The platform's scalar and handle names in both lanes. Handles are opaque here and are the very
// types of <windows.h> in the win lane, so that a header can name them without that file.

#include <cstdint>

struct HINSTANCE__;
struct HDC__;
struct HWND__;
struct HBITMAP__;
using HINSTANCE = HINSTANCE__*;
using HMODULE = HINSTANCE__*;
using HDC = HDC__*;
using HWND = HWND__*;
using HBITMAP = HBITMAP__*;
using HANDLE = void*;

using BYTE = unsigned char;
using WORD = unsigned short;
using BOOL = int;
using UINT = unsigned int;
using TCHAR = char;
using LPSTR = char*;
using LPCSTR = const char*;
using LPCTSTR = const char*;

#include "platform/PlatformTypesOfLane.h"

using POINT = tagPOINT;
using SIZE = tagSIZE;
using RECT = tagRECT;
using POINTS = tagPOINTS;
