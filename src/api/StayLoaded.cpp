// Part of the library on Windows only. Once loaded, the library stays in the process, as "nodelete" has it elsewhere:
// Qt keeps threads' data and static objects that must not lose their code.
#include <windows.h>

namespace {

HMODULE module = nullptr;

[[maybe_unused]] const bool staysLoaded =
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&module), &module)
    != 0;

} // namespace
