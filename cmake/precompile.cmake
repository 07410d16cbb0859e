# orvane_precompile(TARGET header...): compiles those headers once for all of the target's sources.
#
# Only where a preset asks for it (ORVANE_PRECOMPILE). The native build doesn't: there every source stands on
# its own includes, so that one that forgets a header fails in the gate.
function(orvane_precompile target)
    if(ORVANE_PRECOMPILE)
        target_precompile_headers(${target} PRIVATE ${ARGN})
        orvane_cache_precompiled(${target})
    endif()
endfunction()

# orvane_cache_precompiled(TARGET): the options without which ccache keeps nothing of a target with precompiled
# headers.
function(orvane_cache_precompiled target)
    target_compile_options(${target} PRIVATE
        $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fpch-preprocess>
        "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endfunction()
