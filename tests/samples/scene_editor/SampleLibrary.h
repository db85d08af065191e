#pragma once

#include "graphics/PixelMap.h"
#include "odb/ObjectDatabase.h"
#include "tests/TemporaryFolder.h"

#include <string>

/// A library in a folder of its own, filled through the library's interface.
class SampleLibrary {
public:
    /// "deep/er" with two pictures, "plain" with one, and in the root three pictures; all have
    /// icons but "root b".
    SampleLibrary();
    /// One directory, the root, with `count` pictures "entry 000000", ...; each `icon_every`-th has
    /// an icon, none with 0.
    SampleLibrary(int count, int icon_every);

    [[nodiscard]] const std::string& file() const { return file_; }
    [[nodiscard]] std::string beside(const std::string& name) const { return folder_.file(name); }

private:
    TemporaryFolder folder_;
    std::string file_;
};

/// Adds a picture of one colour. With `with_icon` it gets one.
void add_picture(ObjectDatabase& database, const GResourcePath& path, const char* name, int width,
                 int height, bool with_icon);
