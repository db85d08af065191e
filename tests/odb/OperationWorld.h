#pragma once

#include "TestObjects.h"

#include <functional>
#include <memory>
#include <span>
#include <string>

/// Two libraries with entries of every kind, and what is done with them in tests of faults.
class OperationWorld {
public:
    /// The name of a file of the libraries' folder, whose directories are on the disk.
    [[nodiscard]] static std::string File(const char* name);
    /// Makes "main.odb" and "other.odb" on the store's present files.
    static void Prepare();

    void open();
    void close();

    std::unique_ptr<ObjectDatabase> main;
    std::unique_ptr<ObjectDatabase> other;
};

/// One thing that a user of the libraries does.
struct WorldOperation {
    const char* name;
    std::function<void(OperationWorld&)> run;
};
[[nodiscard]] std::span<const WorldOperation> world_operations();
