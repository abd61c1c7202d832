// A client library of another version: it lacks SimConnect_AIRemoveObject. None of its functions is ever called.

extern "C" {
int SimConnect_Open() {
    return 0;
}
int SimConnect_Close() {
    return 0;
}
int SimConnect_CallDispatch() {
    return 0;
}
int SimConnect_GetLastSentPacketID() {
    return 0;
}
int SimConnect_AddToDataDefinition() {
    return 0;
}
int SimConnect_RequestDataOnSimObject() {
    return 0;
}
int SimConnect_RequestDataOnSimObjectType() {
    return 0;
}
int SimConnect_SetDataOnSimObject() {
    return 0;
}
int SimConnect_MapClientEventToSimEvent() {
    return 0;
}
int SimConnect_AddClientEventToNotificationGroup() {
    return 0;
}
int SimConnect_SetNotificationGroupPriority() {
    return 0;
}
int SimConnect_SubscribeToSystemEvent() {
    return 0;
}
int SimConnect_TransmitClientEvent() {
    return 0;
}
int SimConnect_AICreateNonATCAircraft() {
    return 0;
}
int SimConnect_AIReleaseControl() {
    return 0;
}
int SimConnect_AISetAircraftFlightPlan() {
    return 0;
}
}
