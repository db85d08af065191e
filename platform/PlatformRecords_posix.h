#pragma once

#include "platform/PlatformTypes.h"

struct tagPOINT {
    LONG x;
    LONG y;
};
struct tagSIZE {
    LONG cx;
    LONG cy;
};
struct tagRECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
struct tagPOINTS {
    short x;
    short y;
};
