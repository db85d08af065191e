#pragma once

#include "graphics/ImageCodecs.h"

#include "platform/Export.h"

#include <memory>
#include <optional>
#include <span>

class ipstream;

namespace zmr {

/// The kind of picture that a file holds, told from its head and, for TGA, its name; none for
/// another file or one that can't be read.
[[nodiscard]] std::optional<ImageKind> recognise_picture_file(const char* file);

/// Reads a picture file. Throws GLibraryException that names the file and says what is wrong, also
/// when the file is missing or no picture; OutOfMemory_Exception without memory.
[[nodiscard]] PixelBuffer load_picture_file(const char* file);

/// Decodes a picture from a file's bytes, whose name is not known. Throws as above, naming no file.
[[nodiscard]] PixelBuffer decode_picture(std::span<const unsigned char> bytes);

/// Writes a picture in the format of the name's extension. An existing file is replaced in one step
/// when `overwrite` allows it, else kept. False when the picture is empty, the extension is of no
/// format that is written, or the file can't be written.
[[nodiscard]] bool save_picture_file(const PixelBuffer& picture, const char* file, bool overwrite);

/// All bytes from the stream's position to its end, at most kMaxPictureFileBytes. Throws
/// GLibraryException for more.
[[nodiscard]] std::vector<unsigned char> read_to_end(ipstream& in);

inline constexpr std::uint64_t kMaxPictureFileBytes = std::uint64_t{1} << 31;

}  // namespace zmr
