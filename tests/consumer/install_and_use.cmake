# Builds and installs library/ alone, then builds the consumer against what was installed and runs it.
#   cmake -DSOURCE=<project> -DWORK=<build folder> -DPLANT=<model file> -DEXPECTED=<regular expression> -P this file
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        list(JOIN ARGV " " command)
        message(FATAL_ERROR "${command}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK}/prefix ${WORK}/consumer)
run(${CMAKE_COMMAND} -G Ninja -S ${SOURCE}/library -B ${WORK}/library -DCMAKE_BUILD_TYPE=None) # quickest to compile
run(${CMAKE_COMMAND} --build ${WORK}/library)
run(${CMAKE_COMMAND} --install ${WORK}/library --prefix ${WORK}/prefix)
run(${CMAKE_COMMAND} -G Ninja -S ${SOURCE}/tests/consumer -B ${WORK}/consumer -DCMAKE_BUILD_TYPE=Release
    -DCMAKE_PREFIX_PATH=${WORK}/prefix)
run(${CMAKE_COMMAND} --build ${WORK}/consumer)
run(${WORK}/consumer/consumer ${PLANT})
if(NOT output MATCHES "${EXPECTED}")
    message(FATAL_ERROR "The consumer said: ${output}expected: ${EXPECTED}")
endif()
message(STATUS "${output}")

# The README shows the consumer; let it show what was built.
file(READ ${SOURCE}/README.md readme)
file(READ ${SOURCE}/tests/consumer/main.cpp program)
string(FIND "${readme}" "${program}" place)
if(place EQUAL -1)
    message(FATAL_ERROR "README.md does not show tests/consumer/main.cpp as it is")
endif()
