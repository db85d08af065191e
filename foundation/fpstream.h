#pragma once

#include "foundation/GFile.h"
#include "foundation/GFileIO.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"

class RedirectionFile;

/// What the file streams share: the file and its buffer, and the redirection of file names.
class ZMR_GV_API fpbase : public virtual pstream {
public:
    ~fpbase() override;
    /// Why the file could not be opened; none when the stream is good.
    [[nodiscard]] const zmr::FileError& open_error() const { return open_error_; }

    /// The process's redirection, or null when the host set none.
    [[nodiscard]] static RedirectionFile* GetRedirectionFile();
    /// Takes the redirection over; null takes it away.
    static void SetRedirectionFile(std::unique_ptr<RedirectionFile> redirection);
    /// The redirected form of a file name: the directories of the first item that matches the last
    /// name, each with that name. With `as_mask` 0 the first that exists, else the name as given;
    /// not 0: the first directory, whether or not the result exists.
    [[nodiscard]] static GFile RedirectedName(const char* name, unsigned char as_mask);

protected:
    static constexpr long kBufferBytes = 65536;

    /// Opens the file; the derived constructor calls `attach` once its reader or writer part
    /// stands.
    fpbase(const char* name, GIO::IOOpenMode mode, GFileIO::IOCreateMode create,
           GFileIO::IOShareMode share);
    /// Calls init with the opened file's buffer; a failed opening leaves the stream bad.
    void attach();

private:
    std::unique_ptr<GBufferedIO> file_buffer_;
    zmr::FileError open_error_;
};

/// Reads a file.
class ZMR_GV_API ifpstream : public fpbase, public ipstream {
public:
    explicit ifpstream(const char* name, GIO::IOOpenMode mode = GIO::OpenRead,
                       GFileIO::IOCreateMode create = GFileIO::OpenExisting,
                       GFileIO::IOShareMode share = GFileIO::ShareRead);
    ~ifpstream() override;
};

/// Writes a file. The destructor hands on what is left and drops a failure: call `flush` to see
/// one.
class ZMR_GV_API ofpstream : public fpbase, public opstream {
public:
    explicit ofpstream(const char* name, GIO::IOOpenMode mode = GIO::OpenWrite,
                       GFileIO::IOCreateMode create = GFileIO::CreateOrTruncate,
                       GFileIO::IOShareMode share = GFileIO::ShareNone);
    ~ofpstream() override;
};
