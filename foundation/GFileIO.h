#pragma once

#include "foundation/GIO.h"

#include "platform/FileDevice.h"

#include <cstdint>
#include <memory>
#include <string>

/// The device over one file. Positions are 64 bits wide inside; one that does not fit a `long`
/// fails with error 6. Failures throw GStreamException, which names the file and the reason.
class ZMR_GV_API GFileIO : public GIO {
public:
    /// What happens to a missing or an existing file.
    enum IOCreateMode {
        OpenExisting = 0,     ///< Opens; a missing file fails.
        OpenOrCreate = 1,     ///< Opens, or makes an empty file.
        CreateNew = 2,        ///< Makes an empty file; an existing one fails.
        CreateOrTruncate = 3  ///< Makes an empty file, or empties the existing one.
    };
    /// What others may do with the file meanwhile: bits 1 reading, 2 writing.
    enum IOShareMode { ShareNone = 0, ShareRead = 1, ShareWrite = 2, ShareReadWrite = 3 };

    /// Opens the file; see is_open. `files` is the file system to use, the real one when null.
    GFileIO(const char* name, IOOpenMode mode, IOCreateMode create, IOShareMode share,
            zmr::FileSystemDevice* files = nullptr);
    ~GFileIO() override;

    [[nodiscard]] bool is_open() const { return device_ != nullptr; }
    /// Why it is not open.
    [[nodiscard]] const zmr::FileError& open_error() const { return open_error_; }

    long gseek(long offset, IOSeekDirection direction) override;
    long gtell() override;
    long gwrite(const void* data, long size) override;
    long gread(void* data, long size) override;
    /// Nothing: what is written is with the system already. Does not wait for the disk.
    void flush() override;
    [[nodiscard]] std::int64_t gleft() override;

private:
    [[noreturn]] void fail(IOError error, const char* action, const zmr::FileError& reason);
    [[nodiscard]] std::uint64_t length();

    std::string name_;
    std::unique_ptr<zmr::FileDevice> device_;
    zmr::FileError open_error_;
    std::uint64_t position_ = 0;
};
