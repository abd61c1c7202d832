# Name, version, icon and manifest inside a Windows program; docs and imports are looked at by the package and the check.
enable_language(RC)

function(halcyrane_windows_resources program)
  set(resources ${CMAKE_BINARY_DIR}/resources/${program}.rc)
  configure_file(${CMAKE_SOURCE_DIR}/windows/program.rc.in ${resources} @ONLY)
  target_sources(${program} PRIVATE ${resources})
  set_property(SOURCE ${resources} APPEND PROPERTY OBJECT_DEPENDS
    "${CMAKE_SOURCE_DIR}/windows/halcyrane.ico;${CMAKE_SOURCE_DIR}/windows/program.manifest")
endfunction()
