# Run as a test: prints the interface snapshot and compares it with the one that is kept.
#   cmake -DTOOL=... -DOUTPUT=... -DEXPECTED=... -P snapshot_test.cmake
execute_process(COMMAND ${TOOL} snapshot ${OUTPUT} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${OUTPUT} ${EXPECTED}
    RESULT_VARIABLE differs)
if(differs)
    message(FATAL_ERROR "The binary interface differs from ${EXPECTED}: see ${OUTPUT}")
endif()
