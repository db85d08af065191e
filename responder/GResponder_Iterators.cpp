#include "responder/GResponder_Iterators.h"

#include "foundation/GCollection.h"

namespace {

void collect(GCollection& out, const GResponder& node, const GResponder& root, bool all)
{
    if (node.getCount() == 0 || (all && &node != &root))
        out.v_insert(const_cast<GResponder*>(&node));
    for (GResponder_Iterator child(node); child(); ++child)
        collect(out, *child.object(), root, all);
}

}  // namespace

GResponder_Traverser::GResponder_Traverser(const GResponder& root, unsigned char all)
    : snapshot_list_(new GCollection(0, 4, 0), GStreamable::Destroy)
{
    collect(*snapshot_list_, root, root, all != 0);
}

GResponder_Traverser::~GResponder_Traverser() = default;

bool GResponder_Traverser::operator()() const
{
    return position_ < snapshot_list_->count;
}

GResponder* GResponder_Traverser::object() const
{
    return static_cast<GResponder*>(snapshot_list_->at(position_));
}
