# Read at the start of project() through CMAKE_PROJECT_TOP_LEVEL_INCLUDES, which every preset sets: ccache in
# front of the compilers when the machine has it. A launcher named on the command line stays.
if(NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    find_program(ORVANE_CCACHE ccache)
    if(ORVANE_CCACHE)
        # It keeps what was compiled with a precompiled header only on these terms.
        set(CMAKE_C_COMPILER_LAUNCHER
            ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${ORVANE_CCACHE})
        set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_C_COMPILER_LAUNCHER})
    endif()
endif()
