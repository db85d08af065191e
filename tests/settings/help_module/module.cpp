// A module whose version resource is what matters; nothing of it is known by number 14.
extern "C" __declspec(dllexport) int zmr_help_module()
{
    return 1;
}
