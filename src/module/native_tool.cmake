# Run by the cross build: configures the native build if need be and builds one target of it.
if(NOT EXISTS ${NATIVE_DIR}/CMakeCache.txt)
    execute_process(
        COMMAND ${CMAKE_COMMAND} --preset linux -S ${SOURCE_DIR} -B ${NATIVE_DIR}
        COMMAND_ERROR_IS_FATAL ANY)
endif()
execute_process(
    COMMAND ${CMAKE_COMMAND} --build ${NATIVE_DIR} --target ${TARGET}
    COMMAND_ERROR_IS_FATAL ANY)
