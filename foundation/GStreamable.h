#pragma once

#include "foundation/GObject.h"

class ipstream;
class opstream;

/// An object that can be written to and read from the typed streams, copied through them, and that
/// ends in two steps: `shut_down` detaches it from all that refers to it, then its memory goes.
class ZMR_GV_API GStreamable : public GObject {
public:
    /// Marks the constructor for an object that `read` will fill. What such a constructor leaves
    /// unset must not hinder the destructor: a `read` that throws is followed by it.
    enum class StreamableInit { ForReading = 0 };

    const GMetaClass* getMetaClass() const override;
    const type_info& getTypeInfo_() const override;
    void* cast_to_(const type_info& type) const override;

    /// Detaches the object from everything that refers to it and leaves it alive. Here: nothing.
    virtual void shut_down();
    /// Reads what `write` wrote: the base part with the scale that GSUSInfo::InputScale sets.
    /// Throws GStreamException on malformed data.
    virtual void read(ipstream& in);
    /// Writes the base part, whose scale is 1: objects hold scene units. Derived classes call it
    /// behind their version byte.
    virtual void write(opstream& out);
    /// A new object of the same class with the same contents, owned by the caller, made by writing
    /// this object to memory and reading it back; null for a class that can't be built by name.
    /// `deep` is for overrides that can share parts; the base version always copies all.
    [[nodiscard]] virtual GStreamable* clone(bool deep);

    /// False leaves the object out of its parent's children and behaviours on writing.
    [[nodiscard]] bool shouldWrite() const { return (streamable_flags_ & kNotWritten) == 0; }

    /// Runs `shut_down` at once and ends the object: it is freed now, or at the next
    /// SuspendedDestruction::DestroyAll while deferring is enabled. Tracking pointers read null
    /// when this returns. Null, and an object that is ending already, are ignored. When `shut_down`
    /// throws, the object lives on.
    static void destroy(GStreamable* object);
    /// The same for an object with a single owner: it is freed at once.
    static void Destroy(GStreamable* object);

    static const type_info gTypeInfo_;
    static const GMetaClass metaclass_;

protected:
    GStreamable() = default;
    GStreamable(const GStreamable&) = default;
    GStreamable& operator=(const GStreamable&) = default;

    static constexpr unsigned char kNotWritten = 1;

    unsigned char streamable_flags_ = 0;

private:
    static void End(GStreamable* object, bool may_wait);
};
