#include "desktop/urgent_thread.h"

#include <sched.h>

namespace kelvane {

Urgent_thread::Urgent_thread() {
    const sched_param least{::sched_get_priority_min(SCHED_RR)};
    granted_ = ::sched_getscheduler(0) == SCHED_OTHER &&
               ::sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &least) == 0;
}

Urgent_thread::~Urgent_thread() {
    if (granted_) {
        const sched_param none{};
        ::sched_setscheduler(0, SCHED_OTHER, &none);
    }
}

}  // namespace kelvane
