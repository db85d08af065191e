#pragma once

#include "responder/GResponder.h"

/// The streamable responder of old data: it can be read, and writes nothing.
class ZMR_GV_API GView : public GResponder {
    G_DECLARE_CLASS(GView)

public:
    GView() = default;
    GView(const GView&) = default;
    GView& operator=(const GView&) = default;
    ~GView() override;

    /// Reads all versions. What is no part of a responder is read and dropped.
    void read(ipstream& in) override;
    /// Nothing.
    void write(opstream& out) override;

    // What the versions of the data added.
    static constexpr unsigned char kWithChildren = 1;  ///< Before, only when forced.
    static constexpr unsigned char kWithText = 2;      ///< That version and the next one only.
    static constexpr unsigned char kWithFont = 3;

protected:
    explicit GView(StreamableInit init) : GResponder(init) {}

    /// Passes over a font.
    static void ReadOldGFont(ipstream& in);
};
