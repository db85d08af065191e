#pragma once

// Where there is no <windows.h>: the same names, sizes and layouts, so that records which are kept
// in files and in memory are the same in both lanes.

using DWORD = std::uint32_t;
using LONG = std::int32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using DWORD_PTR = std::uintptr_t;
using COLORREF = DWORD;

struct tagPOINT;  // whole in "platform/PlatformRecordsOfLane.h"
struct tagSIZE;
struct tagRECT;
struct tagPOINTS;
