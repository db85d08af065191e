#pragma once

#include <cstddef>
#include <vector>

namespace zmr {

/// Disables what is enabled among the candidates, in their order, and enables the same again in the
/// opposite order at its end. `Window` is a handle. All candidates are looked at before the first
/// is disabled, so that what disabling changes in their order makes no difference.
template <class Window>
class ModalList {
public:
    /// `enabled(window)` tells whether one can be disabled, `disable(window)` does it.
    template <class Enabled, class Disable>
    ModalList(const std::vector<Window>& candidates, const Enabled& enabled, const Disable& disable)
    {
        for (const Window window : candidates)
            if (enabled(window))
                windows_.push_back(window);
        for (const Window window : windows_)
            disable(window);
    }

    /// Gives each window back by `enable(window)`, the last one first.
    template <class Enable>
    void end(const Enable& enable)
    {
        while (!windows_.empty()) {
            const Window window = windows_.back();
            windows_.pop_back();
            enable(window);
        }
    }

    [[nodiscard]] std::size_t size() const { return windows_.size(); }

private:
    std::vector<Window> windows_;
};

}  // namespace zmr
