#include <gmock/gmock.h>

#include "liveries/scan_fixture.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;
using test::Scan;
using testing::ElementsAre;

TEST_F(Scan, TheWalkTakesLinkedFilesButNoLinkedFoldersAndNoNamesThatAreNoText) {
    aircraft("p/a", "B738", "plain", "KLM");
    aircraft("p/b\xFF", "B738", "no text", "KLM");
    fs::create_directory_symlink(community / "p", community / "p/circle");
    fs::create_symlink("itself", community / "p/itself");
    fs::create_symlink("nowhere", community / "p/x");
    aircraft("elsewhere", "B738", "linked", "KLM");
    fs::create_directories(community / "p/linked");
    fs::create_symlink(community / "elsewhere/aircraft.cfg", community / "p/linked/aircraft.cfg");
    EXPECT_TRUE(lf_scanFolders({community / "p"}));
    EXPECT_THAT(titles(), ElementsAre("linked", "plain"));
    EXPECT_TRUE(folder.logged("==> liveries search in " + (community / "p/").string() +
                              " aborted, cause: the name of a folder is no valid text\n"));
}

}  // namespace
}  // namespace hcr
