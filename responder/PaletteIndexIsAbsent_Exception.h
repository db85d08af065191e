#pragma once

#include "foundation/GException.h"

/// For hosts: a colour was asked for that no palette has. The library itself falls back on the
/// default colour.
class ZMR_GV_API PaletteIndexIsAbsent_Exception : public GLibraryException {
public:
    explicit PaletteIndexIsAbsent_Exception(long index);
    ~PaletteIndexIsAbsent_Exception() override;
};
