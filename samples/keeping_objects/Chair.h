#pragma once

#include "foundation/GStreamable.h"
#include "foundation/GString.h"

// [class]
/// What this program keeps in its library.
class Chair : public GStreamable {
    G_DECLARE_CLASS(Chair)

public:
    Chair() = default;
    Chair(const char* made_of, int leg_count) : wood(made_of), legs(leg_count) {}
    void read(ipstream& in) override;
    void write(opstream& out) override;

    GString wood;
    int legs = 4;
};
// [/class]
