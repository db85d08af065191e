#pragma once

#include "platform/Export.h"

/// Names one registered class for the whole process. Two classes are the same only if their
/// `type_info` objects are the same object: all comparisons are of addresses. Not the language
/// run-time's class of that name, which is always written `std::type_info` here.
class ZMR_GV_API type_info {
public:
    /// Keeps `name`, which must live as long as the object (a literal).
    constexpr explicit type_info(const char* name) : name_(name) {}
    type_info(const type_info&) = delete;
    type_info& operator=(const type_info&) = delete;

    [[nodiscard]] constexpr const char* name() const { return name_; }
    friend constexpr bool operator==(const type_info& a, const type_info& b) { return &a == &b; }

private:
    const char* name_;
};
