#pragma once

#include <cstring>

// Processor faults of every kind. Volatile, so that the compiler cannot see them coming.

namespace faults {

inline int* volatile nowhere = nullptr;
inline const char* volatile no_text = nullptr;
inline volatile int zero = 0;
inline volatile int sink = 0;
inline void (*volatile no_function)() = nullptr;

struct Virtual {
    virtual ~Virtual() = default;
    virtual void call() {}
};
inline Virtual* volatile no_object = nullptr;

inline void read_null()
{
    sink = *nowhere;
}
inline void write_null()
{
    *nowhere = 1;
}
inline void divide_by_zero()
{
    sink = 5 / zero;
}
inline void call_null()
{
    no_function();
}
inline void call_virtual_of_null()
{
    no_object->call();
}
inline void run_illegal_instruction()
{
    asm volatile("ud2");
}
/// In the C library, on a pointer of ours.
inline void measure_no_text()
{
    sink = static_cast<int>(std::strlen(no_text));
}
struct Held {
    ~Held() { sink = 1; }
};
inline void measure_no_text_with_an_object()
{
    const Held object;
    measure_no_text();
}
inline void read_in_noexcept() noexcept
{
    sink = *nowhere;
}
struct ReadsInDestructor {
    ~ReadsInDestructor() { sink = *nowhere; }
};
inline void read_in_destructor()
{
    const ReadsInDestructor object;
}

}  // namespace faults
