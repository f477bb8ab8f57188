# VERDANTH_SANITIZE: a comma separated list for -fsanitize=, applied to all targets.
set(VERDANTH_SANITIZE "" CACHE STRING "Sanitizers, comma separated, such as address,undefined")
if(VERDANTH_SANITIZE)
    add_compile_options(-fsanitize=${VERDANTH_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
    add_link_options(-fsanitize=${VERDANTH_SANITIZE})
endif()
