#pragma once

#include <curl/curl.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/types.h"

namespace hcr {

/// The data server's downloads/ address of this build, ending in "/"; empty for none. The environment variable
/// HALCYRANE_DATA_BASE takes its place where a deployment sets it.
std::string gf_dataBase();

/// What one download may cost in all.
struct DownloadBounds {
    i64 largestBytes;
    i64 longestMs;
};

/// Bounds of downloads, so that a server that is silent or talks for ever can't hold up a run.
struct DownloadLimits {
    i64 connectMs = 10000;  ///< until the connection stands
    i64 stallSeconds = 20;  ///< below stallBytesPerSecond for so long ends it; at least 1
    i64 stallBytesPerSecond = 100;
    DownloadBounds text{1048576, 30 * 1000};                ///< of the version list
    DownloadBounds binary{i64{256} * 1048576, 600 * 1000};  ///< of a data file
};
/// Set before a run, if at all; read by the run thread.
extern DownloadLimits gDownloadLimits;

/// Lets a handle end with its owner.
struct CurlCloser {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
using CurlHandle = std::unique_ptr<CURL, CurlCloser>;
/// A new handle, null when the library can't give one.
CurlHandle gf_openCurl();

/// Looks at a fetched file before it takes its place: what is wrong with it, empty when it is good.
using DownloadCheck = std::function<std::string(const std::filesystem::path& fetched)>;

/// Fetches `url` into `path`, which is replaced whole or left alone. Fetches by http and https, and by file when the
/// data server's address is of that kind; within a fifth of a second it ends when a stop of the run is asked for. How
/// far a binary file is stands in the message line. Run thread.
bool gf_download(CURL* handle, const std::string& url, const std::filesystem::path& path, bool binary,
                 const DownloadCheck& check = {});
/// Fetches downloads/<major>/<name>; only a file that can be deciphered to its end takes the old one's place.
bool gf_downloadDataFile(const std::string& name, const std::filesystem::path& path);

}  // namespace hcr
