#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "shell/log.h"
#include "shell/log_start.h"

namespace hcr::test {

/// A fresh folder that is the working folder as long as the object lives.
struct TempFolder {
    TempFolder() : previous(std::filesystem::current_path()) {
        // The random part keeps processes apart that run at the same time.
        static std::atomic<int> count{0};
        path = std::filesystem::temp_directory_path() /
               ("halcyrane-test-" + std::to_string(std::random_device{}()) + "-" + std::to_string(++count));
        std::filesystem::create_directories(path);
        std::filesystem::current_path(path);
    }
    ~TempFolder() {
        std::error_code error;
        std::filesystem::current_path(previous, error);
        std::filesystem::remove_all(path, error);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::filesystem::path path, previous;
};

inline void writeFile(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The log of one test, in a working folder of its own.
struct LogFolder : TempFolder {
    LogFolder() { gf_openLog(); }
    ~LogFolder() { gf_closeLog(); }
    LogFolder(const LogFolder&) = delete;
    LogFolder& operator=(const LogFolder&) = delete;

    /// What was logged behind the first line.
    std::string logged() const {
        gf_logFlush();
        const std::string all = readFile(path / "Log.txt");
        const std::size_t end = all.find('\n');
        return end == std::string::npos ? all : all.substr(end + 1);
    }
};

}  // namespace hcr::test
