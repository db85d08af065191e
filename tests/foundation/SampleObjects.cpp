#include "SampleObjects.h"

#include "foundation/GException.h"

#include <algorithm>

// Derived classes before their bases: the order of registration must not matter.
G_DEFINE_CLASS(SampleTagged, SampleLeaf, SampleTag);
G_DEFINE_CLASS(SampleThrower, SampleNode);
G_DEFINE_CLASS(SampleLeaf, SampleNode);
G_DEFINE_CLASS(SampleTag, GStreamable);
G_DEFINE_CLASS(SampleWatcher, GStreamable);
G_DEFINE_CLASS(SampleGroup, GStreamable);
G_DEFINE_CLASS(SampleNode, GStreamable);

SampleNode::SampleNode()
{
    ++alive;
    living.push_back(this);
}

SampleNode::SampleNode(const char* text) : SampleNode()
{
    name = text;
}

SampleNode::SampleNode(const SampleNode& other) : GStreamable(other), name(other.name)
{
    ++alive;
    living.push_back(this);
}

SampleNode::~SampleNode()
{
    GStreamable::destroy(child);
    --alive;
    living.erase(std::find(living.rbegin(), living.rend(), this).base() - 1);
}

void SampleNode::end_orphans_beyond(std::size_t count)
{
    std::vector<SampleNode*> orphans;
    for (std::size_t at = count; at < living.size(); ++at) {
        if (!living[at]->has_owner)
            orphans.push_back(living[at]);
    }
    for (SampleNode* orphan : orphans)
        GStreamable::destroy(orphan);
}

void SampleNode::shut_down()
{
    ++shut_downs;
    GStreamable::shut_down();
}

void SampleNode::read(ipstream& in)
{
    if (in.readByte() > kVersion)
        throw GStreamException("A node was written by a newer program.");
    GStreamable::read(in);
    in.read_text(name);
    child = in.read_owned<SampleNode>();
    if (child != nullptr)
        child->has_owner = true;
    peer = in.read_pointer<SampleNode>();
}

void SampleNode::write(opstream& out)
{
    out.writeByte(kVersion);
    GStreamable::write(out);
    out.write_text(name.view());
    out.writePointer(child);
    out.writePointer(peer);
}

void SampleLeaf::read(ipstream& in)
{
    SampleNode::read(in);
    in >> value;
}

void SampleLeaf::write(opstream& out)
{
    SampleNode::write(out);
    out << value;
}

void SampleWatcher::read(ipstream& in)
{
    GStreamable::read(in);
    for (unsigned count = in.readByte(); count > 0; --count)
        watched.push_back(in.read_pointer<GStreamable>());
}

void SampleWatcher::write(opstream& out)
{
    GStreamable::write(out);
    out.writeByte(static_cast<unsigned char>(watched.size()));
    for (GStreamable* object : watched)
        out.writePointer(object);
}

SampleGroup::~SampleGroup()
{
    for (GStreamable* child : children)
        GStreamable::destroy(child);
}

void SampleGroup::read(ipstream& in)
{
    GStreamable::read(in);
    for (unsigned count = in.readByte(); count > 0; --count)
        children.push_back(in.read_owned<GStreamable>());
}

void SampleGroup::write(opstream& out)
{
    GStreamable::write(out);
    out.writeByte(static_cast<unsigned char>(children.size()));
    for (GStreamable* child : children)
        out.writePointer(child);
}

void SampleThrower::read(ipstream& in)
{
    SampleNode::read(in);
    throw GStreamException("This class can't be read.");
}
