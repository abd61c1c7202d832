#include "shell/sim_addons.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/download.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameter_file.h"
#include "shell/text.h"
#include "shell/text_files.h"
#include "shell/zip.h"

namespace fs = std::filesystem;

namespace hcr {
namespace {

constexpr const char* kZipName = "my_simaddon2024.zip";
constexpr const char* kZipLocation = "mysimaddon24/my_simaddon2024.zip";
constexpr u64 kLargestZip = u64{256} * 1048576;   // bytes; it is held in memory
constexpr u64 kLargestEntry = u64{16} * 1048576;  // bytes; link files have some hundred
constexpr std::string_view kNotInFileNames = "<>:\"|?*";

/// Name of the link file that an entry becomes: its base name with ".txt". Empty for a name that no file can have.
std::string lf_linkFileName(std::string_view entryName) {
    std::string_view name = entryName.substr(entryName.find_last_of("/\\") + 1);  // npos + 1 is 0
    const std::size_t dot = name.rfind('.');
    if (dot != std::string_view::npos && dot > 0) name = name.substr(0, dot);
    const auto forbidden = [](char c) {
        return static_cast<unsigned char>(c) < ' ' || kNotInFileNames.find(c) != std::string_view::npos;
    };
    if (name.empty() || std::any_of(name.begin(), name.end(), forbidden)) return {};
    return std::string(name) + ".txt";
}

bool lf_unpackEntry(const ZipReader& reader, u64 index, std::string_view entryName) {
    const std::string name = lf_linkFileName(entryName);
    if (name.empty()) return false;
    const std::optional<std::string> text = gf_readZipEntry(reader, index, kLargestEntry);
    return text && gf_writeTextFile(*text, gFiles().mySimaddon / gf_pathFromUtf8(name), false);
}

/// Whether every entry can be read; the checksums in the archive tell.
bool lf_isWhole(const ZipReader& reader) {
    const u64 count = gf_zipEntryCount(reader);
    for (u64 index = 0; index < count; ++index) {
        const bool isFolder = gf_zipEntryName(reader, index).ends_with('/');
        if (!isFolder && !gf_readZipEntry(reader, index, kLargestEntry)) return false;
    }
    return true;
}

/// The number of files written.
u64 lf_unpackAll(const ZipReader& reader) {
    u64 written = 0;
    const u64 count = gf_zipEntryCount(reader);
    for (u64 index = 0; index < count; ++index) {
        const std::string name = gf_zipEntryName(reader, index);
        if (name.ends_with('/')) continue;
        if (lf_unpackEntry(reader, index, name)) {
            ++written;
        } else {
            gf_logError(fmt::format("Failed to write file: {}", name));
        }
    }
    return written;
}

bool lf_fetchAndUnpack(const VersionData& webVersion) {
    const CurlHandle handle = gf_openCurl();
    if (!gf_download(handle.get(), gf_dataBase() + kZipLocation, kZipName, true)) return false;
    const fs::path& folder = gFiles().mySimaddon;
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        gf_logError(fmt::format("Could not create directory {}: {}", gf_pathToUtf8(folder), gf_errorText(error)));
        return false;
    }
    const std::unique_ptr<ZipReader> reader = gf_openZip(kZipName, kLargestZip);
    if (!reader) {
        gf_logError(fmt::format("Could not open {}", kZipName));
        return false;
    }
    if (!lf_isWhole(*reader)) {
        gf_logError(
            fmt::format("{} is damaged, the old link files stay; it is fetched again at the next start", kZipName));
        return false;
    }
    const u64 written = lf_unpackAll(*reader);
    gf_showMessage(fmt::format("{} unzipped {} files", kZipName, written), true);
    MYSIMADDON24_VERSION.current.set(webVersion.text());
    gf_storeParameter(MYSIMADDON24_VERSION);
    return true;
}

}  // namespace

bool gf_updateSimAddons(const VersionData& webVersion) {
    const bool newer = webVersion > VersionData(MYSIMADDON24_VERSION.current.get());
    bool updated = false;
    if (newer || gf_countDirectoryEntries(gFiles().mySimaddon) == 0) updated = lf_fetchAndUnpack(webVersion);
    std::error_code error;
    fs::remove(kZipName, error);
    if (error) gf_logError(fmt::format("Warning: could not remove downloaded zip: {}", gf_errorText(error)));
    return updated;
}

}  // namespace hcr
