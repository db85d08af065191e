#pragma once

#include "foundation/GFile.h"

class GStreamable;

// A file that holds one object: its stream behind a head that tells its class
// (docs/object-file.md). The functions report by their results and never throw but for want of
// memory; any thread.
namespace zmr {

/// The object, owned by the caller. Null for a missing, foreign or damaged file, and for a class
/// that is not registered here.
[[nodiscard]] GStreamable* read_object_file(const GFile& file);
/// The name of the class of the object in the file, from the head alone; empty when there is none.
[[nodiscard]] GString object_file_class(const GFile& file);
/// Writes the object. The file is made beside its place, brought to the disk and put there in one
/// step: a failure, a kill or a power cut leaves the former file or the new one, each whole. False
/// when it failed: then the former file is there, or the new one that may not stay.
[[nodiscard]] bool write_object_file(const GFile& file, GStreamable& object);
/// Copies the bytes of an object file, in the same way. Needs no class.
[[nodiscard]] bool copy_object_file(const GFile& from, const GFile& to);
/// Removes any file; false when there was none or it can't be removed.
[[nodiscard]] bool remove_file(const GFile& file);

}  // namespace zmr
