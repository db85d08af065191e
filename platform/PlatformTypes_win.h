#pragma once

// The very types of <windows.h>, named without it.

using DWORD = unsigned long;
using LONG = long;
using LONGLONG = long long;
using ULONGLONG = unsigned long long;
using DWORD_PTR = unsigned long long;
using COLORREF = DWORD;

struct tagPOINT;  // whole in "platform/PlatformRecordsOfLane.h"
struct tagSIZE;
struct tagRECT;
struct tagPOINTS;
