#pragma once

#include <atomic>
#include <string>
#include <string_view>

#include "platform/sockets.h"
#include "platform/types.h"

namespace hcr {

// The TCP server to which RealTraffic connects. Run thread only; the two atomics are read by the window too.

/// Waits for RealTraffic, and speaks with it; invalid when there is none. Run thread.
extern Socket gListenSocket;
extern Socket gClientSocket;
extern std::atomic<bool> gConnected;     ///< gClientSocket is usable
extern std::atomic<bool> gWaitingForRt;  ///< the waiting step is on; true at each run's start

/// Listens on the port given as text; throws std::runtime_error with the step that failed.
void gf_startServer(const std::string& port);
/// Port on which the server really listens; 0 without one. Any thread.
u16 gf_serverPort();
/// Blocks until a client was accepted (true) or a stop was asked for or the accept failed (false). Clients that have
/// gone again before anybody accepted them are passed over.
bool waitForClient();
/// Whether a client is waited for on our server and none is there.
bool gf_realTrafficAway();
/// Opens the gate for reports, or closes it. While RealTraffic is away it stays closed all the same; when it comes back
/// the last word counts.
void gf_wantReports(bool wanted);
/// True when the whole text was sent. On a failure, or when the peer takes nothing for a second, the connection is
/// closed.
bool sendDataPacket(std::string_view text);
/// One receive; empty on failure, at the end of the connection, on a stop of the run, and after 30 seconds of silence.
std::string gf_receiveFromRt();
/// The connection step of a run; nothing when RealTraffic isn't on this computer.
void lf_waitForRealTraffic();
/// Takes the answer to the version question, which may be any text.
void lf_processRTVersion(const std::string& reply);
/// Sends the user's position, or takes RealTraffic in when it has come back meanwhile. When the send fails all live
/// aircraft leave, and no reports come in until RealTraffic is back; the worker goes on, so that they do leave.
void gf_sendQs121();
/// Sends the simulator's clock, Unix seconds, if connected and the value is at least 1.
void gf_sendQs123(i64 unixSeconds);
/// Sends "exit\r\n" when connected and closes both sockets.
void gf_closeControlChannel();
/// Nobody wants reports, and nobody has gone. Between two runs, with the sockets closed.
void gf_resetControlChannel();

}  // namespace hcr
