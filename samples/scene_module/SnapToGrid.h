#pragma once

#include "responder/GBehaviour.h"

/// A behaviour for objects of a scene: wherever they are moved to, they come to lie on the nearest
/// point of a grid; keys go on to the next one.
class SnapToGrid : public GBehaviour {
    G_DECLARE_CLASS(SnapToGrid)

public:
    SnapToGrid() = default;

    [[nodiscard]] double step() const { return step_; }
    void handle_event(GEvent& event) override;
    /// Throws GStreamException for a later version and for data that ends early. A step outside its
    /// limits becomes the usual one.
    void read(ipstream& in) override;
    void write(opstream& out) override;

    static constexpr unsigned char kVersion = 1;
    static constexpr double kUsualStep = 25;  ///< In scene units.
    static constexpr double kLeastStep = 1e-3;
    static constexpr double kMostStep = 1e5;

protected:
    explicit SnapToGrid(StreamableInit init) : GBehaviour(init) {}

private:
    double step_ = kUsualStep;
};
