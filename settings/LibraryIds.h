#pragma once

// Numbers of the library's own texts. Also read by the resource compiler, so that there is nothing
// but #define in it.

#define ZMR_IDS_FAULT 10000               // what a processor fault is told with
#define ZMR_IDS_FAULT_DESCRIPTIONS 10001  // fifteen of them, split by |
#define ZMR_IDS_GRID 10004                // the format of a status line
