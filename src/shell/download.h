#pragma once

#include <curl/curl.h>

#include <filesystem>
#include <memory>
#include <string>

#include "platform/types.h"

namespace hcr {

/// The data server's downloads/ address of this build, ending in "/"; empty for none. The environment variable
/// HALCYRANE_DATA_BASE takes its place where a deployment sets it.
std::string gf_dataBase();

/// Bounds of one download, so that a server that is silent or talks for ever can't hold up a run.
struct DownloadLimits {
    i64 connectMs = 10000;  ///< until the connection stands
    i64 stallSeconds = 20;  ///< below stallBytesPerSecond for so long ends it; at least 1
    i64 stallBytesPerSecond = 100;
    i64 largestBytes = i64{512} * 1048576;  ///< of one file
};
/// Set before a run, if at all; read by the run thread.
extern DownloadLimits gDownloadLimits;

struct CurlCloser {
    void operator()(CURL* handle) const {
        curl_easy_cleanup(handle);
    }
};
using CurlHandle = std::unique_ptr<CURL, CurlCloser>;
/// A new handle, null when the library can't give one.
CurlHandle gf_openCurl();

/// Fetches `url` into `path`, which is replaced whole or left alone. Fetches by http and https, and by file when the
/// data server's address is of that kind; ends early when a stop of the run is asked for. Run thread.
bool gf_download(CURL* handle, const std::string& url, const std::filesystem::path& path, bool binary);
/// Fetches downloads/<major>/<name>.
bool gf_downloadDataFile(const std::string& name, const std::filesystem::path& path);

}  // namespace hcr
