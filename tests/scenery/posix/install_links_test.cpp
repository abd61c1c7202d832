#include "scenery/install_fixture.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;
using test::Install;
using test::writeWhole;

TEST_F(Install, APathThatCannotBeLookedAtIsNoAbsentPath) {
    fs::create_symlink("circle", folder.path / "circle");
    writeWhole(storeCfg(), "InstalledPackagesPath \"" + (folder.path / "circle").string() + "\"\n");
    EXPECT_THROW(gf_installedPackagesPath(), fs::filesystem_error);
    fs::remove(storeCfg());
    fs::create_symlink("UserCfg.opt", storeCfg());
    EXPECT_THROW(gf_findUserCfg(), fs::filesystem_error);
    enter((folder.path / "circle").string());
    EXPECT_TRUE(gf_currentMessage().starts_with("Cannot access install path '" + (folder.path / "circle").string()));
    EXPECT_FALSE(gStop);
}

}  // namespace
}  // namespace hcr
