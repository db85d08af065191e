#pragma once

#include "foundation/GStreamable.h"

#include <memory>

namespace odb {

struct DestroyObject {
    void operator()(GStreamable* object) const { GStreamable::Destroy(object); }
};
/// An object with one owner, ended as the object model asks.
using OwnedObject = std::unique_ptr<GStreamable, DestroyObject>;

}  // namespace odb
