#pragma once

#include "platform/Export.h"

/// Sorting of things that are told by their indices alone.
class ZMR_GV_API MSort {
public:
    /// A heap sort over the indices 0 to `count` - 1: about 2 n log n calls of `compare` (negative,
    /// 0 or positive, as the thing at the first index comes before, equals or comes after the
    /// other) and n log n of `swap`, in no memory of its own. Not stable. A compare that
    /// contradicts itself gives some order. An exception of either leaves a permutation of the
    /// things.
    static void HSort(long count, short (*compare)(long, long), void (*swap)(long, long));
};
