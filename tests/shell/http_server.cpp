#include "shell/http_server.h"

#include <fmt/format.h>

namespace hcr::test {
namespace {

constexpr i64 kPollMs = 20;

}  // namespace

HttpServer::HttpServer(std::map<std::string, std::string> answersByPath) : answers(std::move(answersByPath)) {
    i32 error = gf_startSockets();
    listener = gf_openTcp(error);
    gf_bindSocket(listener, 0, true);
    gf_listen(listener);
    port = gf_boundPort(listener);
    thread = std::thread([this] { serve(); });
}

HttpServer::~HttpServer() {
    end = true;
    thread.join();
    gf_closeSocket(listener);
    gf_endSockets();
}

std::string HttpServer::url(const std::string& path) const {
    return fmt::format("http://127.0.0.1:{}{}", port, path);
}

std::string HttpServer::answer(const std::string& status, const std::string& headers, const std::string& body) {
    return fmt::format("HTTP/1.1 {}\r\nConnection: close\r\nContent-Length: {}\r\n{}\r\n{}", status, body.size(),
                       headers, body);
}

std::string HttpServer::stall() {
    return "HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n";
}

void HttpServer::serve() {
    while (!end) {
        i32 error = 0;
        if (!gf_waitReadable(listener, kPollMs, error)) continue;
        Socket client = gf_accept(listener, error);
        if (!client.valid()) continue;
        serveOne(client);
        gf_closeSocket(client);
    }
}

void HttpServer::serveOne(Socket client) {
    std::string request;
    char buffer[4096];
    while (request.find("\r\n\r\n") == std::string::npos) {
        const SocketResult got = gf_receive(client, buffer, sizeof buffer);
        if (got.bytes <= 0) return;
        request.append(buffer, static_cast<std::size_t>(got.bytes));
    }
    const std::size_t begin = request.find(' ') + 1;
    const auto found = answers.find(request.substr(begin, request.find(' ', begin) - begin));
    const bool isServed = found != answers.end() && request.find("User-Agent: Halcy\r\n") != std::string::npos;
    gf_send(client, isServed ? found->second : answer("404 Not Found", "", "a page that tells so"));
    if (found == answers.end() || found->second != stall()) return;
    i32 error = 0;
    // The client hanging up is the only thing that can be read.
    while (!end && !gf_waitReadable(client, kPollMs, error)) {
    }
}

}  // namespace hcr::test
