#include "responder/GBehaviour.h"

#include "foundation/GSUSInfo.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "responder/GResponder.h"
#include "responder/RunningDispatch.h"
#include "responder/StreamOwnership.h"

G_DEFINE_CLASS(GBehaviour, GStreamable);

GBehaviour::GBehaviour(const GBehaviour& other)
    : GStreamable(other),
      mode(other.mode),
      user_word(other.user_word),
      next_behaviour(other.next_behaviour)
{
    // Without the host: nothing tells a copy, which is in no chain, that the host ends.
}

GBehaviour& GBehaviour::operator=(const GBehaviour& other)
{
    if (this == &other)
        return *this;
    GStreamable::operator=(other);
    mode = other.mode;
    user_word = other.user_word;
    if (host_responder == nullptr)
        next_behaviour = other.next_behaviour;
    return *this;
}

GBehaviour::~GBehaviour()
{
    if (host_responder != nullptr)
        host_responder->unlink_behaviour(this);
    zmr::RunningDispatch::BehaviourDies(this);
}

void GBehaviour::shut_down()
{
    if (host_responder != nullptr)
        host_responder->detach_behaviour(this);
    GStreamable::shut_down();
}

void GBehaviour::handle_event(GEvent&) {}

bool GBehaviour::mouse_ran_round(const GEvent&)
{
    return false;
}

void GBehaviour::attaching_to_object(GResponder* responder, unsigned char attach)
{
    host_responder = attach != 0 ? responder : nullptr;
}

void GBehaviour::WriteList(opstream& out, GBehaviour* head)
{
    while (head != nullptr && !head->shouldWrite())
        head = head->next_behaviour;
    out.writeStreamablePointer(head, false);
}

GBehaviour* GBehaviour::ReadList(ipstream& in)
{
    auto* head = in.read_pointer<GBehaviour>();
    return zmr::try_claim(in) ? head : nullptr;
}

void GBehaviour::write(opstream& out)
{
    out.writeByte(kVersion);
    GStreamable::write(out);
    out.writeByte(mode);
    WriteList(out, next_behaviour);
    out.writeDWord(user_word);
}

void GBehaviour::read(ipstream& in)
{
    const unsigned char version = in.readByte();
    if (version > 1)
        GStreamable::read(in);
    else
        GSUSInfo::InputScale(1.0);
    if (version == 0) {
        // The host, which attaches the whole chain once it has been read. Until then there is none:
        // data from anywhere could name a responder that knows nothing of this behaviour.
        static_cast<void>(in.read_pointer<GResponder>());
        next_behaviour = ReadList(in);
        mode = in.readByte();
        return;
    }
    mode = in.readByte();
    next_behaviour = ReadList(in);
    if (version >= 3)
        user_word = static_cast<std::uint32_t>(in.readDWord());
}
