#pragma once

#include "foundation/GStreamable.h"
#include "responder/GEvent.h"

#include <cstdint>

class GResponder;

namespace zmr {
class RunningDispatch;
}

/// A reaction that plugs into a responder and sees its events before or after it. A responder has a
/// chain of them, the last one attached first, and owns it; a behaviour is in one chain at most.
/// User-interface thread.
class ZMR_GV_API GBehaviour : public GStreamable {
    G_DECLARE_CLASS(GBehaviour)

public:
    // Bits of `mode`.
    static constexpr unsigned char handles_before = 0x1;  ///< handle_event before the responder's.
    static constexpr unsigned char handles_after = 0x2;   ///< The same behind it.

    GBehaviour() = default;
    /// A copy is not attached, but names the same next behaviour until it is.
    GBehaviour(const GBehaviour& other);
    /// Takes over the fields; an attached behaviour keeps its place in its chain.
    GBehaviour& operator=(const GBehaviour& other);
    /// Leaves the chain.
    ~GBehaviour() override;

    [[nodiscard]] GBehaviour* get_next() const { return next_behaviour; }

    /// Detaches the behaviour.
    void shut_down() override;
    /// Reads all versions. The rest of the chain follows from it.
    void read(ipstream& in) override;
    /// Writes the behaviour and all behind it in the chain that are to be written.
    void write(opstream& out) override;

    /// Called for each event of the responder, at the time that `mode` tells. It may detach or end
    /// any behaviour and the responder.
    virtual void handle_event(GEvent& event);
    /// Called in front of that for positional kinds. True keeps the event from the same function of
    /// the behaviours behind and of the responder.
    virtual bool mouse_ran_round(const GEvent& event);
    /// Called when the behaviour has been put into the chain of `responder`, and when it is about
    /// to leave it. Overrides call this one.
    virtual void attaching_to_object(GResponder* responder, unsigned char attach);

    /// Writes the chain from the first behaviour on that is to be written, or null.
    static void WriteList(opstream& out, GBehaviour* head);
    /// Reads what WriteList wrote, for the object that is being read to own. A behaviour that the
    /// data gives to a second owner ends the chain.
    [[nodiscard]] static GBehaviour* ReadList(ipstream& in);

    unsigned char mode = handles_before;
    std::uint32_t user_word = 0;  ///< Kept through streaming; the library gives it no meaning.

    static constexpr unsigned char kVersion = 3;  ///< 1: no host; 2: base part; 3: `user_word`.

protected:
    explicit GBehaviour(StreamableInit) {}

    GResponder* host_responder = nullptr;  ///< Null while detached.

private:
    friend class GResponder;
    friend class zmr::RunningDispatch;

    GBehaviour* next_behaviour = nullptr;
};
