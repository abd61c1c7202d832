#pragma once

#include <atomic>
#include <string>
#include <string_view>

#include "platform/sockets.h"
#include "platform/types.h"

namespace hcr {

// The TCP server to which RealTraffic connects. Run thread only; the two atomics are read by the window too.

extern Socket gListenSocket;
extern Socket gClientSocket;
extern std::atomic<bool> gConnected;     ///< gClientSocket is usable
extern std::atomic<bool> gWaitingForRt;  ///< the waiting step is on; true at each run's start

/// Listens on the port given as text; throws std::runtime_error with the step that failed.
void gf_startServer(const std::string& port);
/// Port on which the server really listens; 0 without one.
u16 gf_serverPort();
/// Blocks until a client was accepted (true) or a stop was asked for or the accept failed (false).
bool waitForClient();
bool sendDataPacket(std::string_view text);
std::string gf_receiveFromRt();
void lf_waitForRealTraffic();
void lf_processRTVersion(const std::string& reply);
void gf_sendQs121();
void gf_sendQs123(i64 unixSeconds);
/// Sends "exit\r\n" when connected and closes both sockets.
void gf_closeControlChannel();

}  // namespace hcr
