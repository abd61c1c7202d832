#include "shell/zip.h"

#include <zip.h>

#include <fstream>

namespace hcr {
namespace {

struct EntryCloser {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

bool lf_readWhole(const std::filesystem::path& path, u64 largestBytes, std::string& bytes) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file ? std::streamoff{file.tellg()} : -1;
    if (size < 0 || static_cast<u64>(size) > largestBytes) return false;
    bytes.resize(static_cast<std::size_t>(size));
    file.seekg(0);
    file.read(bytes.data(), size);
    return file.gcount() == size;
}

}  // namespace

void ZipReader::Closer::operator()(zip* opened) const {
    zip_discard(opened);
}

std::unique_ptr<ZipReader> gf_openZip(const std::filesystem::path& path, u64 largestBytes) {
    auto reader = std::make_unique<ZipReader>();
    if (!lf_readWhole(path, largestBytes, reader->bytes)) return nullptr;
    zip_source_t* source = zip_source_buffer_create(reader->bytes.data(), reader->bytes.size(), 0, nullptr);
    if (source == nullptr) return nullptr;
    reader->archive.reset(zip_open_from_source(source, ZIP_RDONLY, nullptr));
    if (reader->archive) return reader;
    zip_source_free(source);
    return nullptr;
}

u64 gf_zipEntryCount(const ZipReader& reader) {
    const zip_int64_t count = zip_get_num_entries(reader.archive.get(), 0);
    return count < 0 ? 0 : static_cast<u64>(count);
}

std::string gf_zipEntryName(const ZipReader& reader, u64 index) {
    const char* name = zip_get_name(reader.archive.get(), index, ZIP_FL_ENC_GUESS);
    return name != nullptr ? name : "";
}

std::optional<std::string> gf_readZipEntry(const ZipReader& reader, u64 index, u64 largestBytes) {
    constexpr std::size_t kPiece = 65536;  // the size that an entry tells needn't be true; it is read in pieces
    const std::unique_ptr<zip_file_t, EntryCloser> file(zip_fopen_index(reader.archive.get(), index, 0));
    if (!file) return std::nullopt;
    std::string content;
    for (;;) {
        const std::size_t used = content.size();
        content.resize(used + kPiece);
        const zip_int64_t read = zip_fread(file.get(), content.data() + used, kPiece);
        if (read < 0) return std::nullopt;
        content.resize(used + static_cast<std::size_t>(read));
        if (content.size() > largestBytes) return std::nullopt;
        if (read == 0) return content;
    }
}

}  // namespace hcr
