#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <string>

#include "scenery/install.h"
#include "shell/file_names.h"
#include "shell/messages.h"
#include "shell/parameter_file.h"
#include "shell/run_stop.h"
#include "shell/window_state.h"
#include "support/data_folder.h"

namespace hcr::test {

namespace fs = std::filesystem;

/// A computer with the known folders `config` (roaming) and `data` (local), on which nothing is installed.
struct Install : testing::Test {
    DataFolder folder;
    fs::path roaming = folder.path / "config", local = folder.path / "data";

    Install() {
        gf_saveParameters(true);
        forgetStop();
    }
    ~Install() override {
        forgetStop();
        gWindow.fatalMessage.clear();
        gf_clearMessage();
    }

    static void forgetStop() {
        gStop = false;
        gUserStop = false;
        gExitReason = ExitReason::notYetSet;
        gRestartSeconds = 0;
    }

    fs::path storeCfg() const {
        return local / "Packages/Microsoft.FlightSimulator_8wekyb3d8bbwe/LocalCache/UserCfg.opt";
    }

    /// A package folder of that name with these folders.
    fs::path packages(const std::string& name, std::initializer_list<const char*> folders) const {
        for (const char* child : folders) fs::create_directories(folder.path / name / child);
        return folder.path / name;
    }

    /// A copy of what parameters.xml holds of this parameter.
    static std::string stored(const StringParameter& parameter) {
        const std::string file = readWhole(gFiles().settings);
        const std::string item = "name=\"" + parameter.name + "\" value=\"";
        const std::size_t at = file.find(item);
        if (at == std::string::npos) return "(missing)";
        return file.substr(at + item.size(), file.find('"', at + item.size()) - at - item.size());
    }

    void enter(const std::string& text) const { gf_enterInstallPath(gf_installParameter(), text); }
};

}  // namespace hcr::test
