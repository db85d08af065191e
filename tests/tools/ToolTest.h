#pragma once

#include "tests/TemporaryFolder.h"
#include "tests/tools/ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

/// A folder for files and a library in it that the tool works on.
class ToolTest : public testing::Test {
protected:
    [[nodiscard]] std::string file(const std::string& name) const { return folder_.file(name); }
    [[nodiscard]] std::string library() const { return file("library.odb"); }
    /// A file of samples/data.
    [[nodiscard]] static std::string sample(const std::string& name)
    {
        return std::string(ZMR_SAMPLE_DATA) + "/" + name;
    }
    static const std::vector<std::string>& kModule();

    void write(const std::string& name, const std::string& bytes) const;
    [[nodiscard]] std::string read(const std::string& name) const;
    [[nodiscard]] bool exists(const std::string& name) const;
    /// Writes a picture of 2 by 2 pixels.
    void write_picture(const std::string& name) const;
    /// Writes a picture of `size` by `size` pixels that does not compress.
    void write_noise_picture(const std::string& name, std::uint16_t size) const;
    void make_folder(const std::string& name) const;
    /// The library with badge.png, ring.obj in "models" and a picture in "a/b".
    void make_library() const;

    /// Runs the tool and expects that it ends with `code`.
    static ToolResult run(int code, const std::vector<std::string>& words);
    /// The same with --json; what it printed.
    static nlohmann::json run_json(int code, std::vector<std::string> words);
    /// The paths of all objects, ascending.
    [[nodiscard]] std::vector<std::string> paths() const;

    TemporaryFolder folder_;
};
