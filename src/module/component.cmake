# What turns class tables into a shared library that hosts load.

# orvane_native_tool(TOOL_VARIABLE DEPENDS_VARIABLE name)
#
# A program of ours that runs during the build: the target itself, or, when building for Windows, the
# same target of the native build in ORVANE_NATIVE_DIR, which is made first if it isn't there.
function(orvane_native_tool tool_variable depends_variable name)
    if(NOT CMAKE_CROSSCOMPILING)
        set(${tool_variable} $<TARGET_FILE:${name}> PARENT_SCOPE)
        set(${depends_variable} ${name} PARENT_SCOPE)
        return()
    endif()
    set(program ${ORVANE_NATIVE_DIR}/bin/${name})
    if(NOT TARGET native_${name})
        add_custom_target(native_${name}
            COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${CMAKE_SOURCE_DIR}
                    -DNATIVE_DIR=${ORVANE_NATIVE_DIR} -DTARGET=${name}
                    -P ${CMAKE_SOURCE_DIR}/src/module/native_tool.cmake
            BYPRODUCTS ${program}
            COMMENT "Bringing ${name} of the native build up to date"
            USES_TERMINAL VERBATIM)
    endif()
    set(${tool_variable} ${program} PARENT_SCOPE)
    set(${depends_variable} native_${name} ${program} PARENT_SCOPE)
endfunction()

# orvane_add_type_library(target file tool depends)
#
# Compiles the interface definition and embeds it in the target with the version resource. `widl`
# writes its output anew each time, so the flags are set in the same command.
function(orvane_add_type_library target file tool depends)
    find_program(ORVANE_WIDL NAMES i686-w64-mingw32-widl widl REQUIRED)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/${target}_interface)
    file(MAKE_DIRECTORY ${folder})
    add_custom_command(
        OUTPUT ${folder}/${target}.tlb
        COMMAND ${tool} system-idl ${folder}/stdole2.idl
        COMMAND ${ORVANE_WIDL} -t -o ${folder}/stdole2.tlb ${folder}/stdole2.idl
        COMMAND ${tool} idl ${folder}/${target}.idl
        COMMAND ${ORVANE_WIDL} -t -L ${folder} -o ${folder}/${target}.tlb ${folder}/${target}.idl
        COMMAND ${tool} flags ${folder}/${target}.tlb
        DEPENDS ${depends}
        WORKING_DIRECTORY ${folder}
        COMMENT "Compiling the type library of ${target}" VERBATIM)
    add_custom_command(
        OUTPUT ${folder}/${target}.res.o
        COMMAND ${tool} resource ${folder}/${target}.rc ${target}.tlb ${file}
        COMMAND ${CMAKE_RC_COMPILER} -c 65001 -I ${folder} ${target}.rc ${target}.res.o
        DEPENDS ${depends} ${folder}/${target}.tlb
        WORKING_DIRECTORY ${folder}
        COMMENT "Compiling the resources of ${target}" VERBATIM)
    target_sources(${target} PRIVATE ${folder}/${target}.res.o)
    set_source_files_properties(${folder}/${target}.res.o PROPERTIES
        EXTERNAL_OBJECT TRUE GENERATED TRUE)
endfunction()

# orvane_add_component(target FILE name TOOL program HEADER name LIBRARIES target...)
#
# A shared library with the four exports over the catalogue that LIBRARIES define. TOOL is the
# interface printer over the same catalogue, HEADER the header for hosts that it prints to
# `include/orvane` of the build; hosts link `<target>_header` to see it.
function(orvane_add_component target)
    cmake_parse_arguments(COMPONENT "" "FILE;TOOL;HEADER" "LIBRARIES" ${ARGN})
    set(exports ${CMAKE_SOURCE_DIR}/src/module)
    orvane_native_tool(tool depends ${COMPONENT_TOOL})

    add_library(${target} SHARED $<TARGET_OBJECTS:orvane_module>)
    target_link_libraries(${target} PRIVATE ${COMPONENT_LIBRARIES} orvane_warnings)
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
    if(WIN32)
        set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX ".DLL" IMPORT_SUFFIX ".a")
        target_link_options(${target} PRIVATE
            ${exports}/exports.def -Wl,--kill-at -Wl,--enable-stdcall-fixup)
        set_target_properties(${target} PROPERTIES LINK_DEPENDS ${exports}/exports.def)
        orvane_add_type_library(${target} ${COMPONENT_FILE}.DLL ${tool} "${depends}")
    else()
        target_link_options(${target} PRIVATE -Wl,--version-script=${exports}/exports.map)
        set_target_properties(${target} PROPERTIES LINK_DEPENDS ${exports}/exports.map)
    endif()
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${COMPONENT_FILE})

    set(header ${CMAKE_BINARY_DIR}/include/orvane/${COMPONENT_HEADER})
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/include/orvane)
    add_custom_command(
        OUTPUT ${header}
        COMMAND ${tool} header ${header}
        COMMAND ${CMAKE_COMMAND} -E touch ${header}
        DEPENDS ${depends}
        COMMENT "Printing ${COMPONENT_HEADER}" VERBATIM)
    add_custom_target(${target}_header_file DEPENDS ${header})
    add_library(${target}_header INTERFACE)
    add_dependencies(${target}_header ${target}_header_file)
    target_include_directories(${target}_header INTERFACE
        ${CMAKE_BINARY_DIR}/include ${CMAKE_SOURCE_DIR}/include)
    add_dependencies(${target} ${target}_header_file)
endfunction()
