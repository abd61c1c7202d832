#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/types.h"

struct zip;

namespace hcr {

// Reading of zip archives. One archive belongs to one thread.

/// An archive opened for reading; it is held in memory, so that the file can go meanwhile.
struct ZipReader {
    struct Closer {
        void operator()(zip* opened) const;
    };
    std::string bytes;  ///< of the file; `archive` reads in it, so that it must outlive it
    std::unique_ptr<zip, Closer> archive;
};

/// Null when the file can't be read, is no archive, or is larger than `largestBytes`.
std::unique_ptr<ZipReader> gf_openZip(const std::filesystem::path& path, u64 largestBytes);
u64 gf_zipEntryCount(const ZipReader& reader);
/// Name of an entry with its folders, as UTF-8; a folder's name ends in "/". Empty when it can't be told.
std::string gf_zipEntryName(const ZipReader& reader, u64 index);
/// What an entry unpacks to; nothing when it is damaged, enciphered, or longer than `largestBytes`.
std::optional<std::string> gf_readZipEntry(const ZipReader& reader, u64 index, u64 largestBytes);

}  // namespace hcr
