# The data set of the demo: the plain files of demo-data in the form in which the program takes them, in the layout of
# a data server. Its address for HALCYRANE_DATA_BASE is file://${CMAKE_BINARY_DIR}/data-server/downloads/.

set(data_set_folder ${CMAKE_BINARY_DIR}/data-set)
set(data_server_folder ${CMAKE_BINARY_DIR}/data-server/downloads)
set(data_set_files)

# A file that comes or goes makes the build configure itself anew.
file(GLOB data_set_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/demo-data/*.xml ${CMAKE_SOURCE_DIR}/demo-data/*.json)

# A cross build's own tool doesn't run on this machine.
set(cipher_tool halcyrane-data)
if(CMAKE_CROSSCOMPILING)
  set(cipher_tool ${CMAKE_BINARY_DIR}/host/halcyrane-data)
  add_custom_command(OUTPUT ${cipher_tool}
    COMMAND ${CMAKE_COMMAND} -DSOURCE=${CMAKE_SOURCE_DIR} -DPROGRAM=halcyrane-data -DRESULT=${cipher_tool}
      -P ${CMAKE_SOURCE_DIR}/cmake/host_tool.cmake
    DEPENDS ${CMAKE_SOURCE_DIR}/src/shell/stream_cipher.cpp ${CMAKE_SOURCE_DIR}/tools/data/cipher_commands.cpp
    COMMENT "Building halcyrane-data for this machine" VERBATIM)
endif()

if(TARGET halcyrane-data)
  foreach(name dbase airports AIG-regcodes)
    set(plain ${CMAKE_SOURCE_DIR}/demo-data/${name}.xml)
    if(NOT plain IN_LIST data_set_sources)
      continue()
    endif()
    set(enciphered ${data_set_folder}/${name}.enc)
    set(served ${data_server_folder}/${PROJECT_VERSION_MAJOR}/${name}.enc)
    add_custom_command(OUTPUT ${enciphered} ${served}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${data_set_folder} ${data_server_folder}/${PROJECT_VERSION_MAJOR}
      COMMAND ${cipher_tool} encipher ${plain} ${enciphered} --key ${HALCYRANE_DATA_KEY}
      COMMAND ${CMAKE_COMMAND} -E copy ${enciphered} ${served}
      DEPENDS ${plain} ${cipher_tool}
      COMMENT "Enciphering ${name}.xml" VERBATIM)
    list(APPEND data_set_files ${enciphered} ${served})
  endforeach()

  set(plain_versions ${CMAKE_SOURCE_DIR}/demo-data/versions.json)
  if(plain_versions IN_LIST data_set_sources)
    add_custom_command(OUTPUT ${data_server_folder}/versions.json
      COMMAND ${CMAKE_COMMAND} -E make_directory ${data_server_folder}
      COMMAND ${CMAKE_COMMAND} -E copy ${plain_versions} ${data_server_folder}/versions.json
      DEPENDS ${plain_versions} VERBATIM)
    list(APPEND data_set_files ${data_server_folder}/versions.json)
  endif()
endif()

add_custom_target(halcyrane_data_set ALL DEPENDS ${data_set_files})
