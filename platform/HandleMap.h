#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

namespace zmr {

/// A thread's map from a kind of handle to the objects that stand for them. Permanent entries are
/// made by objects that hold their handle; for other handles a temporary object can be had, which
/// lives until the thread's next idle turn and never closes its handle.
template <class Object, class Handle>
class HandleMap {
public:
    /// The permanent object of the handle, or null.
    [[nodiscard]] Object* find_permanent(Handle handle) const
    {
        const auto found = permanent_.find(handle);
        return found != permanent_.end() ? found->second : nullptr;
    }
    /// The permanent object, else the temporary one, which is made when there is none; null for
    /// null. `Field` is the member of the object that holds the handle.
    template <auto Field, class Temporary = Object>
    [[nodiscard]] Object* from_handle(Handle handle)
    {
        if (handle == Handle{})
            return nullptr;
        if (Object* const known = find_permanent(handle))
            return known;
        std::unique_ptr<Object>& slot = temporary_[handle];
        if (slot == nullptr) {
            slot = std::make_unique<Temporary>();
            slot.get()->*Field = handle;
        }
        return slot.get();
    }
    void set_permanent(Handle handle, Object* object) { permanent_[handle] = object; }
    void remove_permanent(Handle handle) { permanent_.erase(handle); }

    /// Frees the temporary objects, none of which closes its handle. One that is being freed may
    /// ask for others.
    template <auto Field>
    void drop_temporaries()
    {
        std::vector<std::unique_ptr<Object>> dropped;
        dropped.reserve(temporary_.size());
        for (auto& [handle, object] : temporary_)
            dropped.push_back(std::move(object));
        temporary_.clear();
        for (const std::unique_ptr<Object>& object : dropped)
            object.get()->*Field = Handle{};
    }
    [[nodiscard]] std::size_t permanent_count() const { return permanent_.size(); }
    [[nodiscard]] std::size_t temporary_count() const { return temporary_.size(); }

private:
    std::unordered_map<Handle, Object*> permanent_;
    std::unordered_map<Handle, std::unique_ptr<Object>> temporary_;
};

}  // namespace zmr
