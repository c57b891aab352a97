# Packages, made by `cpack` in the build directory.
set(CPACK_PACKAGE_NAME brimlet)
set(CPACK_PACKAGE_VENDOR "The Brimlet developers")
if(WIN32)
    # One archive of everything.
    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_FILE_NAME brimlet-${PROJECT_VERSION}-windows-x86_64)
    set(CPACK_STRIP_FILES ON)
    include(CPack)
    return()
endif()

# Debian packages. Configure with -DCMAKE_INSTALL_PREFIX=/usr to have the library in the folder of its architecture.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own below, else CPack sets one in front of it
set(CPACK_PACKAGE_CONTACT "The Brimlet developers <brimlet@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_COMPONENTS_ALL runtime development tools)

# Qt loads its SQLite driver by name at run time, so no scan of the library finds it.
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Local cache of a monitoring service's data
A shared library that keeps a local, disposable copy of a monitoring service's
reference data and event journal in one SQLite file.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libbrimlet${PROJECT_VERSION_MAJOR}) # after the SONAME
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS libqt5sql5-sqlite)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=") # a client runs on later versions of the same number too
file(GENERATE OUTPUT triggers CONTENT "activate-noawait ldconfig\n") # a new library has to be found at once
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/triggers)

set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Local cache of a monitoring service's data: development files
The headers for C and C++, the files for CMake and pkg-config, the C# binding,
the documentation and an example client.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libbrimlet-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${PROJECT_VERSION})")

set(CPACK_COMPONENT_TOOLS_DESCRIPTION "Local cache of a monitoring service's data: Python and command line
The Python package brimlet and the command of the same name, which calls the
library's functions, loads documents, and looks into a store.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME brimlet-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS
    "python3 (>= 3.9), ${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS python3-rich)

include(CPack)
