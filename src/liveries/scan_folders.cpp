#include "liveries/scan_folders.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/folders.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr i32 kManualFolderMissing = 243;
constexpr std::string_view kConverterCopies = "_CVT_";

/// How a package is known in the Community folder.
struct PackageSearch {
    std::string_view word;  ///< as AI_PACKAGE_SELECTOR has it
    std::string_view shown;
    std::string_view name, otherName;  ///< its folder's name holds one of these; the second may be empty
};

constexpr std::array<PackageSearch, 4> kSearches = {{
    {"AIG", "AIG", "aig-aitraffic-oci", ""},
    {"FSLTL", "FSLTL", "fsltl-traffic-base", ""},
    {"JF", "JF", "justflight-aircraft-traffic-fleet", "justflight-fstraffic-module"},
    {"MTL", "IVAO_MTL", "IVAO_MTL", ""},
}};
constexpr PackageSearch kUsersOwn = {"", "user-aitraffic", "user-aitraffic", ""};

bool lf_holds(std::string_view name, std::string_view text) {
    return name.find(text) != std::string_view::npos;
}

bool lf_isPackage(const PackageSearch& search, std::string_view name) {
    if (lf_holds(name, kConverterCopies)) return false;
    return lf_holds(name, search.name) || (!search.otherName.empty() && lf_holds(name, search.otherName));
}

void lf_search(const PackageSearch& search, const std::filesystem::path& community,
               const std::vector<FolderEntry>& entries, FolderList& folders) {
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const FolderEntry& entry) {
        return lf_isPackage(search, entry.name) && gf_isUtf8(entry.name);
    });
    if (found == entries.end()) return;
    std::filesystem::path folder = community / gf_pathFromUtf8(found->name);
    gf_log(fmt::format("Automatic {} scan found folder: '{}'", search.shown, gf_shownPath(folder)));
    gf_logFlush();
    folders.push_back(std::move(folder));
}

}  // namespace

void lf_findAutoFolders(const std::filesystem::path& community, FolderList& folders) {
    const std::string selection = AI_PACKAGE_SELECTOR.current.get();
    const std::vector<std::string>& known = AI_PACKAGE_SELECTOR.values;
    if (std::find(known.begin(), known.end(), selection) == known.end()) {
        throw std::runtime_error(fmt::format("{} not set", AI_PACKAGE_SELECTOR.name));
    }
    const FolderListing listing = gf_listFolder(gf_pathToUtf8(community));
    if (!listing.error.empty()) gf_logError(fmt::format("{}: {}", gf_shownPath(community), listing.error));
    for (const std::string_view word : gf_splitCommas(selection)) {
        for (const PackageSearch& search : kSearches) {
            if (search.word == gf_trim(word)) lf_search(search, community, listing.entries, folders);
        }
    }
    lf_search(kUsersOwn, community, listing.entries, folders);
}

void lf_findManualFolders(FolderList& folders) {
    for (const StringParameter* parameter : {&lfolder0, &lfolder1, &lfolder2, &lfolder3, &lfolder4, &lfolder5,
                                             &lfolder6, &lfolder7, &lfolder8, &lfolder9}) {
        const std::string value = parameter->current.get();
        if (value.empty()) continue;
        std::filesystem::path folder = gf_pathFromAnySeparators(value);
        std::error_code error;
        if (!std::filesystem::exists(folder, error)) {
            gf_logError(fmt::format("{}: '{}' does not exist", parameter->name, value));
            throw UserErrorException(
                kManualFolderMissing,
                fmt::format("the path pointed to by parameter '{}' does not exist, see Log.txt!", parameter->name));
        }
        folders.push_back(std::move(folder));
    }
}

}  // namespace hcr
