#include "platform/library.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>

#include "platform/environment.h"
#include "platform/files.h"
#include "platform/system.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_header.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;

struct LocalDeleter {
    void operator()(wchar_t* text) const { LocalFree(text); }
};

std::string lf_utf8(std::wstring_view text) {
    return gf_systemWideToUtf8(text).value_or("?");
}

/// The system's words leave a place for the file's name.
void lf_fillIn(std::string& words, const fs::path& file) {
    constexpr std::string_view kPlace = "%1";
    const std::size_t at = words.find(kPlace);
    if (at != std::string::npos) words.replace(at, kPlace.size(), lf_utf8(file.filename().native()));
}

/// The system's words for an error with this file, in the user's language.
std::string lf_words(DWORD error, const fs::path& file) {
    if (error == ERROR_BAD_EXE_FORMAT) {
        return "it is no library for 64-bit programs (error " + std::to_string(error) + ")";
    }
    wchar_t* text = nullptr;
    const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    DWORD length = FormatMessageW(flags, nullptr, error, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    const std::unique_ptr<wchar_t, LocalDeleter> owner(text);
    while (length > 0 && text[length - 1] <= L' ') --length;
    const std::string number = "error " + std::to_string(error);
    if (length == 0) return number;
    std::string words = lf_utf8({text, length});
    lf_fillIn(words, file);
    return words + " (" + number + ")";
}

fs::path lf_loadedFile(HMODULE module, const fs::path& name) {
    std::wstring file(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(module, file.data(), static_cast<DWORD>(file.size()));
        if (length == 0) return name;
        if (length < file.size()) return file.substr(0, length);
        file.resize(file.size() * 2);
    }
}

bool lf_load(const fs::path& name, DWORD flags, Library& library, LibraryFault& fault) {
    // A drive without a disc must not ask the user for one.
    DWORD before = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before);
    const HMODULE module = LoadLibraryExW(name.c_str(), nullptr, flags);
    const DWORD error = GetLastError();
    SetThreadErrorMode(before, nullptr);
    if (module == nullptr) {
        fault.reason = lf_words(error, name);
        return false;
    }
    library.handle = module;
    library.file = lf_loadedFile(module, name);
    return true;
}

/// The library knows drives only, no shared folders.
bool lf_isAbsolute(const fs::path& path) {
    const std::wstring& text = path.native();
    const bool isShared = text.size() > 2 && text[0] == text[1] && (text[0] == L'\\' || text[0] == L'/');
    return isShared || path.is_absolute();
}

/// True when the file is there, which ends the search: loaded, or of no use. What it needs itself is looked for beside
/// it, beside the program and in the system's folder.
bool lf_loadFile(const fs::path& file, Library& library, LibraryFault& fault) {
    std::error_code error;
    if (!lf_isAbsolute(file) || !fs::is_regular_file(file, error)) return false;
    constexpr DWORD kFlags = LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS;
    // The flags are refused with separators of another system.
    fs::path whole = file;
    if (!lf_load(whole.make_preferred(), kFlags, library, fault)) fault.file = whole;
    return true;
}

/// In the folders of PATH. lf_loadFile passes over relative ones, which mean the working folder.
bool lf_loadFromSearchPath(const fs::path& name, Library& library, LibraryFault& fault) {
    const std::string path = gf_environmentText("PATH");
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t end = std::min(path.find(';', at), path.size());
        std::string folder = path.substr(at, end - at);
        std::erase(folder, '"');  // some installers quote a folder with blanks
        const std::optional<std::wstring> wide = gf_systemUtf8ToWide(folder);
        if (wide && lf_loadFile(fs::path(*wide) / name, library, fault)) return true;
        at = end + 1;
    }
    return false;
}

}  // namespace

Library gf_openLibrary(const fs::path& name, LibraryFault& fault) {
    Library library;
    fault = {};
    if (name.has_parent_path()) {
        std::error_code error;
        const fs::path file = gf_absolutePath(name, error);
        if (!lf_loadFile(file, library, fault)) {
            fault.places = {lf_utf8(file.parent_path().native())};
            fault.reason = lf_words(ERROR_FILE_NOT_FOUND, file);
        }
        return library;
    }
    const fs::path programFolder = gf_programFolder();
    fault.places = {lf_utf8(programFolder.native()), "the system folder of Windows", "the folders of PATH"};
    if (lf_loadFile(programFolder / name, library, fault)) return library;
    if (lf_load(name, LOAD_LIBRARY_SEARCH_SYSTEM32, library, fault)) return library;
    lf_loadFromSearchPath(name, library, fault);
    return library;
}

LibraryFunction gf_libraryFunction(const Library& library, const char* name) {
    if (!library.loaded()) return nullptr;
    return reinterpret_cast<LibraryFunction>(GetProcAddress(static_cast<HMODULE>(library.handle), name));
}

void gf_closeLibrary(Library& library) {
    if (library.loaded()) FreeLibrary(static_cast<HMODULE>(library.handle));
    library = {};
}

std::string gf_libraryFileName(const std::string& name) {
    return name + ".dll";
}

bool gf_simulatorRunsHere() {
    return true;
}

}  // namespace hcr
