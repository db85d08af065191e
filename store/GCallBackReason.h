#pragma once

#include "platform/Export.h"

#include <cstdint>

/// Why a callback is called: a number that no other reason of this process has. A value.
class ZMR_GV_API GCallBackReason {
public:
    /// A new reason.
    GCallBackReason();
    friend bool operator==(const GCallBackReason&, const GCallBackReason&) = default;

    /// The wildcard, which stands for every reason where callbacks are taken back.
    [[nodiscard]] static GCallBackReason Any() { return GCallBackReason(0u); }

private:
    constexpr explicit GCallBackReason(std::uint32_t number) : number_(number) {}
    std::uint32_t number_;
};

ZMR_GV_API extern const GCallBackReason GAnyReason;
