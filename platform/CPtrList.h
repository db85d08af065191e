#pragma once

#include "platform/Export.h"
#include "platform/PlatformPosition.h"

#include <deque>

/// A list of pointers, not owned. A POSITION stays good until its element is removed; a null or
/// foreign one is a mistake of the caller. Adding and removing take constant time.
class ZMR_GV_API CPtrList {
public:
    CPtrList() = default;
    CPtrList(const CPtrList&) = delete;
    CPtrList& operator=(const CPtrList&) = delete;

    [[nodiscard]] int GetCount() const { return count_; }
    [[nodiscard]] int GetSize() const { return count_; }
    [[nodiscard]] bool IsEmpty() const { return count_ == 0; }
    /// Of an empty list: a mistake of the caller.
    [[nodiscard]] void* GetHead() const;
    [[nodiscard]] void* GetTail() const;

    POSITION AddHead(void* item);
    POSITION AddTail(void* item);
    POSITION InsertBefore(POSITION at, void* item);
    POSITION InsertAfter(POSITION at, void* item);
    void* RemoveHead();
    void* RemoveTail();
    void RemoveAt(POSITION at);
    void RemoveAll();

    [[nodiscard]] POSITION GetHeadPosition() const;
    [[nodiscard]] POSITION GetTailPosition() const;
    /// The element at `at`, which moves on to the next one; null behind the last.
    void* GetNext(POSITION& at) const;
    void* GetPrev(POSITION& at) const;
    [[nodiscard]] void* GetAt(POSITION at) const;
    void SetAt(POSITION at, void* item);

    /// The first place behind `after`, or from the head for null, that holds `item`; null when
    /// there is none. Linear.
    [[nodiscard]] POSITION Find(void* item, POSITION after = nullptr) const;
    /// The place number `index` from the head; null outside the list. Linear.
    [[nodiscard]] POSITION FindIndex(int index) const;

private:
    struct Node {
        Node* previous;
        Node* next;
        void* item;
    };
    static Node* node_of(POSITION at) { return reinterpret_cast<Node*>(at); }
    static POSITION position_of(Node* node) { return reinterpret_cast<POSITION>(node); }
    /// Links a new element in; null neighbours are the ends.
    POSITION link(Node* previous, Node* next, void* item);

    std::deque<Node> nodes_;  ///< Those in use and those to be used again; they never move.
    Node* unused_ = nullptr;
    Node* head_ = nullptr;
    Node* tail_ = nullptr;
    int count_ = 0;
};
