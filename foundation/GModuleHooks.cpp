#include "foundation/GModuleHooks.h"

#include <new>

GModuleCtor::GModuleCtor(void (*function)())
{
    if (function != nullptr)
        function();
}

GModuleDtor::~GModuleDtor()
{
    if (function_ != nullptr)
        function_();
}

void OnDllProcessAttach(HINSTANCE module, unsigned long reason, bool process_ends)
{
    constexpr unsigned long kDetach = 0;
    constexpr unsigned long kAttach = 1;
    if (reason == kAttach)
        zmr::this_module = module;
    else if (reason == kDetach && !process_ends)
        zmr::this_module = nullptr;
}

void (*GSetNewHandler(void (*handler)()))()
{
    return std::set_new_handler(handler);
}
