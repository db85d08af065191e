#include "foundation/GModuleHooks.h"
#include "foundation/GObjectFileFormat.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <new>

namespace {

int g_ctor_runs = 0;
int g_dtor_runs = 0;
const GModuleCtor kAtLoad([] { ++g_ctor_runs; });

/// Recognises files by the start of their name.
class NameFormat : public GObjectFileFormat {
public:
    explicit NameFormat(const char* start) : start_(start) {}
    unsigned char write_object(const char*, GStreamable*) const override { return 0; }
    GStreamable* read_object(const char*) const override { return nullptr; }
    GString read_object_class_name(const char* file) override
    {
        return std::strncmp(file, start_, std::strlen(start_)) == 0 ? "SampleNode" : "";
    }

private:
    const char* start_;
};

}  // namespace

TEST(GModuleHooks, StaticCtor_RanOnceAtLoad)
{
    EXPECT_EQ(g_ctor_runs, 1);
}

TEST(GModuleHooks, Dtor_RunsItsFunctionAtItsEnd)
{
    {
        const GModuleDtor at_unload([] { ++g_dtor_runs; });
        EXPECT_EQ(g_dtor_runs, 0);
    }
    EXPECT_EQ(g_dtor_runs, 1);
}

TEST(GModuleHooks, NullFunctions_AreIgnored)
{
    const GModuleCtor ctor(nullptr);
    const GModuleDtor dtor(nullptr);

    EXPECT_EQ(g_ctor_runs, 1);
}

TEST(GModuleHooks, ModuleOfAddress_TellsModulesApart)
{
    static const int here = 0;
    const HINSTANCE own = zmr::module_of_address(&here);

    EXPECT_NE(own, nullptr);
    EXPECT_EQ(zmr::module_of_address(&g_ctor_runs), own);
    EXPECT_EQ(zmr::module_of_address(nullptr), nullptr);
}

TEST(GModuleHooks, ProcessAttach_StoresTheHandle)
{
    const HINSTANCE before = zmr::this_module;
    static int module = 0;
    auto* const handle = reinterpret_cast<HINSTANCE>(&module);
    OnDllProcessAttach(handle, 1, false);
    EXPECT_EQ(zmr::this_module, handle);
    OnDllProcessAttach(handle, 2, false);  // a thread
    EXPECT_EQ(zmr::this_module, handle);
    OnDllProcessAttach(handle, 0, true);  // the process ends: code may still ask
    EXPECT_EQ(zmr::this_module, handle);
    OnDllProcessAttach(handle, 0, false);
    EXPECT_EQ(zmr::this_module, nullptr);

    zmr::this_module = before;
}

TEST(GModuleHooks, SetNewHandler_GivesTheFormerOne)
{
    const auto handler = [] { throw std::bad_alloc(); };
    void (*const former)() = GSetNewHandler(handler);

    EXPECT_EQ(GSetNewHandler(former), static_cast<void (*)()>(handler));
    EXPECT_EQ(std::get_new_handler(), former);
}

TEST(GObjectFileFormat, Find_AsksInOrderOfRegistration)
{
    NameFormat wide("a");
    NameFormat narrow("ab");
    GObjectFileFormat::Register(wide);
    GObjectFileFormat::Register(narrow);
    GObjectFileFormat::Register(wide);  // keeps its place
    EXPECT_EQ(GObjectFileFormat::Find("abc"), &wide);
    GObjectFileFormat::Unregister(wide);
    EXPECT_EQ(GObjectFileFormat::Find("abc"), &narrow);
    EXPECT_EQ(GObjectFileFormat::Find("axe"), nullptr);
    GObjectFileFormat::Unregister(wide);  // is not there any more
}

TEST(GObjectFileFormat, FormatEnds_IsAskedNoMore)
{
    auto format = std::make_unique<NameFormat>("x");
    GObjectFileFormat::Register(*format);
    EXPECT_EQ(GObjectFileFormat::Find("xyz"), format.get());
    format.reset();

    EXPECT_EQ(GObjectFileFormat::Find("xyz"), nullptr);
}
