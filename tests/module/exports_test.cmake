# Run as a test: the library's exported functions must be exactly the four entry points.
#   cmake -DNM=... -DOBJDUMP=... -DLIBRARY=... -P exports_test.cmake
if(LIBRARY MATCHES "\\.DLL$")
    execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE "^.*\\[Ordinal/Name Pointer\\] Table" "" text "${text}")
    string(REGEX MATCHALL "\\[ +[0-9]+\\] [A-Za-z0-9_@]+" lines "${text}")
    list(TRANSFORM lines REPLACE "^\\[ +[0-9]+\\] " "")
else()
    execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY} OUTPUT_VARIABLE text
        COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "[0-9a-f]+ [A-Za-z] [A-Za-z0-9_@]+" lines "${text}")
    list(TRANSFORM lines REPLACE "^[0-9a-f]+ [A-Za-z] " "")
endif()
list(SORT lines)
set(expected DllCanUnloadNow DllGetClassObject DllRegisterServer DllUnregisterServer)
if(NOT lines STREQUAL expected)
    message(FATAL_ERROR "exported: ${lines}")
endif()
