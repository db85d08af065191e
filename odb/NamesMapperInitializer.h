#pragma once

#include "odb/NamesMapper.h"

/// A static instance contributes to NamesMapper as its module loads.
class NamesMapperInitializer {
public:
    explicit NamesMapperInitializer(unsigned int first_id) { NamesMapper::Initialize(first_id); }
    NamesMapperInitializer(HINSTANCE module, unsigned int first_id)
    {
        NamesMapper::InitializeFromBEM(module, first_id);
    }
    explicit NamesMapperInitializer(const CString& text) { NamesMapper::Initialize(text); }
};
