#include "store/StoreFiles.h"

#include <atomic>

namespace zmr {
namespace {

constinit std::atomic<FileSystemDevice*> g_files = nullptr;

}  // namespace

FileSystemDevice& store_files()
{
    FileSystemDevice* const files = g_files.load();
    return files == nullptr ? FileSystemDevice::Real() : *files;
}

StoreFilesInPlace::StoreFilesInPlace(FileSystemDevice& files) : former_(g_files.exchange(&files)) {}

StoreFilesInPlace::~StoreFilesInPlace()
{
    g_files = former_;
}

}  // namespace zmr
