#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

/// A growing array. Indices outside it are mistakes of the caller. When it must grow and no step
/// was given, it grows by an eighth of its size, at least by 4 and at most by 1,024 elements.
template <class T, class Argument = const T&>
class CArray {
    static_assert(!std::is_same_v<T, bool>, "elements must have addresses: use BOOL");

public:
    [[nodiscard]] int GetSize() const { return static_cast<int>(items_.size()); }
    [[nodiscard]] int GetCount() const { return GetSize(); }
    [[nodiscard]] int GetUpperBound() const { return GetSize() - 1; }
    [[nodiscard]] bool IsEmpty() const { return items_.empty(); }
    /// Cuts, or extends by default values. A `grow_by` of 0 or more becomes the step of growing; 0
    /// is the rule above.
    void SetSize(int size, int grow_by = -1)
    {
        assert(size >= 0);
        if (grow_by >= 0)
            grow_by_ = grow_by;
        make_room(size);
        items_.resize(static_cast<std::size_t>(size));
    }
    void RemoveAll() { items_ = {}; }
    void FreeExtra() { items_.shrink_to_fit(); }

    [[nodiscard]] const T& GetAt(int at) const { return items_[checked(at)]; }
    [[nodiscard]] T& GetAt(int at) { return items_[checked(at)]; }
    [[nodiscard]] T& ElementAt(int at) { return items_[checked(at)]; }
    [[nodiscard]] const T& operator[](int at) const { return items_[checked(at)]; }
    [[nodiscard]] T& operator[](int at) { return items_[checked(at)]; }
    void SetAt(int at, Argument value) { items_[checked(at)] = value; }
    [[nodiscard]] const T* GetData() const { return items_.data(); }
    [[nodiscard]] T* GetData() { return items_.data(); }

    /// Sets an element, and extends the array to it where it is too short.
    void SetAtGrow(int at, Argument value)
    {
        T copy(value);  // the value may be an element that moves
        if (at >= GetSize())
            SetSize(at + 1);
        items_[checked(at)] = std::move(copy);
    }
    /// Returns the index of the new element.
    int Add(Argument value)
    {
        SetAtGrow(GetSize(), value);
        return GetUpperBound();
    }
    /// Appends a copy of the other one, and returns the index of its first element.
    int Append(const CArray& other)
    {
        const int first = GetSize();
        const std::vector<T> added = other.items_;
        make_room(first + static_cast<int>(added.size()));
        items_.insert(items_.end(), added.begin(), added.end());
        return first;
    }
    void Copy(const CArray& other) { items_ = other.items_; }
    /// Inserts `count` copies; behind the end the gap is filled with default values.
    void InsertAt(int at, Argument value, int count = 1)
    {
        assert(at >= 0 && count >= 0);
        const T copy(value);
        if (at > GetSize())
            SetSize(at);
        make_room(GetSize() + count);
        items_.insert(items_.begin() + at, static_cast<std::size_t>(count), copy);
    }
    void RemoveAt(int at, int count = 1)
    {
        assert(at >= 0 && count >= 0 && count <= GetSize() - at);
        items_.erase(items_.begin() + at, items_.begin() + at + count);
    }

protected:
    /// How many elements there is room for.
    [[nodiscard]] int capacity() const { return static_cast<int>(items_.capacity()); }

private:
    [[nodiscard]] std::size_t checked(int at) const
    {
        assert(at >= 0 && at < GetSize());
        return static_cast<std::size_t>(at);
    }
    void make_room(int size)
    {
        if (size <= capacity())
            return;
        const int step = grow_by_ > 0 ? grow_by_ : std::clamp(GetSize() / 8, 4, 1024);
        // From nothing to just what was asked, as arrays are mostly filled at once.
        const int room = capacity() == 0 ? size : std::max(size, capacity() + step);
        items_.reserve(static_cast<std::size_t>(room));
    }

    std::vector<T> items_;
    int grow_by_ = 0;
};
