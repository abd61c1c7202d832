# The target package_windows: all that a user unpacks and starts, in one zip file.

set(package_name ${PROJECT_NAME}-${PROJECT_VERSION}-windows)
set(package_folder ${CMAKE_BINARY_DIR}/package/${package_name})
set(package_zip ${CMAKE_BINARY_DIR}/${package_name}.zip)
set(package_programs halcyrane halcyrane-feed halcyrane-data halcyrane-replay halcyrane-tracks)
set(package_files)
set(packed_programs)
foreach(program ${package_programs})
  list(APPEND package_files $<TARGET_FILE:${program}>)
  list(APPEND packed_programs ${package_folder}/${program}.exe)
endforeach()
configure_file(${CMAKE_SOURCE_DIR}/windows/README.txt.in ${CMAKE_BINARY_DIR}/resources/README.txt @ONLY NEWLINE_STYLE DOS)
file(GLOB package_docs CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/docs/* ${CMAKE_SOURCE_DIR}/CHANGELOG.md)

add_custom_command(OUTPUT ${package_zip}
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${package_folder} ${package_zip}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${package_folder}/docs ${package_folder}/input/my_regcodes
    ${package_folder}/output/info ${package_folder}/output/errors ${package_folder}/airports
  COMMAND ${CMAKE_COMMAND} -E copy ${package_files} ${CMAKE_BINARY_DIR}/resources/README.txt
    ${CMAKE_SOURCE_DIR}/demo-data/scenario.json ${package_folder}
  COMMAND ${CMAKE_COMMAND} -E copy ${package_docs} ${package_folder}/docs
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${data_set_folder} ${package_folder}/input
  COMMAND ${CMAKE_STRIP} ${packed_programs}
  COMMAND ${CMAKE_COMMAND} -E chdir ${CMAKE_BINARY_DIR}/package
    ${CMAKE_COMMAND} -E tar cf ${package_zip} --format=zip ${package_name}
  DEPENDS ${package_programs} halcyrane_data_set ${data_set_files} ${package_docs} ${CMAKE_BINARY_DIR}/resources/README.txt
    ${CMAKE_SOURCE_DIR}/demo-data/scenario.json
  COMMENT "Packing ${package_name}.zip" VERBATIM)
add_custom_target(package_windows DEPENDS ${package_zip})
