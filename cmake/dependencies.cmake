add_library(halcyrane_dependencies INTERFACE)

find_package(Threads REQUIRED)
find_package(fmt REQUIRED)
find_package(nlohmann_json REQUIRED)

# What is headers alone needs no build for Windows; that of this machine is copied out of the folder of its own headers.
set(header_libraries ${CMAKE_BINARY_DIR}/header-libraries)
function(halcyrane_header_library name folder)
  if(NOT EXISTS ${folder})
    message(FATAL_ERROR "${name} is missing: there is no ${folder}. cmake/install_packages installs it.")
  endif()
  if(WIN32)
    file(COPY ${folder} DESTINATION ${header_libraries})
    target_include_directories(halcyrane_dependencies SYSTEM INTERFACE ${header_libraries})
  endif()
endfunction()
halcyrane_header_library(CLI11 /usr/include/CLI)
halcyrane_header_library(utfcpp /usr/include/utf8cpp)

if(WIN32)
  if(NOT EXISTS ${HALCYRANE_WINDOWS_LIBRARIES}/curl/stamp)
    message(FATAL_ERROR "The libraries for Windows aren't in ${HALCYRANE_WINDOWS_LIBRARIES}. "
      "cmake/build_windows_libraries makes them; ./check --windows does that by itself.")
  endif()
  # The import library beside it would ask for a DLL.
  set(ZLIB_LIBRARY /usr/x86_64-w64-mingw32/lib/libz.a CACHE FILEPATH "")
  find_package(ZLIB REQUIRED)
  find_package(pugixml REQUIRED)
  find_package(libzip REQUIRED)
  find_package(CURL CONFIG REQUIRED)
  find_path(sodium_headers sodium.h REQUIRED)
  find_library(sodium_library sodium REQUIRED)
  target_include_directories(halcyrane_dependencies SYSTEM INTERFACE ${sodium_headers})
  target_compile_definitions(halcyrane_dependencies INTERFACE CURL_STATICLIB SODIUM_STATIC ZIP_STATIC)
  target_link_libraries(halcyrane_dependencies INTERFACE
    Threads::Threads fmt::fmt nlohmann_json::nlohmann_json pugixml::pugixml libzip::zip CURL::libcurl ZLIB::ZLIB
    ${sodium_library} ws2_32 crypt32 bcrypt winmm psapi shell32 ole32 uuid advapi32)
  return()
endif()

find_package(PkgConfig REQUIRED)
find_package(ZLIB REQUIRED)
pkg_check_modules(pugixml REQUIRED IMPORTED_TARGET pugixml)
pkg_check_modules(sodium REQUIRED IMPORTED_TARGET libsodium)
pkg_check_modules(curl REQUIRED IMPORTED_TARGET libcurl)
pkg_check_modules(zip REQUIRED IMPORTED_TARGET libzip)
target_link_libraries(halcyrane_dependencies INTERFACE
  Threads::Threads fmt::fmt nlohmann_json::nlohmann_json ZLIB::ZLIB
  PkgConfig::pugixml PkgConfig::sodium PkgConfig::curl PkgConfig::zip)
