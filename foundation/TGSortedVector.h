#pragma once

#include "foundation/TGVector.h"

#include <functional>

/// Values in the order of std::less, each once. Searching costs the logarithm of the count.
template <class T>
class TGSortedVector : private TGVector<T> {
public:
    TGSortedVector() = default;
    /// As TGVector's.
    explicit TGSortedVector(long first_limit, long step = TGVector<T>::kDefaultStep)
        : TGVector<T>(first_limit, step)
    {
    }

    /// Inserts the value unless it is there; returns the index of either.
    long insert(const T& value)
    {
        const long place = place_of(value);
        if (!is_at(value, place))
            this->at_insert(place, value);
        return place;
    }
    /// The index of the value, -1 when it is missing.
    [[nodiscard]] long index_of(const T& value) const
    {
        const long place = place_of(value);
        return is_at(value, place) ? place : -1;
    }
    [[nodiscard]] bool contains(const T& value) const { return index_of(value) >= 0; }
    /// Takes the value out; false when it is missing.
    bool remove(const T& value)
    {
        const long place = index_of(value);
        this->at_remove(place);
        return place >= 0;
    }
    const T& operator[](long index) const { return TGVector<T>::operator[](index); }
    [[nodiscard]] const T* begin() const { return TGVector<T>::begin(); }
    [[nodiscard]] const T* end() const { return TGVector<T>::end(); }

    using TGVector<T>::at_remove;
    using TGVector<T>::count;
    using TGVector<T>::empty;

private:
    [[nodiscard]] long place_of(const T& value) const
    {
        return static_cast<long>(std::lower_bound(begin(), end(), value, std::less<T>()) - begin());
    }
    [[nodiscard]] bool is_at(const T& value, long place) const
    {
        return place < count && !std::less<T>()(value, this->items[place]);
    }
};
