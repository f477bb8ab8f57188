# verdanth_options: what every target of ours is compiled with.
add_library(verdanth_options INTERFACE)
target_compile_features(verdanth_options INTERFACE cxx_std_20)
target_compile_options(verdanth_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
    -ffp-contract=off) # the same bits on every machine: no fused multiply-add
# This compiler is known to see overlapping copies where a text is put before another.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(verdanth_options INTERFACE -Wno-restrict)
endif()
if(VERDANTH_WARNINGS_AS_ERRORS)
    target_compile_options(verdanth_options INTERFACE -Werror)
endif()
