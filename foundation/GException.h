#pragma once

#include "foundation/GString.h"

#include <exception>

/// Root of the library's exceptions: thrown by value, caught by reference. Copying never throws a
/// second exception.
class ZMR_GV_API GException : public std::exception {
public:
    GException() = default;
    explicit GException(const GString& text) : message_text(text) {}
    GException(const GException& other) noexcept;
    GException& operator=(const GException& other) noexcept;
    ~GException() override;
    [[nodiscard]] const char* what() const noexcept override { return message_text.text; }

    GString message_text;  ///< A sentence for the user.
};

/// An exception whose message is shown to the user.
class ZMR_GV_API GLibraryException : public GException {
public:
    GLibraryException() = default;
    explicit GLibraryException(const char* text) : GException(GString(text)) {}
    ~GLibraryException() override;
    /// Formats the message as printf does.
    void message(const char* format, ...) __attribute__((format(printf, 2, 3)));
};

/// An allocation failed. Its construction allocates nothing.
class ZMR_GV_API OutOfMemory_Exception : public GLibraryException {
public:
    OutOfMemory_Exception() noexcept;
    ~OutOfMemory_Exception() override;
};

/// An index outside `low` to `high`. Its construction allocates nothing.
class ZMR_GV_API TGVector_IndexOutOfRange_Exception : public GLibraryException {
public:
    TGVector_IndexOutOfRange_Exception(long index, long low, long high) noexcept;
    ~TGVector_IndexOutOfRange_Exception() override;

    long index;
    long low;
    long high;
};

/// A stream's data ends too early, is malformed, or breaks a limit; or its device failed.
class ZMR_GV_API GStreamException : public GLibraryException {
public:
    explicit GStreamException(const char* text) : GLibraryException(text) {}
    ~GStreamException() override;
};

/// An object in a stream is of a class that is not registered in this process.
class ZMR_GV_API UnknownStreamableType_Exception : public GStreamException {
public:
    explicit UnknownStreamableType_Exception(const char* class_name);
    UnknownStreamableType_Exception(const UnknownStreamableType_Exception& other) noexcept;
    UnknownStreamableType_Exception& operator=(
        const UnknownStreamableType_Exception& other) noexcept;
    ~UnknownStreamableType_Exception() override;

    GString class_name;
};
