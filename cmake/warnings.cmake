# verdanth_options: what every target of ours is compiled with.
add_library(verdanth_options INTERFACE)
target_compile_features(verdanth_options INTERFACE cxx_std_20)
target_compile_options(verdanth_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
    -ffp-contract=off) # the same bits on every machine: no fused multiply-add
if(VERDANTH_WARNINGS_AS_ERRORS)
    target_compile_options(verdanth_options INTERFACE -Werror)
endif()
