#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace hcr {

/// A shared library in this process; not loaded until gf_openLibrary made it so.
struct Library {
    void* handle = nullptr;
    std::filesystem::path file;  ///< from which it was loaded, as far as the system tells
    bool loaded() const { return handle != nullptr; }
};

/// Why a library couldn't be loaded, in words for the user.
struct LibraryFault {
    std::filesystem::path file;       ///< the file that was found and is of no use; empty when none was found
    std::string reason;               ///< the system's words, UTF-8
    std::vector<std::string> places;  ///< where it was looked for, UTF-8, in this order
};

/// A function of a library, still to be cast to its own type.
using LibraryFunction = void (*)();

// Any thread.

/// Loads a library. A name with a folder is that very file; a bare name is looked for beside the program, then where
/// the system keeps libraries and in the folders of its search path, but never in the working folder, which may hold
/// anybody's file. `fault` is filled when the result isn't loaded.
Library gf_openLibrary(const std::filesystem::path& name, LibraryFault& fault);
/// The exported function of this name, null when there is none.
LibraryFunction gf_libraryFunction(const Library& library, const char* name);
/// Nothing of the library may be used any more, and none of its functions may be running.
void gf_closeLibrary(Library& library);

/// What a library is called here: "Name.dll", "libName.so".
std::string gf_libraryFileName(const std::string& name);
/// True on the system on which the flight simulator can run beside this program.
bool gf_simulatorRunsHere();

}  // namespace hcr
