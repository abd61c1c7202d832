#pragma once

#include <gtest/gtest.h>

#include <string>

#include "core/model/aircraft.h"
#include "parking/airport_file.h"
#include "tests/support/data_folder.h"

namespace hcr::test {

/// A park airport of airport files that the tests write; reference data and a few liveries are loaded.
struct AirportWorld : testing::Test {
    AirportWorld();
    ~AirportWorld() override;

    DataFolder folder;
    AirportFile head;

    /// Writes airports/my_thirdparty/EHAM.xml with these stands and more parameters.
    void writeAirport(const std::string& stands, const std::string& parameters = {}) const;
    /// Reads it; the error text.
    std::string read();
    /// Leaves the airport: what was learned is saved.
    void leave();
    std::string learned() const;
};

/// One `parkpos`, 40 m wide, so many metres east of the airport's first stand.
std::string stand(const std::string& id, f64 metresEast, const std::string& options = {}, const std::string& more = {});
/// One `opt` on Monday.
std::string opt(const std::string& reg, const std::string& hours, const std::string& callsigns,
                const std::string& more = {});
/// An aircraft of this registration and callsign for learning.
LiveAc learner(const std::string& registration, const std::string& callsign);

}  // namespace hcr::test
