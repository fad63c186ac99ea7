# Helpers of the scripts that act as other projects.
cmake_minimum_required(VERSION 3.16)

# run(<what> <command>...): stops with the command's output when it fails. The output is left in
# run_output.
function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output
                  ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${what} failed (${result}): ${command}\n${output}")
  endif()
  set(run_output "${output}" PARENT_SCOPE)
endfunction()

# run_host(<program>): runs the README's host program and checks what it prints.
function(run_host program)
  run("the host program" ${EMULATOR} "${program}" "${PAGE}")
  if(NOT run_output MATCHES "^page 0 QSize\\(4, 3\\)\n$")
    message(FATAL_ERROR "the host program printed: ${run_output}")
  endif()
endfunction()

# The arguments that make another project use this build's tools.
set(same_tools -G "${GENERATOR}" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_FLAGS=${FLAGS}"
    "-DCMAKE_BUILD_TYPE=${CONFIG}")
if(TOOLCHAIN) # which may look for packages in its own folders only
  list(APPEND same_tools "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}"
    "-DCMAKE_FIND_ROOT_PATH=${BUILD}")
endif()
