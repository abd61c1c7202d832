#include "sim/session_reset.h"

#include "sim/aircraft.h"
#include "sim/dispatch.h"
#include "sim/drain.h"
#include "sim/object_data.h"
#include "sim/session.h"
#include "sim/sim_client.h"
#include "sim/sim_message.h"
#include "sim/user_aircraft.h"
#include "sim/waiting_list.h"

namespace hcr {

void gf_resetSimSession() {
    gf_resetQueues();
    gf_resetSession();
    gf_resetSimEvents();
    gf_resetPendingObjects();
    gf_resetSelection();
    gf_resetDispatch();
    gf_resetObjectData();
    gf_resetUserAircraft();
    gf_resetSimClient();
}

}  // namespace hcr
