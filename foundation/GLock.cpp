#include "foundation/GLock.h"

GCriticalSection::~GCriticalSection() = default;

void GCriticalSection::Lock()
{
    mutex_.lock();
}

void GCriticalSection::Unlock()
{
    mutex_.unlock();
}
