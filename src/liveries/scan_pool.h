#pragma once

#include <atomic>
#include <filesystem>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "liveries/cfg_content.h"

namespace hcr {

// The workers of a scan. A thread for each file would cost more than reading it: these few live as long as one folder's
// scan and take file by file, which from outside is the same.

/// Reads one file; any thread.
using ScanReader = CfgContent (*)(i32 folderOrder, const std::filesystem::path& path);

struct ScanJob {
    ScanReader reader;
    i32 folderOrder;
    std::filesystem::path path;
    std::promise<CfgContent> promise;
    std::atomic<bool> begun{false};  ///< a worker has taken it
};

struct ScanFuture {
    std::shared_ptr<ScanJob> job;
    std::future<CfgContent> content;
};

struct ScanQueue;

struct ScanPool {
    /// Throws std::system_error when not a single thread can be started.
    explicit ScanPool(i32 workers);
    /// As gf_endScanPool.
    ~ScanPool();
    ScanPool(const ScanPool&) = delete;
    ScanPool& operator=(const ScanPool&) = delete;

    std::shared_ptr<ScanQueue> queue;  ///< shared with the workers
    std::vector<std::thread> workers;
};

ScanFuture gf_startReading(ScanPool& pool, ScanReader reader, i32 folderOrder, std::filesystem::path path);
/// Drops the files that nobody has begun and waits half a second for the workers to end. False when some still read, as
/// on a drive that doesn't answer: they hold no more than their own file, and what they find in it is lost.
bool gf_endScanPool(ScanPool& pool);
/// Whether no worker that gf_endScanPool has left behind still reads. Run thread.
bool gf_scanWorkersEnded();
/// Waits half a second for them, before the process ends. False when some still read: such a process must end without
/// waiting for its threads. Run thread, or when it has ended.
bool gf_awaitScanWorkers();

}  // namespace hcr
