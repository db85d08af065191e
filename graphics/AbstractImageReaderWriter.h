#pragma once

#include "graphics/FileImageInfo.h"
#include "graphics/ImageFileFilter.h"

class ImageReaderWriterList;
class PixelMap;
class ipstream;
class opstream;

/// Reads and writes the pictures of one file format. Stateless; any thread, one call on a stream at
/// a time.
class ZMR_GV_API AbstractImageReaderWriter {
public:
    /// What GetAllInfo asks for.
    static constexpr unsigned kReaders = 1;
    static constexpr unsigned kWriters = 2;

    virtual ~AbstractImageReaderWriter();

    /// Reads the whole picture, from the stream's position to its end, into the map, which takes
    /// over its size and format. A damaged or cut picture throws GLibraryException and leaves the
    /// map as it was.
    virtual void read_image(ipstream& in, PixelMap& map) const = 0;
    [[nodiscard]] virtual ImageFileFilter get_filter() const = 0;
    /// Writes the map. Throws GLibraryException for an empty map, or where can_write is false.
    virtual void write_image(opstream& out, const PixelMap& map) const = 0;
    [[nodiscard]] virtual bool can_write() const = 0;

    /// Looks at the picture that starts at the stream's position, which is kept. Returns a new
    /// FileImageInfo, and in `reader` (which may be null) a new reader that fits; the caller
    /// deletes both. Null, and a null reader, when it is no picture of a known format, is damaged
    /// in its structure, or the stream can't seek.
    [[nodiscard]] static FileImageInfo* ReadInfo(ipstream& in, AbstractImageReaderWriter** reader);
    /// Fills the list with those that do all that `mode` asks for (kReaders, kWriters or both), in
    /// the order in which users see them, and returns their number. `flags` is 0.
    static int GetAllInfo(ImageReaderWriterList& list, unsigned mode, unsigned flags);

protected:
    AbstractImageReaderWriter() = default;
    AbstractImageReaderWriter(const AbstractImageReaderWriter&) = default;
    AbstractImageReaderWriter& operator=(const AbstractImageReaderWriter&) = default;
};
