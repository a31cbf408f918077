# Runs the model generator (tools/gen/ldpgen.py) at build time.
#
#   ldp_generate(<sources-var> ROOT <dir> OUT <dir> SCHEMAS <schema>...)
#
# For each schema ROOT/a/b/X.zon it generates OUT/a/b/X.h and OUT/a/b/X.gen.cpp
# and appends both to <sources-var>. A schema is regenerated when it, any schema
# of the same call (one may import another) or the generator itself changes. The
# generator rewrites a file only when its content changed, and the rule's real
# output is a stamp, so an unchanged result recompiles nothing.
find_package(Python3 3.8 REQUIRED COMPONENTS Interpreter)

set(LDPGEN_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/../tools/gen/ldpgen.py)
file(GLOB LDPGEN_DEPENDS CONFIGURE_DEPENDS
  ${CMAKE_CURRENT_LIST_DIR}/../tools/gen/*.py
  ${CMAKE_CURRENT_LIST_DIR}/../tools/gen/modelgen/*.py)

#   ldp_generate(<sources-var> ROOT <dir> OUT <dir> SCHEMAS <schema>... [IMPORTS <schema>...])
# IMPORTS: schemas of other calls that these may import; a change to one of them
# regenerates these too.
function(ldp_generate sources_var)
  cmake_parse_arguments(arg "" "ROOT;OUT" "SCHEMAS;IMPORTS" ${ARGN})
  set(generated)
  foreach(schema IN LISTS arg_SCHEMAS)
    file(RELATIVE_PATH rel ${arg_ROOT} ${schema})
    string(REGEX REPLACE "\\.zon$" "" stem "${rel}")
    set(header ${arg_OUT}/${stem}.h)
    set(source ${arg_OUT}/${stem}.gen.cpp)
    set(stamp ${arg_OUT}/${stem}.stamp)
    add_custom_command(
      OUTPUT ${stamp}
      BYPRODUCTS ${header} ${source}
      COMMAND Python3::Interpreter -B ${LDPGEN_SCRIPT} --root ${arg_ROOT} --out ${arg_OUT}
              --stamp ${stamp} ${rel}
      DEPENDS ${arg_SCHEMAS} ${arg_IMPORTS} ${LDPGEN_DEPENDS}
      WORKING_DIRECTORY ${arg_ROOT}
      COMMENT "Generating ${stem}.h and ${stem}.gen.cpp from ${rel}"
      VERBATIM)
    list(APPEND generated ${stamp} ${header} ${source})
  endforeach()
  set(${sources_var} ${${sources_var}} ${generated} PARENT_SCOPE)
endfunction()
