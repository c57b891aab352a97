# Builds for 64-bit Windows on Debian, with MinGW-w64, the Qt that scripts/windows-qt built, and Wine, which runs the
# tests. The environment variable BRIMLET_WINDOWS_SDK names the directory of scripts/windows-qt if it is not the
# default.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(NOT BRIMLET_WINDOWS_SDK)
    if(DEFINED ENV{BRIMLET_WINDOWS_SDK})
        set(sdk "$ENV{BRIMLET_WINDOWS_SDK}")
    elseif(DEFINED ENV{XDG_CACHE_HOME})
        set(sdk "$ENV{XDG_CACHE_HOME}/brimlet")
    else()
        set(sdk "$ENV{HOME}/.cache/brimlet")
    endif()
    get_filename_component(sdk "${sdk}" ABSOLUTE)
    set(BRIMLET_WINDOWS_SDK "${sdk}" CACHE PATH "Qt and SQLite for Windows, built by scripts/windows-qt")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES BRIMLET_WINDOWS_SDK)
set(qt ${BRIMLET_WINDOWS_SDK}/qt5-mingw)
if(NOT IS_DIRECTORY ${qt}/lib/cmake/Qt5Core)
    message(FATAL_ERROR "There is no Qt for Windows in ${BRIMLET_WINDOWS_SDK}; run scripts/windows, which builds it")
endif()

# Programs are native; everything else is for Windows, and never the native Qt.
set(CMAKE_FIND_ROOT_PATH ${qt})
list(PREPEND CMAKE_PREFIX_PATH ${qt})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# A program finds Qt through WINEPATH. If it crashes, it ends at once, without a debugger or a dialog.
set(CMAKE_CROSSCOMPILING_EMULATOR env WINEDEBUG=-all "WINEDLLOVERRIDES=winedbg.exe=d" "WINEPATH=${qt}/bin"
    ${CMAKE_CURRENT_LIST_DIR}/run-under-wine)
