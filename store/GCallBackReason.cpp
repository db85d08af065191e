#include "store/GCallBackReason.h"

#include <atomic>

namespace {

// Reasons are made during static construction of several modules: no constructor may be needed.
constinit std::atomic<std::uint32_t> next_number = 1;

}  // namespace

const GCallBackReason GAnyReason = GCallBackReason::Any();

GCallBackReason::GCallBackReason() : number_(next_number.fetch_add(1)) {}
