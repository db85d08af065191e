#include "ResponderPeers.h"

#include <cstdint>

// The plain things: a recursive virtual call, and packed fields of two bits.

namespace {

constexpr unsigned kInputKinds = 0x3C3;
constexpr std::uint32_t kDisabled = 0x100;

/// What the way of an event needs, in a block of 64 bytes of the heap.
class Node {
public:
    Node() = default;
    virtual ~Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// In the order of responders and by the same bits, but nobody may end or move on the way.
    virtual void handle(unsigned& what)
    {
        if ((what & kInputKinds) != 0 || children.empty())
            return;
        if (current != nullptr)
            current->handle(what);
        for (Node* child : children) {
            if (what == 0)
                return;
            if (child != current && ((what & kInputKinds) == 0 || (child->state & kDisabled) == 0))
                child->handle(what);
        }
    }
    /// From the last child to the first, as responders do.
    virtual void set_state(std::uint32_t bits, bool on)
    {
        state = on ? state | bits : state & ~bits;
        for (std::size_t index = children.size(); index > 0; --index)
            children[index - 1]->set_state(bits, on);
    }

    std::vector<Node*> children;
    Node* current = nullptr;
    Node* owner = nullptr;
    std::uint32_t state = 1;
    std::uint32_t options = 0;
};

class Counting final : public Node {
public:
    void handle(unsigned& what) override
    {
        ++g_handled;
        Node::handle(what);
    }
};

using Tree = std::vector<std::unique_ptr<Node>>;

/// The first one is the root.
std::shared_ptr<Tree> make_tree(const TreeShape& shape)
{
    Tree allocated;
    for (int number = 0; number < shape.nodes; ++number)
        allocated.push_back(std::make_unique<Counting>());
    auto tree = std::make_shared<Tree>();
    for (const int place : places_of(shape))
        tree->push_back(std::move(allocated[static_cast<std::size_t>(place)]));
    for (int number = 1; number < shape.nodes; ++number) {
        const auto parent = static_cast<std::size_t>(parent_of(number, shape.fan));
        Node* child = (*tree)[static_cast<std::size_t>(number)].get();
        child->owner = (*tree)[parent].get();
        child->owner->children.push_back(child);
    }
    return tree;
}

void count(const Node& node)
{
    ++g_handled;
    for (const Node* child : node.children)
        count(*child);
}

}  // namespace

Work plain::broadcast(const TreeShape& shape)
{
    return [tree = make_tree(shape)] {
        unsigned what = 0x10;
        tree->front()->handle(what);
    };
}

Work plain::walk(const TreeShape& shape)
{
    return [tree = make_tree(shape)] { count(*tree->front()); };
}

Work plain::state(const TreeShape& shape)
{
    return [tree = make_tree(shape), on = false]() mutable {
        on = !on;
        tree->front()->set_state(kDisabled, on);
    };
}

Work plain::commands(const CommandIds& ids)
{
    unsigned long highest = 0;
    for (const unsigned long id : ids.ids)
        highest = id > highest ? id : highest;
    std::vector<std::uint8_t> fields(highest / 4 + 1, 0xFF);
    return [ids = ids.ids, fields] {
        long enabled = 0;
        for (const unsigned long id : ids)
            enabled += (fields[id / 4] >> (id % 4 * 2) & 3) != 0 ? 1 : 0;
        g_handled += enabled;
    };
}
