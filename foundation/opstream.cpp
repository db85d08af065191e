#include "foundation/opstream.h"

#include "foundation/GException.h"
#include "foundation/PointerNumbers.h"
#include "foundation/StreamFormat.h"
#include "foundation/ipstream.h"

#include <algorithm>
#include <limits>
#include <vector>

struct opstream::Graph {
    zmr::PointerNumbers objects;
    std::vector<std::uint16_t> class_numbers;  ///< By ordinal: the number and 1, 0 for none yet.
    std::uint32_t classes = 0;
    int depth = 0;
};

opstream::opstream() : out_(ClosedBuffer()) {}

opstream::~opstream() = default;

inline opstream::Graph& opstream::graph()
{
    if (graph_ == nullptr)
        graph_ = std::make_unique<Graph>();
    return *graph_;
}

void opstream::writePointer(GStreamable* object)
{
    if (object == nullptr) {
        writeByte(zmr::kNullPointer);
        return;
    }
    Graph& met = graph();
    // By the whole object's address: it may come as the part of one base or of another.
    const std::uint32_t number = met.objects.add(dynamic_cast<const void*>(object));
    if (number != zmr::PointerNumbers::kAbsent) {
        writeByte(zmr::kKnownObject);
        write_value(number);
        return;
    }
    if (met.depth >= ipstream::kMaxDepth)
        throw GStreamException("Objects are nested too deeply to be written.");
    write_class(*object->getMetaClass());

    struct DepthGuard {
        explicit DepthGuard(int& counted) : depth(counted) { ++depth; }
        ~DepthGuard() { --depth; }
        int& depth;
    };
    const DepthGuard guard(met.depth);
    object->write(*this);
}

void opstream::writeStreamablePointer(GStreamable* object, bool only_known)
{
    if (only_known && object != nullptr &&
        graph().objects.find(dynamic_cast<const void*>(object)) == zmr::PointerNumbers::kAbsent)
        object = nullptr;
    writePointer(object);
}

inline void opstream::write_class(const GMetaClass& metaclass)
{
    Graph& met = *graph_;
    const std::uint32_t ordinal = metaclass.ordinal();
    if (ordinal >= met.class_numbers.size())
        met.class_numbers.resize(std::size_t{ordinal} + 1);
    std::uint16_t& known = met.class_numbers[ordinal];
    if (known == 0) {
        if (met.classes >= zmr::kMaxClasses ||
            std::strlen(metaclass.name) > zmr::kMaxClassNameBytes)
            throw GStreamException("Too many classes for one stream, or too long a class name.");
        known = static_cast<std::uint16_t>(++met.classes);
        writeByte(zmr::kNewClass);
        writeString(metaclass.name);
        return;
    }
    const std::uint32_t number = known - 1u;
    if (number < zmr::kClassesInTag) {
        writeByte(static_cast<unsigned char>(zmr::kFirstClassTag + number));
        return;
    }
    writeByte(zmr::kWideClass);
    write_value(static_cast<std::uint16_t>(number));
}

void opstream::writeString(const char* text)
{
    if (text == nullptr)
        writeByte(static_cast<unsigned char>(zmr::kNullString));
    else
        write_text(text);
}

void opstream::write_text(std::string_view text)
{
    const std::size_t length = text.size();
    if (length < zmr::kLongString) {
        if (unsigned char* bytes = out_->room(length + 1)) {
            bytes[0] = static_cast<unsigned char>(length);
            std::memcpy(bytes + 1, text.data(), length);
            return;
        }
        writeByte(static_cast<unsigned char>(length));
    } else {
        if (length > ipstream::kMaxStringBytes)
            throw GStreamException("A text is too long to be written.");
        writeByte(static_cast<unsigned char>(zmr::kLongString));
        write_value(static_cast<std::uint32_t>(length));
    }
    write_exactly(text.data(), length);
}

long opstream::writeBytes(const void* data, long size)
{
    if (size <= 0)
        return 0;
    if (unsigned char* bytes = out_->room(static_cast<std::size_t>(size))) {
        std::memcpy(bytes, data, static_cast<std::size_t>(size));
        return size;
    }
    if (bad()) {
        add_state(kFail);
        return 0;
    }
    return on_device([&] { return out_->gwrite(data, size); });
}

void opstream::write_exactly(const void* data, std::size_t size)
{
    require_device();
    const auto* bytes = static_cast<const unsigned char*>(data);
    constexpr std::size_t kLargest = std::numeric_limits<long>::max();
    while (size > 0) {
        const auto part = static_cast<long>(std::min(size, kLargest));
        on_device([&] { return out_->gwrite(bytes, part); });
        bytes += part;
        size -= static_cast<std::size_t>(part);
    }
}

long opstream::tellp()
{
    return on_device([&] { return out_->gtell(); });
}

void opstream::flush()
{
    require_device();
    on_device([&] { out_->flush(); });
}

opstream& opstream::operator<<(const GMetaClass* metaclass)
{
    writeString(metaclass == nullptr ? nullptr : metaclass->name);
    return *this;
}

void opstream::buffer_changed(GAbstractBufferedIO* buffer)
{
    out_ = buffer;
}
