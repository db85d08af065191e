#pragma once

#include "platform/FileDevice.h"

namespace zmr {

/// The file system on which libraries and object files lie: the real one, unless a test has put
/// another in its place.
[[nodiscard]] FileSystemDevice& store_files();

/// Puts another file system in the place of the real one while it lives. For tests; files must not
/// be open across its begin or end.
class StoreFilesInPlace {
public:
    explicit StoreFilesInPlace(FileSystemDevice& files);
    ~StoreFilesInPlace();
    StoreFilesInPlace(const StoreFilesInPlace&) = delete;
    StoreFilesInPlace& operator=(const StoreFilesInPlace&) = delete;

private:
    FileSystemDevice* former_;
};

}  // namespace zmr
