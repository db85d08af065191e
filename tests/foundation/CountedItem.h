#pragma once

#include "foundation/GStreamable.h"

/// A streamable number that counts how many of its kind are alive.
class CountedItem : public GStreamable {
    G_DECLARE_CLASS(CountedItem)

public:
    explicit CountedItem(int first_number = 0) : number(first_number) { ++alive; }
    CountedItem(const CountedItem&) = delete;
    CountedItem& operator=(const CountedItem&) = delete;
    ~CountedItem() override { --alive; }

    void read(ipstream& in) override;
    void write(opstream& out) override;

    int number;
    static inline int alive = 0;
};
