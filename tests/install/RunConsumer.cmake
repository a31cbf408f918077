# Installs the build tree into a throw-away prefix, then configures, builds and
# runs a program outside this build that finds libLdp with find_package(Ldp).
#   SRC        the program's source folder
#   PROGRAM    what to run, relative to its build folder
#   ARGS       its arguments (a list), if any
#   TARGET     the one target to build, if not all
file(REMOVE_RECURSE "${WORK}")
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGN}\n${out}\n${err}")
  endif()
  message("${out}")
endfunction()
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${WORK}/prefix")
run(${CMAKE_COMMAND} -S "${SRC}" -B "${WORK}/build" "-DCMAKE_PREFIX_PATH=${WORK}/prefix"
    "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${LINK_FLAGS}")
if(TARGET)
  run(${CMAKE_COMMAND} --build "${WORK}/build" --target "${TARGET}")
else()
  run(${CMAKE_COMMAND} --build "${WORK}/build")
endif()
# EMULATOR: empty, or the emulator that 32-bit programs need on this kernel.
run(${EMULATOR} "${WORK}/build/${PROGRAM}" ${ARGS})
