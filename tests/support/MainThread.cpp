// Qt keeps what it knows of a process's main thread until the process ends, and frees none of it. It is allocated here,
// out of the leak checker's sight, so that every leak which is reported is ours.
#if defined(__SANITIZE_ADDRESS__)

#include <QThread>
#include <sanitizer/lsan_interface.h>

namespace {

[[maybe_unused]] const bool isAllocated = [] {
    const __lsan::ScopedDisabler disabler;
    return QThread::currentThread() != nullptr;
}();

} // namespace

#endif
