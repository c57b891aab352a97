# What `cmake --install` puts where. Components, each of them a Debian package too: runtime, development, tools.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# The headers have plain names, so they get a folder of their own; the package and pkg-config name it to the compiler.
set(header_directory ${CMAKE_INSTALL_INCLUDEDIR}/brimlet)
set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/Brimlet)
set(pkgconfig_directory ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(documentation_directory ${CMAKE_INSTALL_DATAROOTDIR}/doc/brimlet)

install(TARGETS brimlet EXPORT BrimletTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    INCLUDES DESTINATION ${header_directory})
set(public_headers include/brimlet/brimlet.h include/brimlet/FlatRecords.h include/brimlet/ResultCodes.h)
install(FILES ${public_headers} DESTINATION ${header_directory} COMPONENT development)
install(DIRECTORY bindings/cpp/ DESTINATION ${header_directory} COMPONENT development)

# find_package(Brimlet)
install(EXPORT BrimletTargets NAMESPACE Brimlet:: DESTINATION ${package_directory} COMPONENT development)
configure_package_config_file(cmake/BrimletConfig.cmake.in ${PROJECT_BINARY_DIR}/BrimletConfig.cmake
    INSTALL_DESTINATION ${package_directory})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/BrimletConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/BrimletConfig.cmake ${PROJECT_BINARY_DIR}/BrimletConfigVersion.cmake
    DESTINATION ${package_directory} COMPONENT development)

# pkg-config, with a prefix that follows the file, so that the tree can be moved.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(pkgconfig_prefix ${CMAKE_INSTALL_PREFIX})
else()
    file(RELATIVE_PATH up /${pkgconfig_directory} /)
    string(REGEX REPLACE "/$" "" up "${up}")
    set(pkgconfig_prefix "\${pcfiledir}/${up}")
endif()
configure_file(cmake/brimlet.pc.in brimlet.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/brimlet.pc DESTINATION ${pkgconfig_directory} COMPONENT development)

# On Windows, all that the library needs beside it: Qt, the compiler's libraries, which lie beside Qt's, and Qt's
# driver, which is found in `plugins`, next to the folder of the DLLs. The module definition is for linkers that cannot
# read the import library.
if(WIN32)
    install(FILES $<TARGET_FILE:Qt5::Core> $<TARGET_FILE:Qt5::Sql>
        $<TARGET_FILE_DIR:Qt5::Core>/libstdc++-6.dll
        $<TARGET_FILE_DIR:Qt5::Core>/libgcc_s_seh-1.dll
        $<TARGET_FILE_DIR:Qt5::Core>/libwinpthread-1.dll
        DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
    install(FILES $<TARGET_FILE:Qt5::QSQLiteDriverPlugin> DESTINATION plugins/sqldrivers COMPONENT runtime)
    install(FILES $<TARGET_PROPERTY:brimlet,BINARY_DIR>/brimlet.def DESTINATION ${CMAKE_INSTALL_LIBDIR}
        COMPONENT development)
endif()

# Documentation with the files that it links to, and the example client with its data, ready to be built on the
# installed library.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION ${documentation_directory} COMPONENT development)
install(FILES ${public_headers} DESTINATION ${documentation_directory}/include/brimlet COMPONENT development)
install(FILES src/api/exports.txt DESTINATION ${documentation_directory}/src/api COMPONENT development)
install(DIRECTORY bindings/cpp DESTINATION ${documentation_directory}/bindings COMPONENT development)
install(FILES tests/windows/client.cpp DESTINATION ${documentation_directory}/tests/windows COMPONENT development)
install(DIRECTORY docs DESTINATION ${documentation_directory} COMPONENT development
    FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN "*.png")
install(DIRECTORY examples/ DESTINATION ${documentation_directory}/examples COMPONENT development
    PATTERN "CMakeLists.txt" EXCLUDE)
configure_file(cmake/InstalledExample.cmake.in InstalledExample.cmake @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/InstalledExample.cmake DESTINATION ${documentation_directory}/examples
    RENAME CMakeLists.txt COMPONENT development)

# The C# binding as sources: a client's own compiler makes the assembly that fits its runtime.
install(DIRECTORY bindings/dotnet DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/brimlet COMPONENT development
    PATTERN "bin" EXCLUDE
    PATTERN "obj" EXCLUDE)

# The Python package, where Debian's interpreter looks in /usr, and the companion command that runs it.
if(NOT WIN32)
    install(DIRECTORY bindings/python/brimlet DESTINATION lib/python3/dist-packages COMPONENT tools
        PATTERN "__pycache__" EXCLUDE)
    configure_file(cmake/brimlet.py.in brimlet.py @ONLY)
    install(PROGRAMS ${PROJECT_BINARY_DIR}/brimlet.py DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME brimlet COMPONENT tools)
endif()
