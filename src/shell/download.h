#pragma once

#include <curl/curl.h>

#include <filesystem>
#include <string>

namespace hcr {

/// The data server's downloads/ address of this build, ending in "/"; empty for none. The environment variable
/// HALCYRANE_DATA_BASE takes its place where a deployment sets it.
std::string gf_dataBase();

/// Fetches `url` into `path`, which is replaced whole or left alone. Run thread.
bool gf_download(CURL* handle, const std::string& url, const std::filesystem::path& path, bool binary);
/// Fetches downloads/<major>/<name>.
bool gf_downloadDataFile(const std::string& name, const std::filesystem::path& path);

}  // namespace hcr
