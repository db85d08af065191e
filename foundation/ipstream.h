#pragma once

#include "foundation/pstream.h"

class GString;

/// The typed reader. Values are little-endian; docs/stream-format.md tells the encoding. The typed
/// readers throw GStreamException when the data ends early or is malformed, when a limit is passed,
/// or when the device failed; `readBytes` and `skipBytes` give a short count instead. Bytes from
/// anywhere may be read: the result is an object or an exception, in time and memory in proportion
/// to the data. After an exception the stream should not be read on. One thread at a time.
class ZMR_GV_API ipstream : public virtual pstream {
public:
    static constexpr std::uint32_t kMaxStringBytes = 256u << 20;  ///< Longer strings are malformed.
    static constexpr int kMaxDepth = 1000;  ///< Objects within objects; deeper is malformed.

    ~ipstream() override;

    /// Reads an object written by writePointer or writeStreamablePointer. Returns it as the address
    /// of its sub-object of class `type`, or null for a null pointer or an object that is no
    /// `type`. A second reference gives the same object. A class that is not registered, or can't
    /// be built, throws UnknownStreamableType_Exception.
    ///
    /// A new object whose `read` throws, or that is no `type`, is destroyed (GStreamable::Destroy)
    /// with all that it has claimed; later references to any of these give null. When that would
    /// leave a dangling pointer in an object that lives on, it is left alive instead.
    virtual void* readPointer(const type_info& type);

    /// The same as a `T*`.
    template <class T>
    [[nodiscard]] T* read_pointer()
    {
        return static_cast<T*>(readPointer(T::gTypeInfo_));
    }
    /// Declares the caller the owner of the object that the last readPointer returned. Throws
    /// GStreamException when it has an owner already, or is still being read: so that data from
    /// outside can't make two owners free one object; and when owners would nest deeper than
    /// kMaxDepth. Does nothing after a null pointer. The owner keeps the object until the stream
    /// has been read, for later references lead to it.
    void claim();
    /// readPointer and claim: an object that the caller owns, or null.
    template <class T>
    [[nodiscard]] T* read_owned()
    {
        T* object = read_pointer<T>();
        claim();
        return object;
    }

    [[nodiscard]] unsigned char readByte() { return read_value<unsigned char>(); }
    [[nodiscard]] unsigned short readWord() { return read_value<std::uint16_t>(); }
    /// 0 to 2^32 - 1; signed values are taken through std::int32_t.
    [[nodiscard]] unsigned long readDWord() { return read_value<std::uint32_t>(); }
    [[nodiscard]] std::uint64_t readQWord() { return read_value<std::uint64_t>(); }
    [[nodiscard]] float readFloat() { return read_value<float>(); }
    [[nodiscard]] double readDouble() { return read_value<double>(); }
    /// The text on the heap, for gfreestr; null for one written as null.
    [[nodiscard]] char* readString();
    /// Raw bytes; returns the count. A short count sets kEnd and kFail.
    long readBytes(void* data, long size);
    /// Moves forward; sets kEnd and kFail when the data ends before.
    void skipBytes(long size);
    /// Moves the position and returns it; -1, with kFail, where the device can't.
    long seekg(long offset, GIO::IOSeekDirection direction);
    [[nodiscard]] long tellg();
    /// How many bytes are left, or -1 when only reading on will tell.
    [[nodiscard]] long remaining();
    /// Bytes into a block that grows as they come, so that a false length costs no memory: all of
    /// `size`, or GStreamException. `size` is compared with what is left first, where that is
    /// known.
    [[nodiscard]] std::unique_ptr<unsigned char[]> read_block(std::size_t size);

    /// Reads a class reference; null for one written as null or a class not registered here.
    ipstream& operator>>(const GMetaClass*& metaclass);
    ipstream& operator>>(unsigned char& value) { return read_into(value); }
    ipstream& operator>>(std::uint16_t& value) { return read_into(value); }
    ipstream& operator>>(std::uint32_t& value) { return read_into(value); }
    ipstream& operator>>(std::int32_t& value) { return read_into(value); }
    ipstream& operator>>(float& value) { return read_into(value); }
    ipstream& operator>>(double& value) { return read_into(value); }

    /// Reads a string as readString does into `target`, which keeps its value when this throws;
    /// null gives the empty text.
    void read_text(GString& target);

protected:
    ipstream();
    /// The class for a name met in the data, or null. Here: GMetaClass::FindByName.
    virtual const GMetaClass* find_class(const char* name);
    void buffer_changed(GAbstractBufferedIO* buffer) override;

private:
    template <class T>
    [[nodiscard]] T read_value()
    {
        if (!in_->holds(sizeof(T))) [[unlikely]]
            return read_beyond_window<T>();
        T value;
        std::memcpy(&value, in_->pass(sizeof(T)), sizeof(T));
        return value;
    }
    /// Apart, so that the value above needs no place in memory.
    template <class T>
    [[nodiscard, gnu::noinline]] T read_beyond_window()
    {
        T value = 0;
        read_exactly(&value, sizeof(T));
        return value;
    }
    template <class T>
    ipstream& read_into(T& value)
    {
        value = read_value<T>();
        return *this;
    }
    void read_exactly(void* data, std::size_t size);
    void require_left(std::size_t size);
    [[nodiscard]] bool read_length(std::uint32_t& length);

    struct Graph;
    [[nodiscard]] Graph& graph();
    void* read_pointer_beyond_window(const type_info& type);
    void* read_tagged(unsigned char tag, const type_info& type);
    void* read_object_of_class(unsigned char tag, const type_info& type);
    std::uint32_t read_class(unsigned char tag);
    void* read_object(std::uint32_t class_number, const type_info& type);
    void* read_reference(const type_info& type);

    GAbstractBufferedIO* in_;
    std::unique_ptr<Graph> graph_;
};
