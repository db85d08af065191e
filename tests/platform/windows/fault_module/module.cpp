#include "tests/platform/windows/Faults.h"

// A plug-in module with faults of its own.

extern "C" __declspec(dllexport) void fault_in_module(int how)
{
    switch (how) {
        case 0:
            return faults::read_null();
        case 1:
            return faults::divide_by_zero();
        case 2:
            return faults::call_null();
        default:
            return faults::measure_no_text();
    }
}
