#pragma once

#include "foundation/pstream.h"

/// The typed writer; see ipstream. Every operation but writeBytes on a stream whose device failed
/// throws. Objects are told apart by address: none that was written may die while the stream is
/// still written to. One thread at a time.
class ZMR_GV_API opstream : public virtual pstream {
public:
    ~opstream() override;

    /// Writes the object, or a reference to it when it was written before. Null is written as null.
    /// Throws GStreamException when objects nest deeper than ipstream::kMaxDepth.
    virtual void writePointer(GStreamable* object);
    /// The same. With `only_known` an object that was not written before is written as null.
    void writeStreamablePointer(GStreamable* object, bool only_known);

    void writeByte(unsigned char value) { write_value(value); }
    void writeWord(unsigned short value) { write_value<std::uint16_t>(value); }
    /// The low 32 bits.
    void writeDWord(unsigned long value) { write_value(static_cast<std::uint32_t>(value)); }
    void writeQWord(std::uint64_t value) { write_value(value); }
    void writeFloat(float value) { write_value(value); }
    void writeDouble(double value) { write_value(value); }
    /// Up to ipstream::kMaxStringBytes; null is kept apart from the empty text.
    void writeString(const char* text);
    /// A text that may hold zero bytes.
    void write_text(std::string_view text);
    /// Raw bytes; returns the count.
    long writeBytes(const void* data, long size);
    [[nodiscard]] long tellp();
    void flush();

    /// Writes a class reference: the class's name, or null.
    opstream& operator<<(const GMetaClass* metaclass);
    opstream& operator<<(unsigned char value) { return write_from(value); }
    opstream& operator<<(std::uint16_t value) { return write_from(value); }
    opstream& operator<<(std::uint32_t value) { return write_from(value); }
    opstream& operator<<(std::int32_t value) { return write_from(value); }
    opstream& operator<<(float value) { return write_from(value); }
    opstream& operator<<(double value) { return write_from(value); }

protected:
    opstream();
    void buffer_changed(GAbstractBufferedIO* buffer) override;

private:
    template <class T>
    void write_value(T value)
    {
        if (out_->has_room(sizeof(T))) [[likely]]
            std::memcpy(out_->fill(sizeof(T)), &value, sizeof(T));
        else
            write_beyond_window(value);
    }
    /// Apart, so that the value above needs no place in memory.
    template <class T>
    [[gnu::noinline]] void write_beyond_window(T value)
    {
        write_exactly(&value, sizeof(T));
    }
    template <class T>
    opstream& write_from(T value)
    {
        write_value(value);
        return *this;
    }
    void write_exactly(const void* data, std::size_t size);

    struct Graph;
    [[nodiscard]] Graph& graph();
    void write_class(const GMetaClass& metaclass);

    GAbstractBufferedIO* out_;
    std::unique_ptr<Graph> graph_;
};
