#include "shell/download.h"

#include <fmt/format.h>

#include <cerrno>
#include <fstream>
#include <mutex>

#include "platform/clock.h"
#include "platform/environment.h"
#include "shell/generations.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/run_stop.h"
#include "shell/stream_cipher.h"
#include "shell/text.h"
#include "shell/version.h"

namespace hcr {
namespace {

constexpr const char* kUserAgent = "Halcy";
constexpr long kMostRedirects = 5;
constexpr int kPollMs = 50;  // after which a stop is noticed
constexpr i64 kShowEveryUs = 1'000'000;
constexpr const char* kWebProtocols = "http,https";
constexpr const char* kWebAndFileProtocols = "http,https,file";

/// Where the bytes of one download go.
struct Sink {
    std::ofstream file;
    i64 bytes = 0;
    std::ios::openmode mode = std::ios::out;
    DownloadBounds bounds{};
    std::string name;  ///< for the message line, empty for a file too small to be shown
    std::string shown;
    i64 nextShowUs = 0;
    std::error_code writeFault;
};

std::size_t lf_write(char* data, std::size_t, std::size_t size, void* target) {
    Sink& sink = *static_cast<Sink*>(target);
    sink.bytes += static_cast<i64>(size);
    if (sink.bytes > sink.bounds.largestBytes) return 0;
    errno = 0;
    sink.file.write(data, static_cast<std::streamsize>(size));
    if (sink.file) return size;
    sink.writeFault = {errno, std::generic_category()};  // the stream itself says only that it failed
    return 0;
}

std::string lf_progressText(const Sink& sink, curl_off_t expected) {
    if (sink.bytes == 0) return fmt::format("Downloading {} ...", sink.name);
    if (expected <= 0) return fmt::format("Downloading {}: {} kB", sink.name, sink.bytes / 1024);
    return fmt::format("Downloading {}: {} % of {} kB", sink.name, sink.bytes * 100 / expected, expected / 1024);
}

/// Not more than a line a second, which is also how often a terminal may get one.
void lf_showProgress(CURL* handle, Sink& sink, bool atEnd) {
    if (sink.name.empty() || (!atEnd && gf_steadyUs() < sink.nextShowUs)) return;
    curl_off_t expected = 0;
    curl_easy_getinfo(handle, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &expected);
    std::string text = lf_progressText(sink, expected);
    if (text == sink.shown) return;
    sink.shown = std::move(text);
    sink.nextShowUs = gf_steadyUs() + kShowEveryUs;
    gf_showMessage(sink.shown, false);
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

void lf_setOptions(CURL* handle, const std::string& url, Sink& sink) {
    curl_easy_reset(handle);
    curl_easy_setopt(handle, CURLOPT_URL, lf_withoutBlanks(url).c_str());
    curl_easy_setopt(handle, CURLOPT_USERAGENT, kUserAgent);
    curl_easy_setopt(handle, CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);  // a name that is being looked up may take as long as it likes
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, lf_baseIsFile() ? kWebAndFileProtocols : kWebProtocols);
    curl_easy_setopt(handle, CURLOPT_REDIR_PROTOCOLS_STR, kWebProtocols);
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(handle, CURLOPT_MAXREDIRS, kMostRedirects);
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(gDownloadLimits.connectMs));
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(sink.bounds.longestMs));
    curl_easy_setopt(handle, CURLOPT_LOW_SPEED_TIME, static_cast<long>(gDownloadLimits.stallSeconds));
    curl_easy_setopt(handle, CURLOPT_LOW_SPEED_LIMIT, static_cast<long>(gDownloadLimits.stallBytesPerSecond));
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, lf_write);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &sink);
}

struct MultiCloser {
    void operator()(CURLM* transfers) const { curl_multi_cleanup(transfers); }
};

CURLcode lf_resultOf(CURLM* transfers) {
    int waiting = 0;
    const CURLMsg* message = curl_multi_info_read(transfers, &waiting);
    return message != nullptr && message->msg == CURLMSG_DONE ? message->data.result : CURLE_RECV_ERROR;
}

/// In small steps: the library's own loop looks up once a second.
CURLcode lf_perform(CURL* handle, CURLM* transfers, Sink& sink) {
    int running = 1;
    while (running != 0) {
        if (gf_stopAsked()) return CURLE_ABORTED_BY_CALLBACK;
        if (curl_multi_perform(transfers, &running) != CURLM_OK) return CURLE_RECV_ERROR;
        lf_showProgress(handle, sink, running == 0);
        if (running != 0) curl_multi_poll(transfers, nullptr, 0, kPollMs, nullptr);
    }
    return lf_resultOf(transfers);
}

CURLcode lf_fetch(CURL* handle, const std::string& url, Sink& sink) {
    if (!lf_hasProtocol(url)) return CURLE_URL_MALFORMAT;
    const std::unique_ptr<CURLM, MultiCloser> transfers(curl_multi_init());
    lf_setOptions(handle, url, sink);
    if (curl_multi_add_handle(transfers.get(), handle) != CURLM_OK) return CURLE_FAILED_INIT;
    const CURLcode result = lf_perform(handle, transfers.get(), sink);
    curl_multi_remove_handle(transfers.get(), handle);
    errno = 0;
    sink.file.close();
    if (result != CURLE_OK || sink.file) return result;
    sink.writeFault = {errno, std::generic_category()};
    return CURLE_WRITE_ERROR;
}

std::string lf_failureText(CURLcode result, const Sink& sink) {
    if (sink.bytes > sink.bounds.largestBytes) return fmt::format("more than {} bytes", sink.bounds.largestBytes);
    if (sink.writeFault) return gf_writeFaultText(sink.writeFault);
    return curl_easy_strerror(result);
}

/// True when what was fetched is good. Tells what is wrong.
bool lf_isGood(const std::string& url, const DownloadCheck& check, const std::filesystem::path& fetched) {
    const std::string fault = check ? check(fetched) : "";
    if (fault.empty()) return true;
    gf_log(fmt::format("Download error: '{}' for {}", fault, url));
    return false;
}

/// Into the open file of the sink. Tells what is wrong.
bool lf_fetchGood(CURL* handle, const std::string& url, const std::filesystem::path& fetched, Sink& sink,
                  const DownloadCheck& check) {
    const CURLcode result = lf_fetch(handle, url, sink);
    if (result == CURLE_OK) return lf_isGood(url, check, fetched);
    gf_log(fmt::format("Download error: '{}' for {}", lf_failureText(result, sink), url));
    sink.file.close();
    return false;
}

bool lf_fetchAndReplace(CURL* handle, const std::string& url, const std::filesystem::path& path, Sink& sink,
                        const DownloadCheck& check) {
    bool isGood = false;
    const auto fetch = [&](const std::filesystem::path& file, std::error_code& fault) {
        sink.file.open(file, sink.mode);
        if (sink.file) {
            isGood = lf_fetchGood(handle, url, file, sink, check);
        } else {
            gf_log(fmt::format("Could not open output file: {}", gf_pathToUtf8(path)));
        }
        if (!isGood) fault = std::make_error_code(std::errc::operation_canceled);
    };
    std::error_code error;
    if (gf_makeInPlace(path, fetch, error)) return true;
    if (isGood) gf_tellWriteFault(path, error);
    return false;
}

void lf_tellWrongFile(const std::string& url, const std::filesystem::path& path, const std::string& fault) {
    const std::string text =
        fmt::format("What {} sends isn't a whole data file ({}), {} and its version stay as they are", url, fault,
                    gf_pathToUtf8(path));
    gf_logError(text + "; a login page of a network, a virus scanner or a broken transfer may be the reason");
    gf_showMessage(text, false);
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

bool gf_download(CURL* handle, const std::string& url, const std::filesystem::path& path, bool binary,
                 const DownloadCheck& check) {
    if (handle == nullptr) return false;
    try {
        Sink sink;
        sink.bounds = binary ? gDownloadLimits.binary : gDownloadLimits.text;
        if (binary) {
            sink.mode |= std::ios::binary;
            sink.name = gf_pathToUtf8(path.filename());
        }
        const bool good = lf_fetchAndReplace(handle, url, path, sink, check);
        if (!sink.shown.empty()) gf_clearMessage();
        return good;
    } catch (const std::exception& e) {
        gf_log(fmt::format("Downloader exception: '{}', {} => {}", e.what(), url, gf_pathToUtf8(path)));
    }
    return false;
}

bool gf_downloadDataFile(const std::string& name, const std::filesystem::path& path) {
    const std::string url = fmt::format("{}{}/{}", gf_dataBase(), gf_programVersion().major, name);
    const CurlHandle handle = gf_openCurl();
    std::string fault;
    const bool good = gf_download(handle.get(), url, path, true, [&fault](const std::filesystem::path& fetched) {
        fault = gf_dataFileFault(fetched);
        return fault;
    });
    if (good) {
        gf_log(fmt::format("Downloaded '{}' to '{}'", url, gf_pathToUtf8(path)));
        return true;
    }
    gf_logError(fmt::format("Downloading '{}' failed !", url));
    if (!fault.empty() && !gf_stopAsked()) lf_tellWrongFile(url, path, fault);
    return false;
}

}  // namespace hcr
