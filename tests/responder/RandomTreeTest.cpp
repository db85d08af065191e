#include "tests/responder/TestResponders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

constexpr unsigned kNodes = 60;
constexpr int kSteps = 100'000;

/// The tree as plain vectors, by the rules told in a few lines.
struct ModelNode {
    int owner = -1;
    int current = -1;
    std::vector<int> children;
    unsigned short priority = 0x8000;
    bool keeps_order = false;
};

class Model {
public:
    explicit Model(unsigned count) : nodes(count) {}

    [[nodiscard]] bool is_above(int node, int other) const
    {
        for (; other >= 0; other = nodes[static_cast<std::size_t>(other)].owner) {
            if (other == node)
                return true;
        }
        return false;
    }
    ModelNode& at(int node) { return nodes[static_cast<std::size_t>(node)]; }

    bool insert(int owner, int child, int target, bool checks = true)
    {
        std::vector<int>& list = at(owner).children;
        if (checks && (at(child).owner >= 0 || is_above(child, owner)))
            return false;
        auto place = target < 0 ? list.end() : std::find(list.begin(), list.end(), target);
        if (target >= 0 && place == list.end())
            return false;
        if (!at(child).keeps_order)
            while (place != list.end() && at(*place).priority > at(child).priority)
                ++place;
        list.insert(place, child);
        forget_former_currents(owner, child);
        at(child).owner = owner;
        return true;
    }
    bool remove(int owner, int child)
    {
        if (at(child).owner != owner)
            return false;
        std::erase(at(owner).children, child);
        at(child).owner = -1;
        return true;
    }
    bool make_first(int child)
    {
        const int owner = at(child).owner;
        if (owner < 0)
            return false;
        std::vector<int>& list = at(owner).children;
        const auto place = std::find(list.begin(), list.end(), child);
        if (place == list.begin() || at(*(place - 1)).priority > at(child).priority)
            return false;
        const int front = list.front();
        list.erase(place);
        at(child).owner = -1;
        return insert(owner, child, front, false);
    }
    void set_current(int owner, int child)
    {
        for (ModelNode& node : nodes) {  // nobody is current twice
            if (node.current == child)
                node.current = -1;
        }
        at(owner).current = child;
    }

    std::vector<ModelNode> nodes;

private:
    [[nodiscard]] int root_of(int node)
    {
        while (at(node).owner >= 0)
            node = at(node).owner;
        return node;
    }
    [[nodiscard]] int holder_of(int node) const
    {
        for (std::size_t holder = 0; holder < nodes.size(); ++holder) {
            if (nodes[holder].current == node)
                return static_cast<int>(holder);
        }
        return -1;
    }
    /// A removed child that gets another owner ceases to be current, and so does one whose tree
    /// takes its former owner's tree in, over any number of such steps.
    void forget_former_currents(int owner, int child)
    {
        const int former = holder_of(child);
        if (former >= 0 && former != owner)
            at(former).current = -1;
        int top = root_of(owner);
        for (int holder = holder_of(top); holder >= 0; holder = holder_of(top)) {
            top = root_of(holder);
            if (top == child) {
                at(holder).current = -1;
                return;
            }
        }
    }
};

/// The real nodes by number.
class RealNode : public GResponder {
public:
    [[nodiscard]] unsigned short Priority() const override { return priority; }
    using GResponder::simply_assign_current;
    int number = -1;
    unsigned short priority = 0x8000;
};

int number_of(const GResponder* responder)
{
    return responder == nullptr ? -1 : static_cast<const RealNode*>(responder)->number;
}

void expect_same(const std::vector<RealNode*>& real, Model& model, int step)
{
    for (unsigned number = 0; number < kNodes; ++number) {
        const RealNode& node = *real[number];
        const ModelNode& expected = model.nodes[number];
        ASSERT_EQ(number_of(node.get_owner()), expected.owner) << step;
        ASSERT_EQ(number_of(node.get_current()), expected.current) << step;
        ASSERT_EQ(node.getCount(), static_cast<short>(expected.children.size())) << step;
        for (short index = 0; index < node.getCount(); ++index)
            ASSERT_EQ(number_of(node.at(index)), expected.children[static_cast<unsigned>(index)]);
    }
}

/// A priority and the keep-order bit, by chance, for a node that is new.
void dress(RealNode& node, ModelNode& model, std::mt19937& random)
{
    node.priority = static_cast<unsigned short>(0x8000 + random() % 3);
    const bool keeps = random() % 8 == 0;
    node.set_state(GResponder::state_keep_order, keeps ? 1 : 0);
    node.set_options(GResponder::option_selectable, 1);
    model.priority = node.priority;
    model.keeps_order = keeps;
}

}  // namespace

TEST(RandomTree, HundredThousandOperations_AreThoseOfTheModel)
{
    std::mt19937 random(20);
    std::vector<RealNode*> real(kNodes);
    Model model(kNodes);
    for (unsigned number = 0; number < kNodes; ++number) {
        real[number] = new RealNode;
        real[number]->number = static_cast<int>(number);
        dress(*real[number], model.nodes[number], random);
    }
    for (int step = 0; step < kSteps; ++step) {
        const auto a = static_cast<int>(random() % kNodes);
        const auto b = static_cast<int>(random() % kNodes);
        RealNode& node = *real[static_cast<std::size_t>(a)];
        RealNode& other = *real[static_cast<std::size_t>(b)];
        const auto& children = model.at(a).children;
        const int target =
            children.empty() || random() % 3 == 0 ? -1 : children[random() % children.size()];
        GResponder* const real_target =
            target < 0 ? nullptr : real[static_cast<std::size_t>(target)];
        switch (random() % 10) {
            case 0:
            case 1:
            case 2: {
                const int front = children.empty() ? -1 : children.front();
                ASSERT_EQ(node.silent_insert(&other), model.insert(a, b, front));
                break;
            }
            case 3:
            case 4:
                ASSERT_EQ(node.insert_before(&other, real_target) != 0, model.insert(a, b, target));
                break;
            case 5:
                ASSERT_EQ(node.silent_remove(&other), model.remove(a, b));
                break;
            case 6:
                if (target >= 0) {
                    node.remove(real_target);
                    model.remove(a, target);
                }
                break;
            case 7:
                ASSERT_EQ(node.makeFirst() != 0, model.make_first(a));
                break;
            case 8:
                if (target >= 0) {
                    node.simply_assign_current(real_target);
                    model.set_current(a, target);
                }
                break;
            default: {
                // Ends with all below it; new ones come in their place.
                if (random() % 20 != 0)
                    break;
                std::vector<int> ended;
                for (int number = 0; number < static_cast<int>(kNodes); ++number) {
                    if (model.is_above(a, number))
                        ended.push_back(number);
                }
                GStreamable::Destroy(&node);
                if (model.at(a).owner >= 0)
                    model.remove(model.at(a).owner, a);
                for (const int number : ended) {
                    for (ModelNode& holder : model.nodes) {
                        if (holder.current == number)
                            holder.current = -1;
                    }
                    model.at(number) = ModelNode();
                    RealNode*& fresh = real[static_cast<std::size_t>(number)];
                    fresh = new RealNode;
                    fresh->number = number;
                    dress(*fresh, model.at(number), random);
                }
            }
        }
        if (step % 50 == 0) {
            expect_same(real, model, step);
            if (testing::Test::HasFatalFailure())
                return;
        }
        if (step % 10 == 0) {  // nothing goes in circles
            RealNode& present = *real[static_cast<std::size_t>(a)];
            GEvent event = event_of(kBroadcast);
            ASSERT_EQ(GResponder::Message(&present, event), nullptr);
            present.set_state(GResponder::state_exposed, step % 20 == 0 ? 1 : 0);
            present.set_state(GResponder::state_focused, step % 30 == 0 ? 1 : 0);
            ASSERT_NE(present.topmost(), nullptr);
        }
    }
    expect_same(real, model, kSteps);
    for (RealNode* node : real) {
        if (node->get_owner() == nullptr)
            node->number = -2;  // a root
    }
    std::vector<RealNode*> roots;
    std::copy_if(real.begin(), real.end(), std::back_inserter(roots),
                 [](const RealNode* node) { return node->number == -2; });
    for (RealNode* root : roots)
        GStreamable::Destroy(root);
}
