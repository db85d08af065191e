#include "foundation/GException.h"
#include "foundation/ipstream.h"
#include "foundation/mpstream.h"
#include "graphics/PaletteCollection.h"
#include "responder/GBehaviour.h"
#include "responder/GResponder.h"
#include "responder/GView.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

// Trees of responders out of arbitrary bytes: GViews of all versions, streamed responders and
// behaviours. What comes out is used (events, notifications, states, order), written and read
// again. All objects must have been freed in the end by ending those that nobody owns.

namespace {

std::vector<GResponder*> g_responders;
std::vector<GBehaviour*> g_behaviours;

/// A responder as a host streams it.
class SceneNode : public GResponder {
    G_DECLARE_CLASS(SceneNode)

public:
    SceneNode() { g_responders.push_back(this); }
    ~SceneNode() override { std::erase(g_responders, this); }
    void read(ipstream& in) override
    {
        if (in.readByte() > 0)
            throw GStreamException("A node was written by a newer program.");
        old_read(in);
        read_subobjects(in);
    }
    void write(opstream& out) override
    {
        out.writeByte(0);
        old_write(out);
        write_subobjects(out);
    }
};

/// Old data, with children in it whatever its version.
class OldNode : public GView {
    G_DECLARE_CLASS(OldNode)

public:
    OldNode()
    {
        g_responders.push_back(this);
        ++alive;
    }
    ~OldNode() override
    {
        std::erase(g_responders, this);
        --alive;
    }
    void read(ipstream& in) override
    {
        ForceReadSubobjects(in.readByte() % 2 != 0);
        GView::read(in);
    }

    static inline int alive = 0;
};

/// A behaviour that takes part, and keeps account of those that live.
class Reaction : public GBehaviour {
    G_DECLARE_CLASS(Reaction)

public:
    Reaction() { g_behaviours.push_back(this); }
    ~Reaction() override { std::erase(g_behaviours, this); }
    void handle_event(GEvent& event) override
    {
        // The word is the host's affair: here it tells what to do.
        if (host_responder != nullptr && user_word % 16 == 1)
            host_responder->clear_event(event);
        else if (host_responder != nullptr && user_word % 16 == 2)
            host_responder->detach(this);
    }
    [[nodiscard]] bool attached() const { return host_responder != nullptr; }
};

G_DEFINE_CLASS(SceneNode, GResponder);
G_DEFINE_CLASS(OldNode, GView);
G_DEFINE_CLASS(Reaction, GBehaviour);

/// Knows the classes that keep account of their objects, and no others.
class SceneStream : public impstream {
public:
    using impstream::impstream;

protected:
    const GMetaClass* find_class(const char* name) override
    {
        const GMetaClass* found = impstream::find_class(name);
        for (const GMetaClass* known : {&SceneNode::metaclass_, &OldNode::metaclass_,
                                        &Reaction::metaclass_, &PaletteCollection::metaclass_}) {
            if (found == known)
                return found;
        }
        return nullptr;
    }
};

/// What a host does with what it has read.
void use(GResponder& read)
{
    constexpr GEvent::GEventType kinds[] = {GEvent::event_mouse_press,
                                            static_cast<GEvent::GEventType>(0x10)};
    for (const GEvent::GEventType kind : kinds) {
        GEvent event;
        event.what = kind;
        GResponder::Message(&read, event);
    }
    read.set_state(GResponder::state_exposed | GResponder::state_focused, 1);
    read.object_modified();
    read.select_next(1);
    read.change_regime(3);
    static_cast<void>(read.topmost()->get_pal(1));
    if (read.getCount() > 1) {
        read.last()->makeFirst();
        read.rearrange(read.last(), read.first());
    }
}

/// What is written must be readable again, with as many children. (Not with the same bytes: reading
/// inserts by priority, and takes no current child that could not be selected.)
void check_rereads(SceneNode& read)
{
    ompstream out;
    out.writePointer(&read);
    SceneStream in(out.bytes());
    auto* copy = in.read_pointer<SceneNode>();
    if (copy == nullptr || copy->getCount() != read.getCount() || in.remaining() != 0)
        std::abort();
    GStreamable::Destroy(copy);
}

/// Ends all that nobody owns.
void end_orphans()
{
    while (!g_responders.empty()) {
        GResponder* top = g_responders.back();
        while (top->get_owner() != nullptr)
            top = top->get_owner();
        GStreamable::Destroy(top);
    }
    while (!g_behaviours.empty()) {
        if (static_cast<Reaction*>(g_behaviours.back())->attached())
            std::abort();  // its responder should have ended it
        GStreamable::Destroy(g_behaviours.back());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    SceneStream in(std::span<const unsigned char>(bytes, size));
    std::vector<GResponder*> read;
    try {
        while (in.remaining() > 0) {
            if (auto* responder = in.read_pointer<GResponder>())
                read.push_back(responder);
        }
    } catch (const GStreamException&) {
        read.clear();  // what was read before may have gone with it
    }
    for (GResponder* responder : read) {
        use(*responder);
        // Old nodes write nothing, so that a tree with one can't be read again.
        auto* node = zmr::class_cast<SceneNode>(responder);
        if (node != nullptr && OldNode::alive == 0 && size < 4096)
            check_rereads(*node);
    }
    end_orphans();
    return 0;
}
