#include "shell/generations.h"

#include <fmt/format.h>

#include <optional>

#include "platform/files.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/text.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;

/// The path with `zeros` before the last dot of its file name; nothing when that has no dot.
std::optional<fs::path> lf_generationOf(const fs::path& path, const char* zeros) {
    const fs::path::string_type name = path.filename().native();
    const std::size_t dot = name.rfind(fs::path::value_type{'.'});
    if (dot == fs::path::string_type::npos) return std::nullopt;
    fs::path generation = name.substr(0, dot);
    generation += zeros;
    generation += name.substr(dot);
    return path.parent_path() / generation;
}

/// A file that is removed in the end if it is still there.
struct Leftover {
    fs::path path;
    ~Leftover() {
        std::error_code ignored;
        fs::remove(path, ignored);
    }
};

}  // namespace

bool gf_copyIfExists(const fs::path& source, const fs::path& target) {
    std::error_code error;
    const bool exists = fs::exists(source, error);
    if (error) {
        gf_logError(fmt::format("exists({}): {}", gf_shownPath(source), gf_errorText(error)));
        return false;
    }
    if (!exists) return true;
    // Not every system copies onto a file that is there, nor onto what another copy has left.
    const auto copy = [&source](const fs::path& file, std::error_code& fault) {
        fs::remove(file, fault);
        if (!fault) fs::copy_file(source, file, fault);
    };
    if (gf_makeInPlace(target, copy, error)) return true;
    gf_logError(
        fmt::format("copy {} -> {} failed: {}", gf_shownPath(source), gf_shownPath(target), gf_writeFaultText(error)));
    return false;
}

bool gf_save1GenerationOf(const fs::path& path) {
    const std::optional<fs::path> backup = lf_generationOf(path, "0");
    if (backup) return gf_copyIfExists(path, *backup);
    gf_logError(fmt::format("gf_save1GenerationOf: no dot in filename: {}", gf_shownPath(path)));
    return false;
}

void gf_saveUpto3GenerationsOf(const fs::path& path) {
    const std::optional<fs::path> first = lf_generationOf(path, "0");
    const std::optional<fs::path> second = lf_generationOf(path, "00");
    const std::optional<fs::path> third = lf_generationOf(path, "000");
    if (!first || !second || !third) {
        gf_logError(fmt::format("gf_saveUpto3GenerationsOf: no dot in filename: {}", gf_shownPath(path)));
        return;
    }
    gf_copyIfExists(*second, *third);
    gf_copyIfExists(*first, *second);
    gf_copyIfExists(path, *first);
}

bool gf_makeInPlace(const fs::path& path, const MakeFile& make, std::error_code& error) {
    Leftover beside{path};
    beside.path += ".part";
    error.clear();
    make(beside.path, error);
    if (!error) gf_moveOnto(beside.path, path, error);
    return !error;
}

bool gf_writeInPlace(const fs::path& path, std::string_view bytes, std::error_code& error) {
    const auto write = [bytes](const fs::path& file, std::error_code& fault) { gf_writeFile(file, bytes, fault); };
    return gf_makeInPlace(path, write, error);
}

std::string gf_writeFaultText(const std::error_code& error) {
    if (!gf_isDiskFull(error)) return gf_errorText(error);
    return fmt::format("the disk is full, make room on it ({})", gf_errorText(error));
}

void gf_tellWriteFault(const fs::path& path, const std::error_code& error) {
    const std::string text = fmt::format("{} could not be written: {}", gf_shownPath(path), gf_writeFaultText(error));
    gf_logError(text);
    if (gf_isDiskFull(error)) gf_showMessage(text, false);
}

}  // namespace hcr
