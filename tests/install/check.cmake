# Installs the build into a scratch folder, builds the outside host against it and compares what it says.
# cmake -DBUILD=... -DSOURCE=... -DSCRATCH=... -DCXX_FLAGS=... -P check.cmake
file(REMOVE_RECURSE ${SCRATCH})
function(step)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nended with ${status}\n${out}\n${err}")
  endif()
  set(output "${out}" PARENT_SCOPE)
endfunction()

step(${CMAKE_COMMAND} --install ${BUILD} --prefix ${SCRATCH}/prefix)
step(${CMAKE_COMMAND} -S ${SOURCE} -B ${SCRATCH}/build -G Ninja -DCMAKE_PREFIX_PATH=${SCRATCH}/prefix
     -DCMAKE_CXX_FLAGS=${CXX_FLAGS})
step(${CMAKE_COMMAND} --build ${SCRATCH}/build)
step(${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ${SCRATCH}/build/outside_host)
string(CONCAT expected
  "next price level 5\npermission 6 asked on part 114\nentry point returned\n"
  "permission 6 asked on part 114\nPart 114 shows 2 rows, on \"4 همکار\"\npicked level 1\n")
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "the outside host said\n${output}\ninstead of\n${expected}")
endif()
step(${SCRATCH}/build/linked_host)
if(NOT output STREQUAL "version as in the headers\n")
  message(FATAL_ERROR "the linked host said ${output}")
endif()
# The installed programs run from where they were put.
step(${SCRATCH}/prefix/bin/basalt functions --json)
