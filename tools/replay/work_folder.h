#pragma once

#include <filesystem>

namespace hcr {

/// A folder for one run in the system's folder for such things, which is the working folder as long as it lives, with
/// folders of its own in place of the user's; so nothing of the user's is read or changed.
struct ReplayFolder {
    /// Takes the data files and, if there are any, scanned liveries from `work`; an empty one means the working folder
    /// or the program's, whichever has data. Throws std::runtime_error with a text for the user.
    explicit ReplayFolder(const std::filesystem::path& work);
    ~ReplayFolder();
    ReplayFolder(const ReplayFolder&) = delete;
    ReplayFolder& operator=(const ReplayFolder&) = delete;

    std::filesystem::path path, before;
    bool hasLiveries = false;
};

}  // namespace hcr
