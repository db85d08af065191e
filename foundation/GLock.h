#pragma once

#include "platform/Export.h"

#include <mutex>

/// A lock that the thread which holds it may take again.
class ZMR_GV_API GCriticalSection {
public:
    GCriticalSection() = default;
    virtual ~GCriticalSection();
    GCriticalSection(const GCriticalSection&) = delete;
    GCriticalSection& operator=(const GCriticalSection&) = delete;
    virtual void Lock();
    virtual void Unlock();

private:
    std::recursive_mutex mutex_;
};

/// Holds a lock from construction to the end of the scope.
class GSingleLock {
public:
    explicit GSingleLock(GCriticalSection& lock) : lock_(lock) { lock_.Lock(); }
    ~GSingleLock() { lock_.Unlock(); }
    GSingleLock(const GSingleLock&) = delete;
    GSingleLock& operator=(const GSingleLock&) = delete;

private:
    GCriticalSection& lock_;
};
