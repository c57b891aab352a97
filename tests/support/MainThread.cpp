// Qt allocates data of the process's main thread and never frees it. Allocate it here, hidden from the leak checker, so
// that every reported leak is ours.
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
