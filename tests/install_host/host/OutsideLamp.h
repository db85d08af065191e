#pragma once

#include "foundation/GStreamable.h"

/// A class of the host's own: a lamp with a brightness in per cent.
class OutsideLamp : public GStreamable {
    G_DECLARE_CLASS(OutsideLamp)

public:
    OutsideLamp() = default;
    explicit OutsideLamp(unsigned char brightness) : brightness_(brightness) {}

    [[nodiscard]] int brightness() const { return brightness_; }
    void read(ipstream& in) override;
    void write(opstream& out) override;

private:
    unsigned char brightness_ = 75;
};
