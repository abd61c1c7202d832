#include <fstream>

#include "shell/download.h"
#include "shell/file_names.h"
#include "shell/messages.h"
#include "shell/parameter_file.h"
#include "shell/shell_world.h"
#include "shell/stream_cipher.h"
#include "shell/text_files.h"
#include "shell/window_state.h"
#include "support/environment.h"

namespace fs = std::filesystem;

namespace hcr {
namespace {

constexpr const char* kFull = "the disk is full, make room on it";

/// What is written beside these files goes to a device that has no room. It must not take their place: it reads without
/// an end.
struct FullDisk : test::ShellWorld {
    void SetUp() override {
        ShellWorld::SetUp();
        gf_saveParameters(true);
        for (const fs::path& file : {gFiles().settings, fs::path("report.txt"), fs::path("data.enc")}) {
            fs::path part = file;
            part += ".part";
            fs::create_symlink("/dev/full", part);
        }
    }
    void TearDown() override {
        gf_clearMessage();
        ShellWorld::TearDown();
    }
    static bool isTold() { return gf_currentMessage().find(kFull) != std::string::npos; }
};

TEST_F(FullDisk, IsToldAndTheOldFilesStay) {
    const std::string old = read(gFiles().settings);
    ASSERT_FALSE(gf_storeParameter(WEEK));
    EXPECT_TRUE(isTold()) << gf_currentMessage();
    EXPECT_EQ(read(gFiles().settings), old);
    gf_clearMessage();

    write("report.txt", "old");
    ASSERT_FALSE(gf_writeTextFile("new", "report.txt", true));
    EXPECT_TRUE(isTold());
    EXPECT_EQ(read("report.txt"), "old");
    EXPECT_TRUE(logHas("==> report.txt could not be written: the disk is full"));

    write("data.enc", "old");
    write("served", std::string(50000, 'x'));
    const test::Variable base("HALCYRANE_DATA_BASE", test::fileUrl(".").c_str());
    ASSERT_FALSE(gf_download(gf_openCurl().get(), test::fileUrl("served"), "data.enc", true));
    EXPECT_TRUE(logHas("Download error: 'the disk is full"));
    EXPECT_EQ(read("data.enc"), "old");

    ASSERT_TRUE(gf_streamEncrypt("served", "good.enc"));
    fs::create_symlink("/dev/full", "plain.xml");
    EXPECT_FALSE(gf_streamDecrypt("good.enc", "plain.xml"));
    EXPECT_TRUE(logHas("gf_streamDecrypt exception: Writing failed: the disk is full"));
}

}  // namespace
}  // namespace hcr
