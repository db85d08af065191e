#include "app/ThreadBody.h"

#include "platform/CException.h"

#include "foundation/GException.h"

zmr::ThreadSurroundings::~ThreadSurroundings() = default;

unsigned zmr::run_thread_body(unsigned (*function)(void*), void* parameter,
                              ThreadSurroundings& surroundings)
{
    surroundings.translate_faults();
    surroundings.signal_start();

    struct Services {
        explicit Services(ThreadSurroundings& of) : of_(of) { of_.join_services(); }
        ~Services() { of_.leave_services(); }
        Services(const Services&) = delete;
        Services& operator=(const Services&) = delete;
        ThreadSurroundings& of_;
    };
    const Services services(surroundings);
    unsigned result = kThreadFailed;
    try {
        result = function(parameter);
    } catch (const GLibraryException& failure) {
        surroundings.show(failure);
    } catch (CException* failure) {
        surroundings.report(*failure);
        failure->Delete();
    }
    return result;
}
