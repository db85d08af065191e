#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// One store of named entries as the benchmark uses it: ours and its peers behind the same calls.
class StorePeer {
public:
    virtual ~StorePeer() = default;
    virtual void open(const std::string& name, bool write) = 0;
    virtual void close() = 0;
    virtual void begin() = 0;
    /// Durable when it returns.
    virtual void commit() = 0;
    virtual void put(std::string_view directory, std::string_view name, std::string_view type,
                     std::string_view bytes) = 0;
    virtual void remove(std::string_view directory, std::string_view name,
                        std::string_view type) = 0;
    /// Without moving the content where the store can.
    virtual void rename(std::string_view directory, std::string_view name, std::string_view to,
                        std::string_view type) = 0;
    /// The sum of the sizes and of the first bytes of all contents of the type.
    virtual std::uint64_t list(std::string_view directory, std::string_view type) = 0;
    virtual std::size_t get(std::string_view directory, std::string_view name,
                            std::string_view type, std::string& bytes) = 0;
    /// Gives the room of what was removed back to the disk.
    virtual void compact(const std::string& name) = 0;
};

[[nodiscard]] std::unique_ptr<StorePeer> make_library_peer();
[[nodiscard]] std::unique_ptr<StorePeer> make_lmdb_peer();
[[nodiscard]] std::unique_ptr<StorePeer> make_sqlite_peer();
