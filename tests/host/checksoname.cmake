# Checks that libaecore.so carries the expected SONAME.
execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE headers RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${OBJDUMP} failed on ${LIBRARY}")
endif()
if(NOT headers MATCHES "SONAME +${SONAME}")
    message(FATAL_ERROR "SONAME ${SONAME} not found in ${LIBRARY}")
endif()
