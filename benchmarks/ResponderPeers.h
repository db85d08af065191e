#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// The contestants of bench_responder. Each names a piece of work that is done again and again; what
// it needs is made beforehand and lives in the function.

/// The shape of a tree: `nodes` in all, each with up to `fan` children, in the order of their
/// allocation or shuffled in memory.
struct TreeShape {
    int nodes;
    int fan;
    bool shuffled;
};

/// The number of the parent of node `number` (not 0).
[[nodiscard]] inline int parent_of(int number, int fan)
{
    return (number - 1) / fan;
}

/// The places of the nodes in memory: a permutation of 0 to nodes - 1.
[[nodiscard]] std::vector<int> places_of(const TreeShape& shape);

/// Which of `count` children is taken out as the next one.
[[nodiscard]] std::vector<int> removal_order(int count);

using Work = std::function<void()>;

/// A piece of work in two timed halves, and what comes untimed behind them.
struct Halves {
    Work first;
    Work second;
    Work clean_up;
};

struct CommandIds {
    std::vector<unsigned long> ids;
};

/// What the peers have handled, so that nothing is left out.
extern long g_handled;

namespace qt {
void start(int& argc, char** argv);
[[nodiscard]] Work event(int filters);
[[nodiscard]] Work broadcast(const TreeShape& shape);
[[nodiscard]] Work notify(int receivers);
/// Appends to and removes from owners with `children` each.
[[nodiscard]] Halves children(int owners, int children);
[[nodiscard]] Work walk(const TreeShape& shape);
[[nodiscard]] Halves build_and_end(const TreeShape& shape);
[[nodiscard]] Work state(const TreeShape& shape);
[[nodiscard]] Work commands(const CommandIds& ids);
/// Bytes of the heap that an object without anything takes.
[[nodiscard]] std::size_t object_bytes();
}  // namespace qt

namespace plain {
[[nodiscard]] Work broadcast(const TreeShape& shape);
[[nodiscard]] Work walk(const TreeShape& shape);
[[nodiscard]] Work state(const TreeShape& shape);
[[nodiscard]] Work commands(const CommandIds& ids);
}  // namespace plain
