#pragma once

#include <filesystem>
#include <string>

namespace hcr::test {

/// Sets an environment variable of this process; a null value removes it.
void setVariable(const char* name, const char* value);

/// An environment variable that is put back behind the test.
struct Variable {
    Variable(const char* variable, const char* value);
    ~Variable();
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

    std::string name, before;
    bool wasSet = false;
};

/// A file of demo-data. The tests know the folder from their build; HALCYRANE_SOURCE_DIR names it elsewhere.
std::filesystem::path demoData(const std::string& name);

/// A text with paths in it, each with "/" between its folders on every system.
std::string slashed(std::string text);

/// Address of a file for a data server that is a folder.
std::string fileUrl(const std::filesystem::path& path);

}  // namespace hcr::test
