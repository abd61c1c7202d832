#include "shell/download.h"

#include <fmt/format.h>

#include <fstream>
#include <mutex>

#include "platform/environment.h"
#include "shell/generations.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/stream_cipher.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr const char* kUserAgent = "Halcy";
constexpr long kMostRedirects = 5;
constexpr const char* kWebProtocols = "http,https";
constexpr const char* kWebAndFileProtocols = "http,https,file";

/// Where the bytes of one download go.
struct Sink {
    std::ofstream file;
    i64 bytes = 0;
};

std::size_t lf_write(char* data, std::size_t, std::size_t size, void* target) {
    Sink& sink = *static_cast<Sink*>(target);
    sink.bytes += static_cast<i64>(size);
    if (sink.bytes > gDownloadLimits.largestBytes) return 0;
    sink.file.write(data, static_cast<std::streamsize>(size));
    return sink.file ? size : 0;
}

int lf_goOnUnlessStopped(void*, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return gf_stopAsked() ? 1 : 0;
}

/// An address is what we say, not what the library guesses from a bare name.
bool lf_hasProtocol(const std::string& url) {
    return url.find(':') != std::string::npos;
}

/// A folder's name may hold blanks, an address may not.
std::string lf_withoutBlanks(const std::string& url) {
    std::string address;
    for (const char c : url) c == ' ' ? address += "%20" : address += c;
    return address;
}

bool lf_baseIsFile() {
    return gf_dataBase().starts_with("file:");
}

CURLcode lf_fetch(CURL* handle, const std::string& url, Sink& sink) {
    if (!lf_hasProtocol(url)) return CURLE_URL_MALFORMAT;
    curl_easy_reset(handle);
    curl_easy_setopt(handle, CURLOPT_URL, lf_withoutBlanks(url).c_str());
    curl_easy_setopt(handle, CURLOPT_USERAGENT, kUserAgent);
    curl_easy_setopt(handle, CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, lf_baseIsFile() ? kWebAndFileProtocols : kWebProtocols);
    curl_easy_setopt(handle, CURLOPT_REDIR_PROTOCOLS_STR, kWebProtocols);
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(handle, CURLOPT_MAXREDIRS, kMostRedirects);
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(gDownloadLimits.connectMs));
    curl_easy_setopt(handle, CURLOPT_LOW_SPEED_TIME, static_cast<long>(gDownloadLimits.stallSeconds));
    curl_easy_setopt(handle, CURLOPT_LOW_SPEED_LIMIT, static_cast<long>(gDownloadLimits.stallBytesPerSecond));
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, lf_write);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &sink);
    curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(handle, CURLOPT_XFERINFOFUNCTION, lf_goOnUnlessStopped);
    const CURLcode result = curl_easy_perform(handle);
    sink.file.close();
    return result == CURLE_OK && !sink.file ? CURLE_WRITE_ERROR : result;
}

}  // namespace

DownloadLimits gDownloadLimits;

std::string gf_dataBase() {
    std::string base = gf_environment("HALCYRANE_DATA_BASE").value_or(HALCYRANE_DATA_BASE);
    if (!base.empty() && base.back() != '/') base += '/';
    return base;
}

CurlHandle gf_openCurl() {
    static std::once_flag started;
    std::call_once(started, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
    return CurlHandle(curl_easy_init());
}

bool gf_download(CURL* handle, const std::string& url, const std::filesystem::path& path, bool binary) {
    if (handle == nullptr) return false;
    const std::string shownPath = gf_pathToUtf8(path);
    try {
        std::filesystem::path temporary = path;
        temporary += ".part";
        Sink sink;
        sink.file.open(temporary, binary ? std::ios::out | std::ios::binary : std::ios::out);
        if (!sink.file) {
            gf_log(fmt::format("Could not open output file: {}", shownPath));
            return false;
        }
        const CURLcode result = lf_fetch(handle, url, sink);
        if (result == CURLE_OK) return gf_replaceFile(temporary, path);
        gf_log(fmt::format("Download error: '{}' for {}", curl_easy_strerror(result), url));
        sink.file.close();
        gf_removeIfPresent(temporary);
    } catch (const std::exception& e) {
        gf_log(fmt::format("Downloader exception: '{}', {} => {}", e.what(), url, shownPath));
    }
    return false;
}

bool gf_downloadDataFile(const std::string& name, const std::filesystem::path& path) {
    const std::string url = fmt::format("{}{}/{}", gf_dataBase(), gf_programVersion().major, name);
    const CurlHandle handle = gf_openCurl();
    const bool good = gf_download(handle.get(), url, path, true);
    if (good) {
        gf_log(fmt::format("Downloaded '{}' to '{}'", url, gf_pathToUtf8(path)));
    } else {
        gf_logError(fmt::format("Downloading '{}' failed !", url));
    }
    return good;
}

}  // namespace hcr
