#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace hcr {

/// A folder that is the working folder, with settings of its own, as long as the object lives.
struct ScratchFolder {
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::filesystem::path before, path;
};

/// The tables that a run works with, loaded from copies: neither the settings nor the reports of the program's own
/// folder change, and a run may go on there meanwhile.
struct MatchData {
    /// `work` is the folder in which the program works. Throws std::runtime_error and what the loading throws.
    explicit MatchData(const std::filesystem::path& work);

    ScratchFolder folder;
    std::vector<std::string> faults;  ///< what the loading of liveries and registrations marked in the log
};

}  // namespace hcr
