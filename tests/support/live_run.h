#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "core/run/window_messages.h"
#include "platform/sockets.h"
#include "shell/run_stop.h"
#include "tests/support/world.h"

namespace hcr::test {

/// A UDP port that nobody had a moment ago.
u16 freeUdpPort();

/// Stands in for RealTraffic over real sockets: a TCP client that answers the version question, and a sender of
/// datagrams for some aircraft that fly straight, every two seconds of the clock.
struct FeedPeer {
    explicit FeedPeer(u16 trafficPort);
    ~FeedPeer();

    void connect();  ///< keeps trying until the server is there
    void disconnect();
    bool connected() const { return connected_; }
    /// Everything that the program has sent so far.
    std::string told() const;

    std::atomic<int> aircraft{0};  ///< how many fly
    std::atomic<bool> sending{true};
    std::string model = "A320", airline = "KLM";

private:
    void talk(std::stop_token stop);
    void send(std::stop_token stop);
    std::string lineOf(int index, f64 now) const;

    u16 trafficPort_;
    std::atomic<bool> wanted_{false}, connected_{false};
    mutable std::mutex mutex_;
    std::string told_;
    f64 start_;
    std::jthread talker_, sender_;
};

struct LiveRunOptions {
    WorldOptions world;
    f64 clockFactor = 12;
    std::function<void()> beforeStart;  ///< for parameters; they are written to the file afterwards
};

/// The program with all its threads and real sockets, in the built-in simulator, on a clock that runs faster.
struct LiveRun {
    explicit LiveRun(LiveRunOptions liveOptions = {});
    ~LiveRun();
    LiveRun(const LiveRun&) = delete;
    LiveRun& operator=(const LiveRun&) = delete;

    /// Waits until `condition` holds, so long that a busy machine gets there too; whether it does.
    bool until(const std::function<bool()>& condition);
    bool untilLogged(const std::string& text);
    /// Lets so many seconds of the clock pass.
    void pass(f64 seconds);
    /// Waits for the run thread's next message to the window thread; `none` when it doesn't come.
    WindowMessage awaitMessage();
    /// Starts a run, as the window does for its message.
    void startRun();
    void close() { gf_requestStop(ExitReason::userClosed, 0); }
    std::string log() const;
    /// AI objects of the simulator that are under our control.
    std::size_t flying() const;

    LiveRunOptions options;
    TempFolder folder;
    u16 trafficPort = 0, weatherPort = 0;
    std::thread run;
};

}  // namespace hcr::test
