#pragma once

#include "foundation/GStreamable.h"

#include <memory>

namespace zmr {

struct ObjectDestroyer {
    void operator()(GStreamable* object) const { GStreamable::Destroy(object); }
};

/// An object of the model with one owner, ended as the model asks: by GStreamable::Destroy, which
/// may put the end off, and never by delete.
template <class Type = GStreamable>
using OwnedObject = std::unique_ptr<Type, ObjectDestroyer>;

}  // namespace zmr
