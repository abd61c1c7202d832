#include "platform/library.h"

#include <dlfcn.h>
#include <link.h>

#include <system_error>

#include "platform/system.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;

std::string lf_systemsWords() {
    const char* words = dlerror();
    return words != nullptr ? words : "";
}

/// The file that the loader took; the name that it was asked for when it doesn't tell.
fs::path lf_loadedFile(void* handle, const fs::path& name) {
    link_map* map = nullptr;
    const bool isTold = dlinfo(handle, RTLD_DI_LINKMAP, &map) == 0 && map != nullptr && map->l_name != nullptr;
    return isTold && *map->l_name != '\0' ? fs::path(map->l_name) : name;
}

bool lf_load(const fs::path& name, Library& library, LibraryFault& fault) {
    library.handle = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library.loaded()) {
        library.file = lf_loadedFile(library.handle, name);
        return true;
    }
    fault.reason = lf_systemsWords();
    return false;
}

/// True when the file is there, which ends the search: loaded, or of no use.
bool lf_loadFile(const fs::path& file, Library& library, LibraryFault& fault) {
    std::error_code error;
    if (!fs::exists(file, error)) return false;
    if (!lf_load(file, library, fault)) fault.file = file;
    return true;
}

}  // namespace

Library gf_openLibrary(const fs::path& name, LibraryFault& fault) {
    Library library;
    fault = {};
    if (name.has_parent_path()) {
        std::error_code error;
        const fs::path file = fs::absolute(name, error);
        if (!lf_loadFile(file, library, fault)) {
            fault.places = {file.parent_path().native()};
            fault.reason = std::make_error_code(std::errc::no_such_file_or_directory).message();
        }
        return library;
    }
    const fs::path programFolder = gf_programFolder();
    fault.places = {programFolder.native(), "the system's library folders"};
    if (!lf_loadFile(programFolder / name, library, fault)) lf_load(name, library, fault);
    return library;
}

LibraryFunction gf_libraryFunction(const Library& library, const char* name) {
    return library.loaded() ? reinterpret_cast<LibraryFunction>(dlsym(library.handle, name)) : nullptr;
}

void gf_closeLibrary(Library& library) {
    if (library.loaded()) dlclose(library.handle);
    library = {};
}

std::string gf_libraryFileName(const std::string& name) {
    return "lib" + name + ".so";
}

bool gf_simulatorRunsHere() {
    return false;
}

}  // namespace hcr
