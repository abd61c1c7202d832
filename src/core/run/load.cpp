#include "core/run/load.h"

#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>

#include "core/model/run_state.h"
#include "core/run/outcome.h"
#include "liveries/dbase.h"
#include "liveries/dbase_reader.h"
#include "liveries/livery_tables.h"
#include "parking/catalogue.h"
#include "platform/user_folders.h"
#include "scenery/install.h"
#include "shell/controls.h"
#include "shell/data_update.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameter_file.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/settings.h"
#include "shell/stream_cipher.h"
#include "shell/text.h"
#include "shell/update_options.h"
#include "shell/window_state.h"

namespace hcr {
namespace {

void lf_applyParametersToControls() {
    const ParameterLists& lists = gf_parameterLists();
    for (CheckBox* box : lists.checkBoxes) gf_showInControl(*box);
    for (NumberChoice* choice : lists.numberChoices) gf_showInControl(*choice);
    gf_showInControl(AI_PACKAGE_SELECTOR);
    gf_showInControl(BLOCK_CALLSIGN);
    gf_showInControl(SIM_CHOICE);
    gf_showInControl(DESTINATION);
}

/// The user may have typed the Community folder itself; the program wants the folder that holds it.
void lf_dropCommunityEnding() {
    StringParameter& parameter = gf_installParameter();
    std::string value = parameter.current.get();
    for (const std::string_view ending : {"\\Community", "/Community"}) {
        if (!value.ends_with(ending)) continue;
        value.erase(value.size() - ending.size());
        parameter.current.set(value);
        gf_storeParameter(parameter);
    }
}

void lf_makeFolders() {
    const FileNames& files = gFiles();
    for (const auto& folder :
         {files.input, files.output, files.info, files.airports, files.mySimaddon, files.myThirdparty,
          files.learnedStock, files.learnedSimaddon, files.learnedThirdparty, files.newVersion, files.tblo}) {
        std::filesystem::create_directories(folder);
    }
    gf_removeIfPresent(files.input / "AIG-regcodes0.xml");
    gf_removeIfPresent(files.input / "AIG-regcodes00.xml");
}

void lf_readReferenceData() {
    if (!aircraftTypes.empty()) return;  // kept from the first run of this process
    if (!gf_readDbase()) throw std::runtime_error("reading data files failed!");
}

void lf_showPath(const std::string& path) {
    ALL_INSTALL_PATH.current.set(path);
    gf_showInControl(ALL_INSTALL_PATH);
}

void lf_showInstallPath() {
    StringParameter& parameter = gf_installParameter();
    std::string path = parameter.current.get();
    lf_showPath(path);
    gf_enableControl(ALL_INSTALL_PATH, true);
    if (!path.empty()) return;
    path = gf_pathToUtf8(gf_detectInstallPath());
    if (path.empty()) {
        const std::string advice = fmt::format(
            "{}; the folder is the one that holds Community, and SIM_CHOICE, now \"{}\", names the simulator",
            gf_settingAdvice(parameter.name, "FOLDER"), SIM_CHOICE.current.get());
        throw UserErrorException(150, gf_withAdvice("No install path detected. Type the full path to your Community "
                                                    "folder above, then press Enter",
                                                    advice));
    }
    parameter.current.set(path);
    gf_storeParameter(parameter);
    lf_showPath(path);
}

void lf_lookForRealTraffic() {
    std::error_code ignored;
    gRtOnThisPc = std::filesystem::exists(gf_roamingFolder() / gFiles().insideSystems / "RealTraffic.jar", ignored);
    gf_showMessage(fmt::format("RealTraffic {}detected at this PC", gRtOnThisPc ? "" : "not "), true);
}

bool gUpdateCut = false;  // the update of the run before was stopped, and is made up for

/// False when nothing more is to be loaded.
bool lf_update() {
    if (gRestart && !gUpdateCut) return true;
    const bool goOn = !gf_stopAsked() && gf_updateData();
    gUpdateCut = gf_stopAsked() && !gUserStop;
    return goOn;
}

}  // namespace

void gf_loadSettings() {
    if (updateOptionsWrapped(gRestart)) gf_chooseFoundSimulator();
}

void gf_loadAtStart() {
    gf_loadSettings();
    gf_repaint(Band::whole);
    gf_logFlush();
    lf_applyParametersToControls();
    lf_dropCommunityEnding();
    lf_makeFolders();
    if (!lf_update() || gf_stopAsked()) return;
    gSlot = currentSlot();
    lf_readReferenceData();
    if (gf_stopAsked()) return;
    if (!gf_readAirports()) throw std::runtime_error("reading airports failed!");
    gf_prepareLiveryTables();
    lf_showInstallPath();
    if (gProduction) {
        gExitCode = 0;
        gf_requestStop(ExitReason::userClosed, 0);
        return;
    }
    lf_lookForRealTraffic();
}

void gf_resetLoad() {
    gUpdateCut = false;
}

}  // namespace hcr
