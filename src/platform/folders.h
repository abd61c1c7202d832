#pragma once

#include <string>
#include <vector>

namespace hcr {

/// What an entry of a folder is.
enum class EntryKind {
    file,    ///< a regular file, or a link to one
    folder,  ///< never a link
    other,
};

/// One entry of a folder.
struct FolderEntry {
    std::string name;  ///< UTF-8; of a name that is no text, bytes that aren't valid UTF-8
    EntryKind kind = EntryKind::other;
};

/// What gf_listFolder found.
struct FolderListing {
    std::vector<FolderEntry> entries;  ///< in the byte order of their names
    std::string error;                 ///< the system's words when the folder, or the rest of it, can't be read
};

/// The entries of a folder but for "." and "..", which is UTF-8. It costs a fraction of what the standard library's
/// iterator takes for many entries, since it makes no path of each and seldom asks the system about one. Any thread.
FolderListing gf_listFolder(const std::string& folder);

}  // namespace hcr
