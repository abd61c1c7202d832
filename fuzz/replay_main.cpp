#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Feeds each file, or each file of each folder, named on the command line to the target once. Stands in for libFuzzer
// where the compiler has none, so that a corpus is replayed in every build.

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> lf_inputs(int argc, char** argv) {
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        const fs::path path = argv[i];
        if (!fs::is_directory(path)) {
            files.push_back(path);
            continue;
        }
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path)) {
            if (entry.is_regular_file()) files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    return files;
}

bool lf_replay(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::cerr << "can't read " << path << '\n';
        return false;
    }
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    // The target gets memory of just that size, so that a read behind its end is seen.
    const std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(data.data(), data.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<fs::path> files = lf_inputs(argc, argv);
    const auto count = std::ranges::count_if(files, lf_replay);
    std::cout << "inputs run: " << count << '\n';
    return count == static_cast<std::ptrdiff_t>(files.size()) ? 0 : 1;
}
