#include "sim/port/sandbox/calls.h"

#include "sim/port/sandbox/calls_data.h"
#include "sim/port/sandbox/calls_events.h"
#include "sim/port/sandbox/calls_objects.h"
#include "sim/port/sandbox/calls_session.h"

namespace hcr {

SimPort gf_sandboxPort() {
    SimPort port;
    port.SimConnect_Open = lf_open;
    port.SimConnect_Close = lf_close;
    port.SimConnect_CallDispatch = lf_callDispatch;
    port.SimConnect_GetLastSentPacketID = lf_getLastSentPacketId;
    port.SimConnect_AddToDataDefinition = lf_addToDataDefinition;
    port.SimConnect_RequestDataOnSimObject = lf_requestData;
    port.SimConnect_RequestDataOnSimObjectType = lf_requestDataByType;
    port.SimConnect_SetDataOnSimObject = lf_setData;
    port.SimConnect_MapClientEventToSimEvent = lf_mapClientEvent;
    port.SimConnect_AddClientEventToNotificationGroup = lf_addClientEventToGroup;
    port.SimConnect_SetNotificationGroupPriority = lf_setGroupPriority;
    port.SimConnect_SubscribeToSystemEvent = lf_subscribe;
    port.SimConnect_TransmitClientEvent = lf_transmit;
    port.SimConnect_AICreateNonATCAircraft = lf_createAircraft;
    port.SimConnect_AIReleaseControl = lf_releaseControl;
    port.SimConnect_AIRemoveObject = lf_removeObject;
    port.SimConnect_AISetAircraftFlightPlan = lf_setFlightPlan;
    return port;
}

}  // namespace hcr
