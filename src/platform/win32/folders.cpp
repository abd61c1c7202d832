#include "platform/folders.h"

#include <algorithm>
#include <memory>
#include <system_error>

#include "platform/code_page.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_header.h"

namespace hcr {
namespace {

constexpr const char* kNoText = "\xFF";  // no UTF-8 text holds this byte

struct SearchCloser {
    using pointer = HANDLE;
    void operator()(HANDLE search) const { FindClose(search); }
};

bool lf_isDots(const wchar_t* name) {
    return name[0] == L'.' && (name[1] == L'\0' || (name[1] == L'.' && name[2] == L'\0'));
}

/// Symbolic links and junctions are links; what a cloud store or a compressed disc makes of a file isn't.
bool lf_isLink(const WIN32_FIND_DATAW& found) {
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && IsReparseTagNameSurrogate(found.dwReserved0);
}

EntryKind lf_kind(const WIN32_FIND_DATAW& found) {
    const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (isFolder) return lf_isLink(found) ? EntryKind::other : EntryKind::folder;
    return (found.dwFileAttributes & FILE_ATTRIBUTE_DEVICE) != 0 ? EntryKind::other : EntryKind::file;
}

std::string lf_words(DWORD error) {
    return gf_decodeCodePage(std::system_category().message(static_cast<int>(error)), false).value_or("");
}

}  // namespace

FolderListing gf_listFolder(const std::string& folder) {
    FolderListing listing;
    const std::optional<std::wstring> wide = gf_systemUtf8ToWide(folder);
    if (!wide) {
        listing.error = lf_words(ERROR_NO_UNICODE_TRANSLATION);
        return listing;
    }
    if (wide->empty()) {
        listing.error = lf_words(ERROR_PATH_NOT_FOUND);
        return listing;
    }
    WIN32_FIND_DATAW found{};
    const HANDLE opened = FindFirstFileExW((*wide + L"\\*").c_str(), FindExInfoBasic, &found, FindExSearchNameMatch,
                                           nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (opened == INVALID_HANDLE_VALUE) {
        // The root of an empty drive hasn't even dots.
        if (const DWORD error = GetLastError(); error != ERROR_FILE_NOT_FOUND) listing.error = lf_words(error);
        return listing;
    }
    const std::unique_ptr<HANDLE, SearchCloser> search(opened);
    do {
        if (lf_isDots(found.cFileName)) continue;
        listing.entries.push_back({gf_systemWideToUtf8(found.cFileName).value_or(kNoText), lf_kind(found)});
    } while (FindNextFileW(search.get(), &found) != FALSE);
    if (const DWORD error = GetLastError(); error != ERROR_NO_MORE_FILES) listing.error = lf_words(error);
    std::sort(listing.entries.begin(), listing.entries.end(),
              [](const FolderEntry& a, const FolderEntry& b) { return a.name < b.name; });
    return listing;
}

}  // namespace hcr
