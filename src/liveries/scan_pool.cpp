#include "liveries/scan_pool.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>

#include "liveries/scan_threads.h"

namespace hcr {

struct ScanQueue {
    std::mutex mutex;  ///< guards all; nothing else is taken while it is held
    std::condition_variable changed;
    std::deque<std::shared_ptr<ScanJob>> jobs;
    std::size_t running = 0;  ///< workers that haven't ended
    bool closing = false;
};

namespace {

constexpr std::chrono::milliseconds kPatience{100};  // a stop is answered within 200 ms

/// Workers of pools that have ended before them. Run thread.
struct LeftBehind {
    std::vector<std::shared_ptr<ScanQueue>> queues;
    std::vector<std::thread> workers;

    void join() {
        for (std::thread& worker : workers) worker.join();
        workers.clear();
        queues.clear();
    }
    ~LeftBehind() { join(); }
};
LeftBehind gLeftBehind;

void lf_read(ScanJob& job) {
    job.begun = true;
    ++scanThreadsActive;
    try {
        job.promise.set_value(job.reader(job.folderOrder, job.path));
    } catch (...) {
        job.promise.set_exception(std::current_exception());
    }
}

void lf_work(const std::shared_ptr<ScanQueue>& queue) {
    std::unique_lock lock(queue->mutex);
    for (;;) {
        queue->changed.wait(lock, [&] { return queue->closing || !queue->jobs.empty(); });
        if (queue->jobs.empty()) break;
        std::shared_ptr<ScanJob> job = std::move(queue->jobs.front());
        queue->jobs.pop_front();
        lock.unlock();
        lf_read(*job);
        job.reset();
        lock.lock();
    }
    --queue->running;
    queue->changed.notify_all();
}

void lf_close(ScanQueue& queue) {
    const std::lock_guard lock(queue.mutex);
    queue.closing = true;
    queue.jobs.clear();
    queue.changed.notify_all();
}

/// False when they take longer than they are waited for.
bool lf_awaitEnd(ScanQueue& queue) {
    std::unique_lock lock(queue.mutex);
    return queue.changed.wait_for(lock, kPatience, [&] { return queue.running == 0; });
}

}  // namespace

ScanPool::ScanPool(i32 count) : queue(std::make_shared<ScanQueue>()) {
    workers.reserve(static_cast<std::size_t>(count));
    for (i32 i = 0; i < count; ++i) {
        try {
            const std::lock_guard lock(queue->mutex);
            workers.emplace_back(lf_work, queue);
            ++queue->running;
        } catch (const std::system_error&) {
            if (workers.empty()) throw;
            return;  // fewer will do
        }
    }
}

ScanPool::~ScanPool() {
    if (!workers.empty()) gf_endScanPool(*this);
}

ScanFuture gf_startReading(ScanPool& pool, ScanReader reader, i32 folderOrder, std::filesystem::path path) {
    auto job = std::make_shared<ScanJob>();
    job->reader = reader;
    job->folderOrder = folderOrder;
    job->path = std::move(path);
    ScanFuture future{job, job->promise.get_future()};
    const std::lock_guard lock(pool.queue->mutex);
    pool.queue->jobs.push_back(std::move(job));
    pool.queue->changed.notify_one();
    return future;
}

bool gf_endScanPool(ScanPool& pool) {
    lf_close(*pool.queue);
    const bool ended = lf_awaitEnd(*pool.queue);
    if (!ended) gLeftBehind.queues.push_back(pool.queue);
    for (std::thread& worker : pool.workers) {
        if (ended) {
            worker.join();
        } else {
            gLeftBehind.workers.push_back(std::move(worker));
        }
    }
    pool.workers.clear();
    return ended;
}

bool gf_scanWorkersEnded() {
    for (const std::shared_ptr<ScanQueue>& queue : gLeftBehind.queues) {
        const std::lock_guard lock(queue->mutex);
        if (queue->running > 0) return false;
    }
    gLeftBehind.join();
    return true;
}

bool gf_awaitScanWorkers() {
    for (const std::shared_ptr<ScanQueue>& queue : gLeftBehind.queues) {
        if (!lf_awaitEnd(*queue)) return false;
    }
    gLeftBehind.join();
    return true;
}

}  // namespace hcr
