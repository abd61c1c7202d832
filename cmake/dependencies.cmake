add_library(halcyrane_dependencies INTERFACE)

if(CMAKE_CROSSCOMPILING)
  # The libraries' headers are the same on every system; they are reached one by one, so that no header of the
  # build machine's own C library slips in.
  set(header_root ${CMAKE_BINARY_DIR}/include)
  file(MAKE_DIRECTORY ${header_root})
  foreach(header fmt nlohmann pugixml.hpp pugiconfig.hpp sodium.h sodium zip.h zipconf.h zlib.h zconf.h curl)
    find_path(header_folder_${header} NAMES ${header} PATHS /usr/include /usr/include/x86_64-linux-gnu
      NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
    file(CREATE_LINK ${header_folder_${header}}/${header} ${header_root}/${header} SYMBOLIC)
  endforeach()
  target_include_directories(halcyrane_dependencies SYSTEM INTERFACE ${header_root})
  target_compile_definitions(halcyrane_dependencies INTERFACE FMT_HEADER_ONLY CURL_STATICLIB SODIUM_STATIC ZIP_STATIC)
  return()
endif()

find_package(Threads REQUIRED)
find_package(fmt REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(ZLIB REQUIRED)
pkg_check_modules(pugixml REQUIRED IMPORTED_TARGET pugixml)
pkg_check_modules(sodium REQUIRED IMPORTED_TARGET libsodium)
pkg_check_modules(curl REQUIRED IMPORTED_TARGET libcurl)
pkg_check_modules(zip REQUIRED IMPORTED_TARGET libzip)
target_link_libraries(halcyrane_dependencies INTERFACE
  Threads::Threads fmt::fmt nlohmann_json::nlohmann_json ZLIB::ZLIB
  PkgConfig::pugixml PkgConfig::sodium PkgConfig::curl PkgConfig::zip)
if(WIN32)
  target_link_libraries(halcyrane_dependencies INTERFACE ws2_32 winmm psapi shell32 ole32 uuid advapi32)
endif()
