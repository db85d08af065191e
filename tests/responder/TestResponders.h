#pragma once

#include "foundation/OwnedObject.h"
#include "responder/GBehaviour.h"
#include "responder/GResponder.h"
#include "responder/GView.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

// What the tests of the responders share.

/// What happened, in order.
using Log = std::vector<std::string>;

/// Ends with its whole subtree.
template <class T>
using Ended = zmr::OwnedObject<T>;

template <class T, class... Arguments>
[[nodiscard]] Ended<T> make(Arguments&&... arguments)
{
    return Ended<T>(new T(static_cast<Arguments&&>(arguments)...));
}

/// A responder with everything that can be overridden written to a log, and hooks.
class TestResponder : public GResponder {
public:
    explicit TestResponder(const char* own_name = "", Log* own_log = nullptr)
        : name(own_name), log(own_log)
    {
    }
    ~TestResponder() override;

    void handle_event(GEvent& event) override;
    void mouse_ran_round(const GEvent& event) override;
    void set_state(unsigned long bits, unsigned char on) override;
    unsigned char valid(unsigned long regime) override;
    unsigned short Priority() const override;
    void idle() override;
    void set_regime(unsigned long regime) override;
    void shut_down() override;

    using GResponder::simply_assign_current;
    using GResponder::valid_inserted_pointer;

    std::string name;
    Log* log;
    std::function<void(GEvent&)> on_event;
    std::function<void()> on_mouse;
    std::function<void()> on_idle;
    bool logs_states = false;
    bool logs_regimes = false;
    unsigned char is_valid = 1;
    unsigned short priority = 0;  ///< 0: that of the base.
    static inline int alive = 0;

private:
    void note(const std::string& text);
    struct Count {
        Count() { ++alive; }
        Count(const Count&) { ++alive; }
        Count& operator=(const Count&) { return *this; }
        ~Count() { --alive; }
    } counted_;
};

/// Adds children behind the present ones.
inline TestResponder* add(GResponder& owner, const char* name = "", Log* log = nullptr)
{
    auto* child = new TestResponder(name, log);
    owner.insert_before(child, nullptr);
    return child;
}

/// A streamed responder: version byte, own part, children.
class StreamedResponder : public GResponder {
    G_DECLARE_CLASS(StreamedResponder)

public:
    StreamedResponder() { living.push_back(this); }
    StreamedResponder(const StreamedResponder& other) : GResponder(other)
    {
        living.push_back(this);
    }
    ~StreamedResponder() override;
    void read(ipstream& in) override;
    void write(opstream& out) override;

    using GResponder::ForceReadSubobjects;
    using GResponder::old_read;
    using GResponder::old_write;
    using GResponder::read_linked_object;
    using GResponder::read_subobjects;
    using GResponder::simply_assign_current;
    using GResponder::write_subobjects;
    using GStreamable::streamable_flags_;
    void leave_out() { streamable_flags_ |= kNotWritten; }

    static inline std::vector<StreamedResponder*> living;
};

/// Writes to a log what it is called for.
class TestBehaviour : public GBehaviour {
    G_DECLARE_CLASS(TestBehaviour)

public:
    TestBehaviour() { begin(); }
    explicit TestBehaviour(const char* own_name, Log* own_log = nullptr,
                           unsigned char own_mode = handles_before)
        : name(own_name), log(own_log)
    {
        mode = own_mode;
        begin();
    }
    TestBehaviour(const TestBehaviour& other) : GBehaviour(other), name(other.name), log(other.log)
    {
        begin();
    }
    ~TestBehaviour() override;

    void handle_event(GEvent& event) override;
    bool mouse_ran_round(const GEvent& event) override;
    void attaching_to_object(GResponder* responder, unsigned char attach) override;
    void leave_out() { streamable_flags_ |= kNotWritten; }
    [[nodiscard]] GResponder* host() const { return host_responder; }

    std::string name;
    Log* log = nullptr;
    bool takes_mouse = false;
    std::function<void(GEvent&)> on_event;
    std::function<void()> on_mouse;
    static inline int alive = 0;
    static inline std::vector<TestBehaviour*> living;

private:
    void begin()
    {
        ++alive;
        living.push_back(this);
    }
    void note(const std::string& text);
};

/// As a stream builds it: with the constructor for objects about to be read.
class BuiltBehaviour : public GBehaviour {
public:
    BuiltBehaviour() : GBehaviour(StreamableInit::ForReading) {}
};

constexpr GEvent::GEventType kBroadcast = static_cast<GEvent::GEventType>(0x10);
constexpr GEvent::GEventType kMouseMove = static_cast<GEvent::GEventType>(0x2);

[[nodiscard]] inline GEvent event_of(GEvent::GEventType what)
{
    GEvent event;
    event.what = what;
    return event;
}
