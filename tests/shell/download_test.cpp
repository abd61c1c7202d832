#include "shell/download.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "shell/http_server.h"
#include "shell/run_stop.h"
#include "shell/shell_world.h"
#include "shell/window_state.h"
#include "support/environment.h"

namespace hcr {
namespace {

using test::fileUrl;
using test::HttpServer;

struct Download : test::ShellWorld {
    void SetUp() override {
        ShellWorld::SetUp();
        gDownloadLimits = {};
        test::setVariable("no_proxy", "*");
        write("target", "old");
        write("local/file", "from the disc");
        useFileBase(false);
    }

    void TearDown() override {
        gDownloadLimits = {};
        gStop = false;
        test::setVariable("HALCYRANE_DATA_BASE", nullptr);
        test::setVariable("no_proxy", nullptr);
        ShellWorld::TearDown();
    }

    void useFileBase(bool file) const {
        test::setVariable("HALCYRANE_DATA_BASE", file ? fileUrl("server").c_str() : "http://127.0.0.1:1/downloads");
    }

    /// Fetches into `target`; after a failure the old file and nothing else must be there.
    static bool fetch(const std::string& url) {
        const CurlHandle handle = gf_openCurl();
        const bool good = gf_download(handle.get(), url, "target", true);
        EXPECT_FALSE(std::filesystem::exists("target.part"));
        if (!good) {
            EXPECT_EQ(read("target"), "old");
        }
        return good;
    }
};

TEST_F(Download, TakesTheFilesPlaceWhenItIsWhole) {
    const std::string body = std::string(300000, 'x') + '\0' + "\r\nend";
    const HttpServer server({{"/file", HttpServer::answer("200 OK", "", body)}});
    EXPECT_TRUE(fetch(server.url("/file")));
    EXPECT_EQ(read("target"), body);
}

TEST_F(Download, AnErrorPageAndABrokenTransferKeepTheOldFile) {
    const HttpServer server({{"/short", "HTTP/1.1 200 OK\r\nContent-Length: 50\r\n\r\nonly this"},
                             {"/nonsense", "no protocol of mine\r\n\r\n"}});
    EXPECT_FALSE(fetch(server.url("/missing")));
    EXPECT_TRUE(logHas("Download error: 'HTTP response code said error' for " + server.url("/missing")));
    EXPECT_FALSE(fetch(server.url("/short")));
    EXPECT_FALSE(fetch(server.url("/nonsense")));
    EXPECT_FALSE(fetch("http://127.0.0.1:1/nobody-listens"));
}

TEST_F(Download, RedirectsStayOnTheWeb) {
    useFileBase(true);
    const HttpServer server({
        {"/moved", HttpServer::answer("302 Found", "Location: /file\r\n", "")},
        {"/file", HttpServer::answer("200 OK", "", "the file")},
        {"/to-disc", HttpServer::answer("302 Found", "Location: " + fileUrl("local/file") + "\r\n", "")},
        {"/circle", HttpServer::answer("302 Found", "Location: /circle\r\n", "")},
    });
    EXPECT_FALSE(fetch(server.url("/to-disc")));
    EXPECT_FALSE(fetch(server.url("/circle")));
    EXPECT_TRUE(fetch(server.url("/moved")));
    EXPECT_EQ(read("target"), "the file");
}

TEST_F(Download, AddressesOfFilesCountOnlyWhereTheDataServerIsAFolder) {
    EXPECT_FALSE(fetch(fileUrl("local/file")));
    EXPECT_FALSE(fetch("ftp://127.0.0.1/file"));
    EXPECT_FALSE(fetch("target"));
    EXPECT_FALSE(fetch(""));
    useFileBase(true);
    EXPECT_FALSE(fetch(fileUrl("local/none")));
    EXPECT_TRUE(fetch(fileUrl("local/file")));
    EXPECT_EQ(read("target"), "from the disc");
}

TEST_F(Download, ASilentServerAndAnEndlessFileAreGivenUp) {
    const HttpServer server({{"/stall", HttpServer::stall()},
                             {"/slow", HttpServer::stall()},
                             {"/large", HttpServer::answer("200 OK", "", std::string(5000, 'x'))}});
    gDownloadLimits.stallSeconds = 1;
    EXPECT_FALSE(fetch(server.url("/stall")));
    EXPECT_TRUE(logHas("Download error: 'Timeout was reached'"));
    gDownloadLimits.stallSeconds = 20;
    gDownloadLimits.binary.longestMs = 50;
    std::atomic<bool> over{false};
    std::thread user([&over] {  // loses patience with a bound that isn't kept
        for (int i = 0; i < 200 && !over; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(50));
        gStop = !over;
    });
    EXPECT_FALSE(fetch(server.url("/slow")));
    over = true;
    user.join();
    EXPECT_TRUE(logHas("Download error: 'Timeout was reached' for " + server.url("/slow")));
    gDownloadLimits.binary = {4999, 60000};
    EXPECT_FALSE(fetch(server.url("/large")));
    EXPECT_TRUE(logHas("Download error: 'more than 4999 bytes' for "));
    gDownloadLimits.binary.largestBytes = 5000;
    EXPECT_TRUE(fetch(server.url("/large")));
}

TEST_F(Download, WhatWasFetchedIsLookedAtFirstAndItsProgressIsShown) {
    const HttpServer server({{"/file", HttpServer::answer("200 OK", "", std::string(4096, 'x'))}});
    const CurlHandle handle = gf_openCurl();
    std::string shown, fault = "not the one";
    const DownloadCheck check = [&](const std::filesystem::path& fetched) {
        EXPECT_EQ(read(fetched).size(), 4096U);
        EXPECT_EQ(read("target"), "old");
        shown = gf_currentMessage();
        return fault;
    };
    EXPECT_FALSE(gf_download(handle.get(), server.url("/file"), "target", true, check));
    EXPECT_EQ(shown, "Downloading target: 100 % of 4 kB");
    EXPECT_EQ(gf_currentMessage(), "");
    EXPECT_TRUE(logHas("Download error: 'not the one' for "));
    EXPECT_EQ(read("target"), "old");
    EXPECT_FALSE(std::filesystem::exists("target.part"));
    fault.clear();
    EXPECT_TRUE(gf_download(handle.get(), server.url("/file"), "target", true, check));
    EXPECT_EQ(read("target").size(), 4096U);
}

TEST_F(Download, AStopOfTheRunEndsAWait) {
    const HttpServer server({{"/stall", HttpServer::stall()}});
    std::thread user([] {
        while (gf_currentMessage().empty()) std::this_thread::yield();
        gStop = true;
    });
    EXPECT_FALSE(fetch(server.url("/stall")));
    user.join();
    EXPECT_TRUE(logHas("Download error: 'Operation was aborted by an application callback'"));
}

TEST_F(Download, ATargetThatCantBeWrittenIsNamed) {
    const CurlHandle handle = gf_openCurl();
    EXPECT_FALSE(gf_download(nullptr, fileUrl("local/file"), "other", true));
    EXPECT_FALSE(gf_download(handle.get(), fileUrl("local/file"), "no/folder/other", true));
    EXPECT_TRUE(logHas("Could not open output file: no/folder/other\n"));
}

}  // namespace
}  // namespace hcr
