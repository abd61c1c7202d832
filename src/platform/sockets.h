#pragma once

#include <string>
#include <string_view>

#include "platform/types.h"

namespace hcr {

/// A socket of the system; invalid until one of the functions below made it.
struct Socket {
    i64 handle = -1;
    bool valid() const { return handle >= 0; }
};

/// Result of a socket call: the count of bytes, or -1 with `error` set. Error numbers are those of Winsock on every
/// system (10048 = address in use, ...); gf_winsockMessage gives their text.
struct SocketResult {
    i64 bytes = 0;
    i32 error = 0;
};

// All functions may be called from any thread; one socket belongs to one thread.

/// Starts and ends the socket library (version 2.2 on Windows, nothing elsewhere). Returns an error number, 0 = fine.
i32 gf_startSockets();
void gf_endSockets();

/// IPv4 datagram or stream socket; `error` receives the number on failure.
Socket gf_openUdp(i32& error);
Socket gf_openTcp(i32& error);
/// Binds to 127.0.0.1 or to any address. A port of 0 lets the system choose. Returns an error number, 0 = fine.
i32 gf_bindSocket(Socket s, u16 port, bool loopbackOnly);
/// The port that a bound socket really has.
u16 gf_boundPort(Socket s);
/// Asks for a receive buffer of this many bytes; the system may give less.
void gf_setReceiveBuffer(Socket s, i32 bytes);
/// Asks the system to count datagrams that it had to throw away on this socket, where it can.
void gf_countDrops(Socket s);
/// Lets a port be bound at once although former connections linger on it. Returns an error number, 0 = fine.
i32 gf_setReuseAddress(Socket s);
/// Sends small pieces at once. Returns an error number, 0 = fine.
i32 gf_setNoDelay(Socket s);
/// Whether calls wait. Returns an error number, 0 = fine.
i32 gf_setBlocking(Socket s, bool blocking);
/// Lets others connect. Returns an error number, 0 = fine.
i32 gf_listen(Socket s);
/// True when the socket can be read (or accepted from) within the time, scaled by gf_clockFactor. `error` as above.
bool gf_waitReadable(Socket s, i64 milliseconds, i32& error);
/// True when the socket can be written within the time.
bool gf_waitWritable(Socket s, i64 milliseconds, i32& error);
/// The next connection; invalid and `error` set when there is none.
Socket gf_accept(Socket listener, i32& error);
/// Connects to an IPv4 address or name; 0 = fine.
i32 gf_connect(Socket s, const std::string& host, u16 port);
/// Sends what fits into the system's buffer, which may be less than all.
SocketResult gf_send(Socket s, std::string_view data);
/// Sends one datagram to an IPv4 address.
SocketResult gf_sendTo(Socket s, std::string_view data, const std::string& ipv4, u16 port);
/// Up to `size` bytes; 0 when the other side has closed the connection.
SocketResult gf_receive(Socket s, char* buffer, i64 size);
/// Like gf_receive, but what was read stays there for the next receive.
SocketResult gf_peek(Socket s, char* buffer, i64 size);
/// One datagram. `dropped`, when not null, receives the running count of datagrams that the system threw away on this
/// socket; it is left alone where the system doesn't tell.
SocketResult gf_receiveDatagram(Socket s, char* buffer, i64 size, u32* dropped = nullptr);
/// Closes it and makes it invalid; does nothing to an invalid one.
void gf_closeSocket(Socket& s);

/// Resolves a port given as text or service name, for a passive IPv4 address; returns an error number, 0 = fine.
i32 gf_resolvePort(const std::string& text, u16& port);

}  // namespace hcr
