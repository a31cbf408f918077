# Installs the build tree into a throw-away prefix and fails on any file outside
# what libLdp may own: include/ldp, its libraries, its package files, the tools
# and their data.   BUILD_DIR, WORK
file(REMOVE_RECURSE "${WORK}")
execute_process(COMMAND ${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${WORK}" RESULT_VARIABLE rc
  OUTPUT_QUIET ERROR_VARIABLE err)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "install failed: ${err}")
endif()
file(GLOB_RECURSE files RELATIVE "${WORK}" "${WORK}/*")
set(stray)
set(headers 0)
foreach(f IN LISTS files)
  if(f MATCHES "^include/ldp/.*\\.h$")
    math(EXPR headers "${headers} + 1")
  elseif(NOT f MATCHES "^lib[^/]*/(libLdp(Platform)?\\.so[.0-9]*|cmake/Ldp/[^/]+|pkgconfig/ldp\\.pc)$"
         AND NOT f MATCHES "^bin/[^/]+$" AND NOT f MATCHES "^share/(ldpdecode|man/man1)/")
    list(APPEND stray "${f}")
  endif()
endforeach()
if(stray)
  list(JOIN stray "\n  " text)
  message(FATAL_ERROR "installed outside include/ldp, the libraries, the package files and the tools:\n  ${text}")
endif()
foreach(needed include/ldp/platform/zon/Ptr.h include/ldp/platform/vorin/TcpClient.h include/ldp/parser/LdpPduParser.h
               include/ldp/index/LdpStatus.h)
  if(NOT EXISTS "${WORK}/${needed}")
    message(FATAL_ERROR "${needed} was not installed")
  endif()
endforeach()
message("${headers} headers under include/ldp, nothing elsewhere")
