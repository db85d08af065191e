#include "foundation/GException.h"

#include "foundation/GStaticText.h"

#include <cstdarg>

namespace {

// Texts that cost no memory, for the moments when there is none.
constinit const zmr::StaticText kLostText("There was no memory for the text of this message.");
constinit const zmr::StaticText kOutOfMemoryText("There is not enough memory for this operation.");
constinit const zmr::StaticText kOutOfRangeText("An index is out of its range.");

void copy_text(GString& target, const GString& source) noexcept
{
    try {
        target = source;
    } catch (...) {  // out of memory, or what the host's new-handler throws
        GStaticString::put(target, kLostText);
    }
}

}  // namespace

GException::GException(const GException& other) noexcept : std::exception(other)
{
    copy_text(message_text, other.message_text);
}

GException& GException::operator=(const GException& other) noexcept
{
    copy_text(message_text, other.message_text);
    return *this;
}

GException::~GException() = default;

GLibraryException::~GLibraryException() = default;

void GLibraryException::message(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    message_text.vformat(format, arguments);
    va_end(arguments);
}

OutOfMemory_Exception::OutOfMemory_Exception() noexcept
{
    GStaticString::put(message_text, kOutOfMemoryText);
}

OutOfMemory_Exception::~OutOfMemory_Exception() = default;

TGVector_IndexOutOfRange_Exception::TGVector_IndexOutOfRange_Exception(long index_, long low_,
                                                                       long high_) noexcept
    : index(index_), low(low_), high(high_)
{
    GStaticString::put(message_text, kOutOfRangeText);
}

TGVector_IndexOutOfRange_Exception::~TGVector_IndexOutOfRange_Exception() = default;

GStreamException::~GStreamException() = default;

UnknownStreamableType_Exception::UnknownStreamableType_Exception(const char* class_name_)
    : GStreamException(
          (GString("There is no class of the name \"") + class_name_ + "\" in this program.").text),
      class_name(class_name_)
{
}

UnknownStreamableType_Exception::UnknownStreamableType_Exception(
    const UnknownStreamableType_Exception& other) noexcept
    : GStreamException(other)
{
    copy_text(class_name, other.class_name);
}

UnknownStreamableType_Exception& UnknownStreamableType_Exception::operator=(
    const UnknownStreamableType_Exception& other) noexcept
{
    GStreamException::operator=(other);
    copy_text(class_name, other.class_name);
    return *this;
}

UnknownStreamableType_Exception::~UnknownStreamableType_Exception() = default;
