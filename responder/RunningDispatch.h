#pragma once

class GBehaviour;
class GResponder;

namespace zmr {

/// Stands on the stack while code outside may end the responder, its owner or a behaviour that the
/// code behind it goes on with. Each thread keeps a list of its own; whoever dies walks it, so that
/// nothing is written to a responder for an event and nothing is allocated.
class RunningDispatch {
public:
    /// `owner` may be null.
    RunningDispatch(GResponder* responder, GResponder* owner)
        : responder_(responder), owner_(owner), outer_(innermost)
    {
        innermost = this;
    }
    ~RunningDispatch() { innermost = outer_; }
    RunningDispatch(const RunningDispatch&) = delete;
    RunningDispatch& operator=(const RunningDispatch&) = delete;

    /// False once the responder has died.
    [[nodiscard]] bool alive() const { return responder_ != nullptr; }
    /// The owner that was given, null once it has died.
    [[nodiscard]] GResponder* owner() const { return owner_; }

    /// Steps on `behaviour`, which may be null, and returns it.
    GBehaviour* stand_on(GBehaviour* behaviour)
    {
        behaviour_ = behaviour;
        return behaviour;
    }
    /// Whether the behaviour that the walk stands on is still there.
    [[nodiscard]] bool on_behaviour() const { return behaviour_ != nullptr; }
    /// Steps on the behaviour behind, by the link as it is now; null at the end of the chain, and
    /// when the whole chain was given up.
    GBehaviour* step();

    static void ResponderDies(const GResponder* responder)
    {
        if (innermost != nullptr)
            ForgetResponder(responder);
    }
    static void BehaviourDies(GBehaviour* behaviour)
    {
        if (innermost != nullptr)
            ForgetBehaviour(behaviour);
    }
    /// Ends all walks over the behaviours of `responder`.
    static void ChainEnds(const GResponder* responder);

private:
    static void ForgetResponder(const GResponder* responder);
    static void ForgetBehaviour(GBehaviour* behaviour);

    static constinit thread_local RunningDispatch* innermost;

    GResponder* responder_;
    GResponder* owner_;
    GBehaviour* behaviour_ = nullptr;
    GBehaviour* behind_ = nullptr;  ///< Behind the behaviour that died while the walk stood on it.
    RunningDispatch* outer_;
};

}  // namespace zmr
