#include "core/run/reset.h"

#include "core/model/park_state.h"
#include "core/model/range.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "core/run/load.h"
#include "core/run/outcome.h"
#include "core/run/snapshot.h"
#include "core/run/tick.h"
#include "core/run/window_commands.h"
#include "core/run/window_messages.h"
#include "engine/conflicts.h"
#include "engine/following.h"
#include "engine/spawn.h"
#include "feed/control_channel.h"
#include "feed/readers.h"
#include "liveries/dbase.h"
#include "liveries/match_memory.h"
#include "liveries/results.h"
#include "parking/catalogue.h"
#include "parking/plan.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/window_state.h"
#include "sim/session_reset.h"

namespace hcr {

bool gf_resetRun() {
    gf_resetReaders();
    gf_resetControlChannel();
    gf_resetSimSession();
    gf_resetParking();
    gf_resetParkState();
    gf_clearTables();
    gf_forgetExchanges();
    gf_resetFollowing();
    gf_resetConflicts();
    gf_resetMatchMemory();
    gf_resetRange();
    gf_resetRunState();
    gf_resetTick();
    gf_resetWindowCommands();
    gf_forgetSnapshot();
    gf_resetWindowState();
    return gf_resetStop();
}

void resetProgram() {
    gf_resetRun();
    gf_clearLiveryTables();
    gf_forgetDbase();
    gf_forgetAirports();
    gf_resetParameters();
    gf_resetLoad();
    gf_forgetWindowState();
    gf_forgetWindowMessages();
    gf_resetOutcome();
    simTick = 0;
}

}  // namespace hcr
