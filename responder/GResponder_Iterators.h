#pragma once

#include "responder/GResponder.h"

#include <memory>

// Walks over responders: children from the front, from the back, and all that is below, in a
// snapshot.
//     for (GResponder_Iterator child(*owner); child(); ++child)
//         child.object()->select();

/// The children of a responder from the first to the last, as the list is at each step.
class GResponder_Iterator {
public:
    explicit GResponder_Iterator(const GResponder& responder) : container_(&responder) {}
    /// Starts at the child `from`; finished at once when that is none.
    GResponder_Iterator(const GResponder& responder, const GResponder* from)
        : position_(responder.index_of(from)), container_(&responder)
    {
    }

    /// True while there is a child at the position.
    [[nodiscard]] bool operator()() const { return position_ < container_->getCount(); }
    /// The child at the position, or null.
    [[nodiscard]] GResponder* object() const { return container_->at(position_); }
    operator GResponder*() const { return object(); }
    GResponder_Iterator& operator++()
    {
        position_ = static_cast<short>(position_ + (position_ < zmr::ChildList::kMaxCount ? 1 : 0));
        return *this;
    }
    GResponder_Iterator operator++(int)
    {
        const GResponder_Iterator before = *this;
        ++*this;
        return before;
    }
    /// Back to the first child, wherever the walk has begun.
    void restart() { position_ = 0; }

private:
    short position_ = 0;
    const GResponder* container_;
};

/// The same from the last child to the first.
class GResponder_ReverseIterator {
public:
    explicit GResponder_ReverseIterator(const GResponder& responder) : container_(&responder)
    {
        restart();
    }
    GResponder_ReverseIterator(const GResponder& responder, const GResponder* from)
        : position_(responder.contains(from) != 0 ? responder.index_of(from) : short{-1}),
          container_(&responder)
    {
    }

    [[nodiscard]] bool operator()() const { return position_ >= 0; }
    [[nodiscard]] GResponder* object() const { return container_->at(position_); }
    operator GResponder*() const { return object(); }
    GResponder_ReverseIterator& operator--()
    {
        position_ = static_cast<short>(position_ - (position_ >= 0 ? 1 : 0));
        return *this;
    }
    GResponder_ReverseIterator operator--(int)
    {
        const GResponder_ReverseIterator before = *this;
        --*this;
        return before;
    }
    void restart() { position_ = static_cast<short>(container_->getCount() - 1); }

private:
    short position_ = -1;
    const GResponder* container_;
};

/// All below a responder, each in front of its children, as it was at the start: a responder that
/// ends on the way leaves a dangling entry.
class ZMR_GV_API GResponder_Traverser {
public:
    /// With `all` everything below `root`, else only what has no children. A root without children
    /// stands for itself.
    GResponder_Traverser(const GResponder& root, unsigned char all);
    GResponder_Traverser(const GResponder_Traverser&) = default;
    GResponder_Traverser& operator=(const GResponder_Traverser&) = default;
    ~GResponder_Traverser();

    [[nodiscard]] bool operator()() const;
    [[nodiscard]] GResponder* object() const;
    operator GResponder*() const { return object(); }
    GResponder_Traverser& operator++()
    {
        ++position_;
        return *this;
    }
    GResponder_Traverser operator++(int)
    {
        const GResponder_Traverser before = *this;
        ++*this;
        return before;
    }
    /// Back to the front of the same snapshot.
    void restart() { position_ = 0; }

private:
    std::shared_ptr<GCollection> snapshot_list_;  ///< Copies walk over the same one.
    std::int32_t position_ = 0;
};
