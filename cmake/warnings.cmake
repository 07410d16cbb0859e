# orvane_warnings: link it (PRIVATE) into every target of ours. Every warning is an error, with both compilers.
add_library(orvane_warnings INTERFACE)

set(orvane_warning_flags
    -Werror
    -Wall
    -Wextra
    -Wpedantic
    -Wshadow
    -Wconversion
    -Wsign-conversion
    -Wdouble-promotion
    -Wcast-align
    -Wcast-qual
    -Wformat=2
    -Wimplicit-fallthrough
    -Wmissing-declarations
    -Wundef
    -Wvla
)
set(orvane_warning_flags_cxx
    -Wextra-semi
    -Wold-style-cast
    -Woverloaded-virtual
)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    list(APPEND orvane_warning_flags -Wduplicated-cond -Wlogical-op)
    # gcc 12 reports overlapping copies inside std::string's own operator+ that can't happen (gcc bug 105651).
    list(APPEND orvane_warning_flags_cxx -Wno-restrict)
    if(ORVANE_SANITIZE)
        # The checks that a sanitizer inserts hide from gcc that a variable is set on every path.
        list(APPEND orvane_warning_flags -Wno-maybe-uninitialized)
    endif()
endif()

if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # The binary interface's own layout of a Variant has them.
    list(APPEND orvane_warning_flags_cxx -Wno-gnu-anonymous-struct -Wno-nested-anon-types)
endif()

target_compile_options(orvane_warnings INTERFACE
    ${orvane_warning_flags}
    "$<$<COMPILE_LANGUAGE:CXX>:${orvane_warning_flags_cxx}>"
)
