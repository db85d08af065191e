#pragma once

#include "foundation/TGCollection.h"
#include "graphics/AbstractImageReaderWriter.h"

/// Readers and writers, which it owns.
class ImageReaderWriterList : public TGCollection<AbstractImageReaderWriter> {
public:
    ImageReaderWriterList() : TGCollection<AbstractImageReaderWriter>(0, 8, 1) {}
};
