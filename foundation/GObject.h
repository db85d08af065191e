#pragma once

#include "foundation/GRTTIObject.h"

#include <cstddef>

class GPointer;

/// An object that tracking pointers can follow, and that can be given up. User-interface thread.
class ZMR_GV_API GObject : public GRTTIObject {
public:
    /// Zeroes the tracking pointers to this object.
    ~GObject() override
    {
        if ((object_flags_ & kWaiting) != 0 || pointers_ != nullptr)
            leave_lists();
    }

    const GMetaClass* getMetaClass() const override;
    const type_info& getTypeInfo_() const override;
    void* cast_to_(const type_info& type) const override;

    /// Switches tracking on or off. Off zeroes the pointers that track the object now, and pointers
    /// set to it later read null. On is the state of a new object.
    virtual void enableSmartPointers(bool enable);
    /// Ends an object that was loaded and turns out to be of no use, as GStreamable::destroy does.
    /// The caller must not touch it afterwards.
    void condemn();

    static const type_info gTypeInfo_;
    static const GMetaClass metaclass_;

protected:
    GObject() = default;
    /// A copy starts with no pointer tracking it; only the flags are taken over.
    GObject(const GObject& other);
    /// Keeps the pointers that track this object.
    GObject& operator=(const GObject& other);

    /// Marks the object as ending; false when it is already. From here on no pointer tracks it.
    [[nodiscard]] bool begin_end()
    {
        if ((object_flags_ & kEnding) != 0)
            return false;
        object_flags_ |= kEnding;
        return true;
    }
    /// Takes that mark back.
    void cancel_end() { object_flags_ = static_cast<unsigned char>(object_flags_ & ~kEnding); }
    /// Zeroes what tracks the object and frees it: at once, or when `may_wait` and deferring is
    /// enabled, with SuspendedDestruction::DestroyAll.
    void finish_end(bool may_wait);

private:
    friend class GPointer;
    friend class SuspendedDestruction;
    static constexpr unsigned char kNotTracked = 1;  ///< enableSmartPointers(false).
    static constexpr unsigned char kEnding = 2;      ///< In destroy, or waiting to be freed.
    static constexpr unsigned char kWaiting = 4;     ///< `waiting_index_` is in use.

    void leave_lists();
    void release_pointers();

    union {
        GPointer* pointers_ =
            nullptr;                 ///< Head of the list of the pointers that track this object.
        std::size_t waiting_index_;  ///< Place among the objects that wait to be freed.
    };
    unsigned char object_flags_ = 0;
};
