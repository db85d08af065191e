#pragma once

namespace zmr {

/// Holds the state of a registry: ready before any static construction when it is `constinit`, and
/// never destroyed, because modules that unload at the end of the process still take themselves
/// out.
template <class T>
union Immortal {
    constexpr Immortal() : value() {}
    constexpr ~Immortal() {}  // on purpose not that of `value`
    Immortal(const Immortal&) = delete;
    Immortal& operator=(const Immortal&) = delete;

    T* operator->() { return &value; }
    T& operator*() { return value; }

    T value;
};

}  // namespace zmr
