#include "foundation/MSort.h"

namespace {

/// Lets the thing at `place` sink until none of those under it, in the heap of `count` things,
/// comes after it.
void sink(long place, long count, short (*compare)(long, long), void (*swap)(long, long))
{
    while (place < count / 2) {
        long child = 2 * place + 1;
        if (child < count - 1 && compare(child, child + 1) < 0)
            ++child;
        if (compare(place, child) >= 0)
            return;
        swap(place, child);
        place = child;
    }
}

}  // namespace

void MSort::HSort(long count, short (*compare)(long, long), void (*swap)(long, long))
{
    for (long place = count / 2; place-- > 0;)
        sink(place, count, compare, swap);
    for (long last = count - 1; last > 0; --last) {
        swap(0, last);
        sink(0, last, compare, swap);
    }
}
