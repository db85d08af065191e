#include "tests/responder/TestResponders.h"

#include "foundation/GPointer.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <cstdio>

G_DEFINE_CLASS(StreamedResponder, GResponder);
G_DEFINE_CLASS(TestBehaviour, GBehaviour);

namespace {

std::string hexadecimal(unsigned long value)
{
    char text[24];
    std::snprintf(text, sizeof text, "%lx", value);
    return text;
}

}  // namespace

TestResponder::~TestResponder() = default;

void TestResponder::note(const std::string& text)
{
    if (log != nullptr)
        log->push_back(name + text);
}

void TestResponder::handle_event(GEvent& event)
{
    note(" event " + hexadecimal(event.what));
    if (on_event) {
        const TGPointer<TestResponder> self(this);
        const auto hook = on_event;
        hook(event);
        if (!self)
            return;
    }
    GResponder::handle_event(event);
}

void TestResponder::mouse_ran_round(const GEvent& event)
{
    note(" mouse");
    if (on_mouse) {
        const auto hook = on_mouse;
        hook();
        return;
    }
    GResponder::mouse_ran_round(event);
}

void TestResponder::set_state(unsigned long bits, unsigned char on)
{
    if (logs_states)
        note((on != 0 ? " +" : " -") + hexadecimal(bits));
    GResponder::set_state(bits, on);
}

unsigned char TestResponder::valid(unsigned long regime)
{
    if (logs_regimes)
        note(" valid");
    return is_valid != 0 ? GResponder::valid(regime) : 0;
}

unsigned short TestResponder::Priority() const
{
    return priority != 0 ? priority : GResponder::Priority();
}

void TestResponder::idle()
{
    note(" idle");
    if (on_idle) {
        const auto hook = on_idle;
        hook();
    }
}

void TestResponder::set_regime(unsigned long regime)
{
    if (logs_regimes)
        note(" regime");
    GResponder::set_regime(regime);
}

void TestResponder::shut_down()
{
    note(" ends");
    GResponder::shut_down();
}

StreamedResponder::~StreamedResponder()
{
    std::erase(living, this);
}

void StreamedResponder::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    old_read(in);
    read_subobjects(in);
}

void StreamedResponder::write(opstream& out)
{
    out.writeByte(0);
    old_write(out);
    write_subobjects(out);
}

TestBehaviour::~TestBehaviour()
{
    --alive;
    std::erase(living, this);
}

void TestBehaviour::note(const std::string& text)
{
    if (log != nullptr)
        log->push_back(name + text);
}

void TestBehaviour::handle_event(GEvent& event)
{
    note(" event " + hexadecimal(event.what));
    if (on_event) {
        const auto hook = on_event;
        hook(event);
    }
}

bool TestBehaviour::mouse_ran_round(const GEvent&)
{
    note(" mouse");
    const bool takes = takes_mouse;
    if (on_mouse) {
        const auto hook = on_mouse;
        hook();
    }
    return takes;
}

void TestBehaviour::attaching_to_object(GResponder* responder, unsigned char attach)
{
    note(attach != 0 ? " attached" : " detached");
    GBehaviour::attaching_to_object(responder, attach);
}
