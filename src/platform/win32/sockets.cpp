#include "platform/sockets.h"

#include <climits>
#include <cstring>

#include "platform/socket_source.h"
#include "platform/win32/windows_header.h"

namespace hcr {
namespace {

constexpr WORD kLibraryVersion = MAKEWORD(2, 2);
constexpr DWORD kUdpConnectionReset = _WSAIOW(IOC_VENDOR, 12);  // SIO_UDP_CONNRESET, which not every header has

SOCKET lf_socket(Socket s) {
    return s.valid() ? static_cast<SOCKET>(s.handle) : INVALID_SOCKET;
}

i32 lf_errorOf(int result) {
    return result == 0 ? 0 : WSAGetLastError();
}

SocketResult lf_result(int bytes) {
    return bytes >= 0 ? SocketResult{bytes, 0} : SocketResult{-1, WSAGetLastError()};
}

int lf_size(std::size_t size) {
    return static_cast<int>(size < INT_MAX ? size : INT_MAX);
}

// The library takes the value of an option by a pointer to its bytes.
template <typename Value>
i32 lf_setOption(Socket s, int level, int option, const Value& value) {
    return lf_errorOf(setsockopt(lf_socket(s), level, option, reinterpret_cast<const char*>(&value), sizeof value));
}

sockaddr_in lf_address(ULONG ipv4NetworkOrder, u16 port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ipv4NetworkOrder;
    address.sin_port = htons(port);
    return address;
}

// The calls take every kind of address by a pointer to its common head.
const sockaddr* lf_head(const sockaddr_in& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

Socket lf_open(int type, int protocol, i32& error) {
    const SOCKET handle = socket(AF_INET, type, protocol);
    Socket s;
    if (handle != INVALID_SOCKET) s.handle = static_cast<i64>(handle);
    error = s.valid() ? 0 : WSAGetLastError();
    return s;
}

enum class Wish { readable, writable };

bool lf_wait(Socket s, Wish wish, i64 milliseconds, i32& error) {
    error = s.valid() ? 0 : WSAENOTSOCK;
    if (error != 0) return false;
    const i32 wallMs = gf_wallMilliseconds(milliseconds);
    timeval limit{wallMs / 1'000, wallMs % 1'000 * 1'000};
    fd_set wished{}, broken{};
    wished.fd_count = broken.fd_count = 1;
    wished.fd_array[0] = broken.fd_array[0] = lf_socket(s);
    fd_set* reading = wish == Wish::readable ? &wished : nullptr;
    fd_set* writing = wish == Wish::writable ? &wished : nullptr;
    // A failed connect shows in the third set only; the call that follows tells what is wrong.
    fd_set* failing = wish == Wish::writable ? &broken : nullptr;
    const int ready = select(0, reading, writing, failing, &limit);
    if (ready == SOCKET_ERROR) error = WSAGetLastError();
    return ready > 0;
}

/// First IPv4 address of a name, or of this computer's service; 0 = fine.
i32 lf_resolve(const char* host, const char* service, int flags, sockaddr_in& address) {
    addrinfo wish{};
    wish.ai_family = AF_INET;
    wish.ai_socktype = SOCK_STREAM;
    wish.ai_protocol = IPPROTO_TCP;
    wish.ai_flags = flags;
    addrinfo* found = nullptr;
    if (const int code = getaddrinfo(host, service, &wish, &found); code != 0) return code;
    const bool isWhole = found != nullptr && found->ai_addrlen >= sizeof address;
    if (isWhole) std::memcpy(&address, found->ai_addr, sizeof address);
    freeaddrinfo(found);
    return isWhole ? 0 : WSAHOST_NOT_FOUND;
}

}  // namespace

i32 gf_startSockets() {
    WSADATA data{};
    return WSAStartup(kLibraryVersion, &data);
}

void gf_endSockets() {
    WSACleanup();
}

Socket gf_openUdp(i32& error) {
    const Socket s = lf_open(SOCK_DGRAM, IPPROTO_UDP, error);
    if (!s.valid()) return s;
    // Otherwise the port would be ours beside a program that has it for one address only, and each would get some.
    lf_setOption(s, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, BOOL{TRUE});
    // A datagram that nobody took must not come back as an error of the next receive.
    BOOL report = FALSE;
    DWORD unused = 0;
    WSAIoctl(lf_socket(s), kUdpConnectionReset, &report, sizeof report, nullptr, 0, &unused, nullptr, nullptr);
    return s;
}

Socket gf_openTcp(i32& error) {
    return lf_open(SOCK_STREAM, IPPROTO_TCP, error);
}

i32 gf_bindSocket(Socket s, u16 port, bool loopbackOnly) {
    const sockaddr_in address = lf_address(htonl(loopbackOnly ? INADDR_LOOPBACK : INADDR_ANY), port);
    return lf_errorOf(bind(lf_socket(s), lf_head(address), sizeof address));
}

u16 gf_boundPort(Socket s) {
    sockaddr_in address{};
    int size = sizeof address;
    if (getsockname(lf_socket(s), reinterpret_cast<sockaddr*>(&address), &size) != 0) return 0;
    return ntohs(address.sin_port);
}

void gf_setReceiveBuffer(Socket s, i32 bytes) {
    lf_setOption(s, SOL_SOCKET, SO_RCVBUF, bytes);
}

void gf_countDrops(Socket) {}

i32 gf_setReuseAddress(Socket s) {
    // A port whose former connections linger is free here anyway; SO_REUSEADDR would let two programs share one that is
    // in use, and nobody would be told.
    return s.valid() ? 0 : WSAENOTSOCK;
}

i32 gf_setNoDelay(Socket s) {
    return lf_setOption(s, IPPROTO_TCP, TCP_NODELAY, BOOL{TRUE});
}

i32 gf_setBlocking(Socket s, bool blocking) {
    u_long nonBlocking = blocking ? 0 : 1;
    return lf_errorOf(ioctlsocket(lf_socket(s), static_cast<long>(FIONBIO), &nonBlocking));
}

i32 gf_listen(Socket s) {
    return lf_errorOf(listen(lf_socket(s), SOMAXCONN));
}

bool gf_waitReadable(Socket s, i64 milliseconds, i32& error) {
    return lf_wait(s, Wish::readable, milliseconds, error);
}

bool gf_waitWritable(Socket s, i64 milliseconds, i32& error) {
    return lf_wait(s, Wish::writable, milliseconds, error);
}

Socket gf_accept(Socket listener, i32& error) {
    const SOCKET handle = accept(lf_socket(listener), nullptr, nullptr);
    error = handle == INVALID_SOCKET ? WSAGetLastError() : 0;
    return error == 0 ? Socket{static_cast<i64>(handle)} : Socket{};
}

i32 gf_connect(Socket s, const std::string& host, u16 port) {
    sockaddr_in address{};
    if (const i32 error = lf_resolve(host.c_str(), nullptr, 0, address); error != 0) return error;
    address.sin_port = htons(port);
    return lf_errorOf(connect(lf_socket(s), lf_head(address), sizeof address));
}

SocketResult gf_send(Socket s, std::string_view data) {
    return lf_result(send(lf_socket(s), data.data(), lf_size(data.size()), 0));
}

SocketResult gf_sendTo(Socket s, std::string_view data, const std::string& ipv4, u16 port) {
    in_addr target{};
    if (inet_pton(AF_INET, ipv4.c_str(), &target) != 1) return {-1, WSAEINVAL};
    const sockaddr_in address = lf_address(target.s_addr, port);
    return lf_result(sendto(lf_socket(s), data.data(), lf_size(data.size()), 0, lf_head(address), sizeof address));
}

SocketResult gf_receive(Socket s, char* buffer, i64 size) {
    return lf_result(recv(lf_socket(s), buffer, lf_size(static_cast<std::size_t>(size)), 0));
}

SocketResult gf_peek(Socket s, char* buffer, i64 size) {
    return lf_result(recv(lf_socket(s), buffer, lf_size(static_cast<std::size_t>(size)), MSG_PEEK));
}

SocketResult gf_receiveDatagram(Socket s, char* buffer, i64 size, u32*) {
    const SocketResult result = gf_receive(s, buffer, size);
    // The buffer is full then and the rest is lost, which the other systems don't call an error.
    return result.error == WSAEMSGSIZE ? SocketResult{size, 0} : result;
}

void gf_closeSocket(Socket& s) {
    if (s.valid()) closesocket(lf_socket(s));
    s.handle = -1;
}

i32 gf_systemResolveService(const std::string& name, u16& port) {
    sockaddr_in address{};
    const i32 error = lf_resolve(nullptr, name.c_str(), AI_PASSIVE, address);
    if (error == 0) port = ntohs(address.sin_port);
    return error;
}

}  // namespace hcr
