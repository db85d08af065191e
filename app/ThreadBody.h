#pragma once

#include "platform/Export.h"

class CException;
class GLibraryException;

namespace zmr {

/// What the body of a worker thread has around its function.
class ZMR_GV_API ThreadSurroundings {
public:
    virtual ~ThreadSurroundings();
    /// Faults of the thread become exceptions.
    virtual void translate_faults() = 0;
    /// Tells the creator that the thread runs.
    virtual void signal_start() = 0;
    /// The thread joins the system's object services, and leaves them.
    virtual void join_services() = 0;
    virtual void leave_services() = 0;
    /// Shows to the user what ended the function.
    virtual void show(const GLibraryException& failure) = 0;
    virtual void report(CException& failure) = 0;
};

/// What a worker's function gives when it did not come to its end: the exit code -1.
inline constexpr unsigned kThreadFailed = static_cast<unsigned>(-1);

/// The body of a worker thread: prepares it, tells its start and calls `function` once. Its result;
/// kThreadFailed when it threw a GLibraryException or a CException*, which is shown. Any other
/// exception goes to the caller. The services are left in every case.
ZMR_GV_API unsigned run_thread_body(unsigned (*function)(void*), void* parameter,
                                    ThreadSurroundings& surroundings);

}  // namespace zmr
