// A module that brings resources and nothing else.
extern "C" __declspec(dllexport) int zmr_resource_module()
{
    return 1;
}
