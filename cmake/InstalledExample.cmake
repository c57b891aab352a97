# Builds the example client with an installed library. In this folder, run:
#   cmake -S . -B ~/example && cmake --build ~/example && ~/example/brimlet_example data
cmake_minimum_required(VERSION 3.16)
project(BrimletExample LANGUAGES C CXX)

find_package(Brimlet 0.1 REQUIRED)
file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp)
add_executable(brimlet_example ${sources})
target_compile_features(brimlet_example PRIVATE cxx_std_17)
target_include_directories(brimlet_example PRIVATE .)
target_link_libraries(brimlet_example PRIVATE Brimlet::brimlet)
