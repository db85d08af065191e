#include "Support.h"

int support_number()
{
    return 4711;
}
