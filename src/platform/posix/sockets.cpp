#include "platform/sockets.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/clock_source.h"
#include "platform/socket_source.h"

namespace hcr {
namespace {

constexpr i32 kWouldBlock = 10035;
constexpr i32 kInvalidArgument = 10022;
constexpr i32 kNotASocket = 10038;
constexpr i32 kHostNotFound = 11001;

struct ErrorPair {
    int system;
    i32 winsock;
};

constexpr ErrorPair kErrors[] = {
    {EINTR, 10004},           {EBADF, 10009},           {EACCES, 10013},        {EPERM, 10013},
    {EFAULT, 10014},          {EINVAL, 10022},          {EMFILE, 10024},        {ENFILE, 10024},
    {EAGAIN, kWouldBlock},    {EINPROGRESS, 10036},     {EALREADY, 10037},      {ENOTSOCK, kNotASocket},
    {EDESTADDRREQ, 10039},    {EMSGSIZE, 10040},        {EPROTOTYPE, 10041},    {ENOPROTOOPT, 10042},
    {EPROTONOSUPPORT, 10043}, {ESOCKTNOSUPPORT, 10044}, {EOPNOTSUPP, 10045},    {EPFNOSUPPORT, 10046},
    {EAFNOSUPPORT, 10047},    {EADDRINUSE, 10048},      {EADDRNOTAVAIL, 10049}, {ENETDOWN, 10050},
    {ENETUNREACH, 10051},     {ENETRESET, 10052},       {ECONNABORTED, 10053},  {ECONNRESET, 10054},
    {EPIPE, 10054},           {ENOBUFS, 10055},         {ENOMEM, 10055},        {EISCONN, 10056},
    {ENOTCONN, 10057},        {ESHUTDOWN, 10058},       {ETOOMANYREFS, 10059},  {ETIMEDOUT, 10060},
    {ECONNREFUSED, 10061},    {ELOOP, 10062},           {ENAMETOOLONG, 10063},  {EHOSTDOWN, 10064},
    {EHOSTUNREACH, 10065},    {ENOTEMPTY, 10066},       {EUSERS, 10068},        {EDQUOT, 10069},
    {ESTALE, 10070},          {EREMOTE, 10071},
};

/// A number of the system without a counterpart is passed on as it is; its text is that of an unknown code.
i32 lf_winsockError(int systemError) {
    for (const ErrorPair& pair : kErrors) {
        if (pair.system == systemError) return pair.winsock;
    }
    return systemError;
}

i32 lf_lastError() {
    return lf_winsockError(errno);
}

i32 lf_resolveError(int code) {
    switch (code) {
        case 0:
            return 0;
        case EAI_SERVICE:
            return kNoSuchService;
        case EAI_AGAIN:
            return 11002;
        case EAI_FAIL:
            return 11003;
        case EAI_MEMORY:
            return 10055;
        case EAI_SYSTEM:
            return lf_lastError();
        default:
            return kHostNotFound;
    }
}

int lf_fd(Socket s) {
    return static_cast<int>(s.handle);
}

i32 lf_errorOf(int result) {
    return result == 0 ? 0 : lf_lastError();
}

i32 lf_setFlag(Socket s, int level, int option) {
    const int on = 1;
    return lf_errorOf(setsockopt(lf_fd(s), level, option, &on, sizeof on));
}

sockaddr_in lf_address(u32 ipv4NetworkOrder, u16 port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ipv4NetworkOrder;
    address.sin_port = htons(port);
    return address;
}

// The socket calls take every kind of address by a pointer to its common head.
const sockaddr* lf_head(const sockaddr_in& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

Socket lf_open(int type, i32& error) {
    Socket s;
    s.handle = socket(AF_INET, type | SOCK_CLOEXEC, 0);
    error = s.valid() ? 0 : lf_lastError();
    return s;
}

/// Runs a call until no signal interrupts it.
template <typename Call>
SocketResult lf_retry(Call call) {
    for (;;) {
        const ssize_t bytes = call();
        if (bytes >= 0) return {bytes, 0};
        if (errno != EINTR) return {-1, lf_lastError()};
    }
}

bool lf_wait(Socket s, short events, i64 milliseconds, i32& error) {
    error = s.valid() ? 0 : kNotASocket;
    if (error != 0) return false;
    i64 leftMs = gf_wallMilliseconds(milliseconds);
    const i64 endUs = gf_systemSteadyUs() + leftMs * 1'000;
    for (;;) {
        pollfd entry{lf_fd(s), events, 0};
        const int ready = poll(&entry, 1, static_cast<int>(leftMs));
        if (ready == 0) return false;
        if (ready > 0) {
            // A broken or ended connection counts as ready: the call that follows tells what is wrong.
            if ((entry.revents & POLLNVAL) == 0) return true;
            error = kNotASocket;
            return false;
        }
        if (errno != EINTR) {
            error = lf_lastError();
            return false;
        }
        leftMs = (endUs - gf_systemSteadyUs() + 999) / 1'000;
        if (leftMs < 0) leftMs = 0;
    }
}

/// An interrupted connect goes on by itself; its end shows as a writable socket.
i32 lf_finishConnect(Socket s) {
    pollfd entry{lf_fd(s), POLLOUT, 0};
    while (poll(&entry, 1, -1) < 0) {
        if (errno != EINTR) return lf_lastError();
    }
    int result = 0;
    socklen_t size = sizeof result;
    if (getsockopt(lf_fd(s), SOL_SOCKET, SO_ERROR, &result, &size) != 0) return lf_lastError();
    return result == 0 ? 0 : lf_winsockError(result);
}

i32 lf_connectTo(Socket s, const sockaddr_in& address) {
    if (connect(lf_fd(s), lf_head(address), sizeof address) == 0) return 0;
    if (errno == EINTR) return lf_finishConnect(s);
    // Winsock's number for a connect that goes on behind a socket set not to block.
    return errno == EINPROGRESS ? kWouldBlock : lf_lastError();
}

void lf_takeDropCount(msghdr& message, u32& dropped) {
    for (cmsghdr* part = CMSG_FIRSTHDR(&message); part != nullptr; part = CMSG_NXTHDR(&message, part)) {
        if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SO_RXQ_OVFL) continue;
        std::memcpy(&dropped, CMSG_DATA(part), sizeof dropped);
    }
}

}  // namespace

i32 gf_startSockets() {
    return 0;
}

void gf_endSockets() {}

Socket gf_openUdp(i32& error) {
    return lf_open(SOCK_DGRAM, error);
}

Socket gf_openTcp(i32& error) {
    return lf_open(SOCK_STREAM, error);
}

i32 gf_bindSocket(Socket s, u16 port, bool loopbackOnly) {
    const sockaddr_in address = lf_address(htonl(loopbackOnly ? INADDR_LOOPBACK : INADDR_ANY), port);
    return lf_errorOf(bind(lf_fd(s), lf_head(address), sizeof address));
}

u16 gf_boundPort(Socket s) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (getsockname(lf_fd(s), reinterpret_cast<sockaddr*>(&address), &size) != 0) return 0;
    return ntohs(address.sin_port);
}

void gf_setReceiveBuffer(Socket s, i32 bytes) {
    // The first form exceeds the system's limit and is granted to few.
    if (setsockopt(lf_fd(s), SOL_SOCKET, SO_RCVBUFFORCE, &bytes, sizeof bytes) == 0) return;
    setsockopt(lf_fd(s), SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
}

void gf_countDrops(Socket s) {
    lf_setFlag(s, SOL_SOCKET, SO_RXQ_OVFL);
}

i32 gf_setReuseAddress(Socket s) {
    return lf_setFlag(s, SOL_SOCKET, SO_REUSEADDR);
}

i32 gf_setNoDelay(Socket s) {
    return lf_setFlag(s, IPPROTO_TCP, TCP_NODELAY);
}

i32 gf_setBlocking(Socket s, bool blocking) {
    const int flags = fcntl(lf_fd(s), F_GETFL, 0);
    if (flags < 0) return lf_lastError();
    const int wanted = blocking ? flags & ~O_NONBLOCK : flags | O_NONBLOCK;
    return fcntl(lf_fd(s), F_SETFL, wanted) < 0 ? lf_lastError() : 0;
}

i32 gf_listen(Socket s) {
    return lf_errorOf(listen(lf_fd(s), SOMAXCONN));
}

bool gf_waitReadable(Socket s, i64 milliseconds, i32& error) {
    return lf_wait(s, POLLIN, milliseconds, error);
}

bool gf_waitWritable(Socket s, i64 milliseconds, i32& error) {
    return lf_wait(s, POLLOUT, milliseconds, error);
}

Socket gf_accept(Socket listener, i32& error) {
    const SocketResult result =
        lf_retry([&] { return ssize_t{accept4(lf_fd(listener), nullptr, nullptr, SOCK_CLOEXEC)}; });
    error = result.error;
    return Socket{result.bytes};
}

i32 gf_connect(Socket s, const std::string& host, u16 port) {
    addrinfo wish{};
    wish.ai_family = AF_INET;
    wish.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (const int code = getaddrinfo(host.c_str(), nullptr, &wish, &found); code != 0) return lf_resolveError(code);
    i32 error = kHostNotFound;
    if (found != nullptr && found->ai_addrlen >= sizeof(sockaddr_in)) {
        sockaddr_in address{};
        std::memcpy(&address, found->ai_addr, sizeof address);
        address.sin_port = htons(port);
        error = lf_connectTo(s, address);
    }
    freeaddrinfo(found);
    return error;
}

SocketResult gf_send(Socket s, std::string_view data) {
    // A blocking send takes the whole text unless a signal cuts it; the rest follows then.
    SocketResult sent;
    do {
        const std::string_view rest = data.substr(static_cast<std::size_t>(sent.bytes));
        const SocketResult result = lf_retry([&] { return send(lf_fd(s), rest.data(), rest.size(), MSG_NOSIGNAL); });
        if (result.bytes < 0) return result.error == kWouldBlock && sent.bytes > 0 ? sent : result;
        if (result.bytes == 0) break;
        sent.bytes += result.bytes;
    } while (static_cast<std::size_t>(sent.bytes) < data.size());
    return sent;
}

SocketResult gf_sendTo(Socket s, std::string_view data, const std::string& ipv4, u16 port) {
    in_addr target{};
    if (inet_pton(AF_INET, ipv4.c_str(), &target) != 1) return {-1, kInvalidArgument};
    const sockaddr_in address = lf_address(target.s_addr, port);
    return lf_retry(
        [&] { return sendto(lf_fd(s), data.data(), data.size(), MSG_NOSIGNAL, lf_head(address), sizeof address); });
}

SocketResult gf_receive(Socket s, char* buffer, i64 size) {
    return lf_retry([&] { return recv(lf_fd(s), buffer, static_cast<std::size_t>(size), 0); });
}

SocketResult gf_peek(Socket s, char* buffer, i64 size) {
    return lf_retry([&] { return recv(lf_fd(s), buffer, static_cast<std::size_t>(size), MSG_PEEK); });
}

SocketResult gf_receiveDatagram(Socket s, char* buffer, i64 size, u32* dropped) {
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(u32))> control{};
    iovec space{buffer, static_cast<std::size_t>(size)};
    msghdr message{};
    // What doesn't fit is cut off, which leaves a count equal to the size of the buffer.
    const SocketResult result = lf_retry([&] {
        message.msg_iov = &space;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        return recvmsg(lf_fd(s), &message, 0);
    });
    if (result.bytes >= 0 && dropped != nullptr) lf_takeDropCount(message, *dropped);
    return result;
}

void gf_closeSocket(Socket& s) {
    if (s.valid()) close(lf_fd(s));
    s.handle = -1;
}

i32 gf_systemResolveService(const std::string& name, u16& port) {
    addrinfo wish{};
    wish.ai_family = AF_INET;
    wish.ai_socktype = SOCK_STREAM;
    wish.ai_protocol = IPPROTO_TCP;
    wish.ai_flags = AI_PASSIVE;
    addrinfo* found = nullptr;
    if (const int code = getaddrinfo(nullptr, name.c_str(), &wish, &found); code != 0) return lf_resolveError(code);
    sockaddr_in address{};
    if (found->ai_addrlen >= sizeof address) std::memcpy(&address, found->ai_addr, sizeof address);
    freeaddrinfo(found);
    port = ntohs(address.sin_port);
    return 0;
}

}  // namespace hcr
