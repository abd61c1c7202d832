#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "tests/support/temp_folder.h"
namespace hcr::test {

/// A fresh working folder with an open log and its own settings; all parameters at their defaults but RANDOM, which is
/// off. The tables of liveries, reference data and airports are emptied at both ends.
struct DataFolder : TempFolder {
    DataFolder();
    ~DataFolder();
    DataFolder(const DataFolder&) = delete;
    DataFolder& operator=(const DataFolder&) = delete;

    std::string log() const;
    /// Whether this was logged; paths may have either separator.
    bool logged(std::string_view text) const;
    /// Writes a data file of the server in its enciphered form.
    void encipher(const std::filesystem::path& target, std::string_view xml) const;
    /// Reads reference data with a few types and airlines and, behind them, these sections.
    void readDbase(const std::string& sections = {}) const;
    /// Writes LiveriesScanned.xml with these `liv` elements, and AIG-regcodes.enc with these `livery` elements, and
    /// loads them.
    void loadLiveries(const std::string& elements, const std::string& aigElements = {}) const;
};

/// A `liv` element.
std::string liv(const std::string& airl, const std::string& type, const std::string& title,
                const std::string& more = {});

std::string readWhole(const std::filesystem::path& file);
void writeWhole(const std::filesystem::path& file, std::string_view text);

/// The sections that no reference data may lack. Light: C172, PA28. Buzjets: C25A, GLF6. Large: B738, A320, B739.
/// Heavy: B744. HighPerf: F16. Rotorcraft: EC35. Airlines: KLM, DLH, PVT, ZZZ.
extern const char* const kNeededSections;

}  // namespace hcr::test
