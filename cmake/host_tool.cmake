# Puts a program of this project for the build machine itself to RESULT, while a build for another system runs.
# usage: cmake -DSOURCE=... -DPROGRAM=... -DRESULT=... -P host_tool.cmake
# A build of this machine that is there already is asked first: it has most of the program's objects.

foreach(preset release debug)
  if(EXISTS ${SOURCE}/build/${preset}/build.ninja)
    set(build ${SOURCE}/build/${preset})
    break()
  endif()
endforeach()
if(NOT build)
  set(build ${SOURCE}/build/release)
  execute_process(COMMAND ${CMAKE_COMMAND} --preset release WORKING_DIRECTORY ${SOURCE}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${build} --target ${PROGRAM} OUTPUT_VARIABLE output RESULT_VARIABLE code)
if(NOT code EQUAL 0)
  message(FATAL_ERROR "${output}\n${PROGRAM} could not be built in ${build}")
endif()
get_filename_component(folder ${RESULT} DIRECTORY)
file(COPY ${build}/${PROGRAM} DESTINATION ${folder})
file(TOUCH ${RESULT})
