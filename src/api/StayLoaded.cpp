// Windows only. Once loaded, the library stays in the process, like with "nodelete" elsewhere: Qt keeps thread data and
// static objects whose code must not be unloaded.
#include <windows.h>

namespace {

HMODULE module = nullptr;

[[maybe_unused]] const bool staysLoaded =
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&module), &module)
    != 0;

} // namespace
