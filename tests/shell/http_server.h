#pragma once

#include <atomic>
#include <map>
#include <string>
#include <thread>

#include "platform/sockets.h"

namespace hcr::test {

/// A web server on 127.0.0.1 that answers the program, which it knows by its user agent, with fixed bytes for each
/// path, one connection at a time.
struct HttpServer {
    explicit HttpServer(std::map<std::string, std::string> answersByPath);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    std::string url(const std::string& path) const;
    /// The whole answer with a status line such as "200 OK", further header lines, and a body.
    static std::string answer(const std::string& status, const std::string& headers, const std::string& body);
    /// Head of an answer whose body never comes.
    static std::string stall();

private:
    void serve();
    void serveOne(Socket client);

    std::map<std::string, std::string> answers;
    Socket listener;
    u16 port = 0;
    std::atomic<bool> end{false};
    std::thread thread;
};

}  // namespace hcr::test
