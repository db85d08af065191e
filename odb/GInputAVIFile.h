#pragma once

#include "platform/Export.h"

struct IAVIFile;

/// A movie file of the platform's AVI layer, opened for reading. What is in it is read with that
/// layer's own functions through `handle`. Where there is no such layer every open fails. The
/// thread that made it.
class ZMR_GV_API GInputAVIFile {
public:
    /// Opens the file of that name, or a movie inside a library (ODB_MovieAttribute).
    explicit GInputAVIFile(const char* name);
    virtual ~GInputAVIFile();
    GInputAVIFile(const GInputAVIFile&) = delete;
    GInputAVIFile& operator=(const GInputAVIFile&) = delete;

    IAVIFile* handle = nullptr;  ///< Null when the open failed. Owned: nobody else releases it.
};
