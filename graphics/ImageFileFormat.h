#pragma once

#include "foundation/GObjectFileFormat.h"

/// Picture files as objects: who knows no format gets a PixelMap from any file that is a picture.
/// The one instance is registered while the library loads.
class ImageFileFormat : public GObjectFileFormat {
public:
    ImageFileFormat();
    ~ImageFileFormat() override;

    /// 1 for a PixelMap that was written in the format of the name's extension.
    unsigned char write_object(const char* file, GStreamable* object) const override;
    GStreamable* read_object(const char* file) const override;
    /// "PixelMap" for a picture.
    GString read_object_class_name(const char* file) override;
};
