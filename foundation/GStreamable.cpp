#include "foundation/GStreamable.h"

#include "foundation/GException.h"
#include "foundation/GSUSInfo.h"
#include "foundation/mpstream.h"

constinit const type_info GStreamable::gTypeInfo_("GStreamable");
const GMetaClass GStreamable::metaclass_(&zmr::this_module, gTypeInfo_, "GStreamable", nullptr,
                                         nullptr, &GObject::metaclass_);

namespace {

// The first byte of the base part.
constexpr unsigned char kUnitScale = 0;
constexpr unsigned char kScaleFollows = 1;

/// The scale of the data being read now comes back at the end of the scope.
class InputScaleKept {
public:
    InputScaleKept() = default;
    ~InputScaleKept() { GSUSInfo::InputScale(scale_); }
    InputScaleKept(const InputScaleKept&) = delete;
    InputScaleKept& operator=(const InputScaleKept&) = delete;

private:
    double scale_ = GSUSInfo::GetInputScale();
};

/// Apart, so that the base part of most objects is read with few registers to save.
[[gnu::noinline]] void read_scale(unsigned char kind, ipstream& in)
{
    if (kind != kScaleFollows)
        throw GStreamException("An object's base part is malformed.");
    GSUSInfo::InputScale(in.readDouble());
}

}  // namespace

const GMetaClass* GStreamable::getMetaClass() const
{
    return &metaclass_;
}

const type_info& GStreamable::getTypeInfo_() const
{
    return gTypeInfo_;
}

void* GStreamable::cast_to_(const type_info& type) const
{
    if (type == gTypeInfo_)
        return const_cast<GStreamable*>(this);
    return GObject::cast_to_(type);
}

void GStreamable::shut_down() {}

void GStreamable::read(ipstream& in)
{
    const unsigned char kind = in.readByte();
    if (kind == kUnitScale) [[likely]]
        GSUSInfo::InputScale(1.0);
    else
        read_scale(kind, in);
}

void GStreamable::write(opstream& out)
{
    out.writeByte(kUnitScale);
}

GStreamable* GStreamable::clone(bool)
{
    if (getMetaClass()->getBuilder() == nullptr)
        return nullptr;
    const InputScaleKept kept;
    ompstream out;
    out.writePointer(this);
    impstream in(out.bytes());
    return in.read_pointer<GStreamable>();
}

void GStreamable::destroy(GStreamable* object)
{
    End(object, true);
}

void GStreamable::Destroy(GStreamable* object)
{
    End(object, false);
}

void GStreamable::End(GStreamable* object, bool may_wait)
{
    if (object == nullptr || !object->begin_end())
        return;
    try {
        object->shut_down();
    } catch (...) {
        object->cancel_end();
        throw;
    }
    object->finish_end(may_wait);
}
