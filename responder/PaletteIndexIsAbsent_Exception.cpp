#include "responder/PaletteIndexIsAbsent_Exception.h"

PaletteIndexIsAbsent_Exception::PaletteIndexIsAbsent_Exception(long index)
{
    message("Palette index #%i is absent", static_cast<int>(index));
}

PaletteIndexIsAbsent_Exception::~PaletteIndexIsAbsent_Exception() = default;
