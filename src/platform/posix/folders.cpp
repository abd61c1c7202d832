#include "platform/folders.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <system_error>

namespace hcr {
namespace {

struct FolderCloser {
    void operator()(DIR* folder) const { closedir(folder); }
};

bool lf_isDots(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// For links, and for file systems that don't tell with the name.
EntryKind lf_askKind(int folder, const char* name) {
    struct stat status {};
    if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return EntryKind::other;
    const bool isLink = S_ISLNK(status.st_mode);
    if (isLink && fstatat(folder, name, &status, 0) != 0) return EntryKind::other;
    if (S_ISREG(status.st_mode)) return EntryKind::file;
    return S_ISDIR(status.st_mode) && !isLink ? EntryKind::folder : EntryKind::other;
}

EntryKind lf_kind(DIR* folder, const dirent& entry) {
    switch (entry.d_type) {
        case DT_REG:
            return EntryKind::file;
        case DT_DIR:
            return EntryKind::folder;
        case DT_LNK:
        case DT_UNKNOWN:
            return lf_askKind(dirfd(folder), entry.d_name);
        default:
            return EntryKind::other;
    }
}

}  // namespace

FolderListing gf_listFolder(const std::string& folder) {
    FolderListing listing;
    const std::unique_ptr<DIR, FolderCloser> opened(opendir(folder.c_str()));
    if (!opened) {
        listing.error = std::generic_category().message(errno);
        return listing;
    }
    for (;;) {
        errno = 0;
        const dirent* entry = readdir(opened.get());
        if (entry == nullptr) break;
        if (lf_isDots(entry->d_name)) continue;
        listing.entries.push_back({entry->d_name, lf_kind(opened.get(), *entry)});
    }
    if (errno != 0) listing.error = std::generic_category().message(errno);
    std::sort(listing.entries.begin(), listing.entries.end(),
              [](const FolderEntry& a, const FolderEntry& b) { return a.name < b.name; });
    return listing;
}

}  // namespace hcr
