#include "platform/CPtrList.h"

#include <cassert>
#include <utility>

void* CPtrList::GetHead() const
{
    assert(head_ != nullptr);
    return head_->item;
}

void* CPtrList::GetTail() const
{
    assert(tail_ != nullptr);
    return tail_->item;
}

POSITION CPtrList::AddHead(void* item)
{
    return link(nullptr, head_, item);
}

POSITION CPtrList::AddTail(void* item)
{
    return link(tail_, nullptr, item);
}

POSITION CPtrList::InsertBefore(POSITION at, void* item)
{
    return link(node_of(at)->previous, node_of(at), item);
}

POSITION CPtrList::InsertAfter(POSITION at, void* item)
{
    return link(node_of(at), node_of(at)->next, item);
}

POSITION CPtrList::link(Node* previous, Node* next, void* item)
{
    Node* node = unused_;
    if (node != nullptr)
        unused_ = node->next;
    else
        node = &nodes_.emplace_back();
    *node = {previous, next, item};
    (previous != nullptr ? previous->next : head_) = node;
    (next != nullptr ? next->previous : tail_) = node;
    ++count_;
    return position_of(node);
}

void* CPtrList::RemoveHead()
{
    void* const item = GetHead();
    RemoveAt(position_of(head_));
    return item;
}

void* CPtrList::RemoveTail()
{
    void* const item = GetTail();
    RemoveAt(position_of(tail_));
    return item;
}

void CPtrList::RemoveAt(POSITION at)
{
    Node* const node = node_of(at);
    (node->previous != nullptr ? node->previous->next : head_) = node->next;
    (node->next != nullptr ? node->next->previous : tail_) = node->previous;
    node->next = std::exchange(unused_, node);
    --count_;
}

void CPtrList::RemoveAll()
{
    nodes_.clear();
    unused_ = nullptr;
    head_ = nullptr;
    tail_ = nullptr;
    count_ = 0;
}

POSITION CPtrList::GetHeadPosition() const
{
    return position_of(head_);
}

POSITION CPtrList::GetTailPosition() const
{
    return position_of(tail_);
}

void* CPtrList::GetNext(POSITION& at) const
{
    const Node* const node = node_of(at);
    at = position_of(node->next);
    return node->item;
}

void* CPtrList::GetPrev(POSITION& at) const
{
    const Node* const node = node_of(at);
    at = position_of(node->previous);
    return node->item;
}

void* CPtrList::GetAt(POSITION at) const
{
    return node_of(at)->item;
}

void CPtrList::SetAt(POSITION at, void* item)
{
    node_of(at)->item = item;
}

POSITION CPtrList::Find(void* item, POSITION after) const
{
    Node* node = after != nullptr ? node_of(after)->next : head_;
    while (node != nullptr && node->item != item)
        node = node->next;
    return position_of(node);
}

POSITION CPtrList::FindIndex(int index) const
{
    if (index < 0 || index >= count_)
        return nullptr;
    Node* node = head_;
    while (index-- > 0)
        node = node->next;
    return position_of(node);
}
