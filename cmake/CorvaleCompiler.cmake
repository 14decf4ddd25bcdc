# Warnings, floating point rules and sanitizers, the same for everything that is built here.

add_library(corvale_compiler INTERFACE)
target_compile_options(corvale_compiler INTERFACE
    -Wall -Wextra -Wpedantic
    # Every float operation is rounded on its own: results are the same on machines with and without
    # fused multiply-add.
    -ffp-contract=off
    # Symbols of the shared libraries are not replaced at run time, so calls inside them need no detour.
    -fno-semantic-interposition)

if(CORVALE_SANITIZE)
    # The checks that are built in make the compiler believe in variables that nobody set.
    add_compile_options(-fsanitize=${CORVALE_SANITIZE} -fno-omit-frame-pointer)
    target_compile_options(corvale_compiler INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    add_link_options(-fsanitize=${CORVALE_SANITIZE})
    if(CORVALE_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=all)
        add_link_options(-fno-sanitize-recover=all)
    endif()
endif()
# What g++ defines by itself under a sanitizer.
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    foreach(sanitizer address thread)
        if(CORVALE_SANITIZE MATCHES ${sanitizer})
            string(TOUPPER __SANITIZE_${sanitizer}__ macro)
            add_compile_definitions(${macro})
        endif()
    endforeach()
endif()
if(CORVALE_ASSERTIONS)
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()
# What a sanitizer adds to a shared library is found in the program only, where the compiler is clang.
if(NOT CORVALE_SANITIZE)
    set(CORVALE_NO_UNDEFINED LINKER:--no-undefined)
endif()

find_program(CORVALE_CCACHE ccache)
if(CORVALE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CORVALE_CCACHE})
endif()
