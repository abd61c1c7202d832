#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/labels.h"
#include "core/model/tables.h"
#include "core/model/validate.h"

namespace hcr {
namespace {

struct Model : testing::Test {
    void SetUp() override { gf_clearTables(); }
    void TearDown() override { gf_clearTables(); }
};

LiveAc flyingAircraft(u32 hexid) {
    LiveAc ac;
    ac.hexid = hexid;
    ac.callsign = "KLM" + std::to_string(hexid);
    ac.lifeState = LifeState::active;
    ac.objectId = hexid + 1;
    ac.stream.resize(3);
    for (i32 i = 0; i < 3; ++i) ac.stream[static_cast<std::size_t>(i)].time = 100 * i;
    return ac;
}

TEST_F(Model, AClassOutsideTheTableIsTheCallersError) {
    EXPECT_DOUBLE_EQ(classValue(kMaxBank, Heavy), 20 * kPi / 180);
    EXPECT_EQ(classValue(kClimbPitchTicks, Rotorcraft), 100);
    for (const i32 bad : {-1, 6, std::numeric_limits<i32>::min()}) {
        EXPECT_THROW(classValue(kFlareTicks, bad), std::out_of_range) << bad;
    }
}

TEST_F(Model, LabelsKeepTheirColumns) {
    LiveAc ac;
    ac.callsign = "KLM1023";
    ac.registration = "PH-BXA";
    ac.airline = "KLM";
    ac.model = "B738";
    EXPECT_EQ(liveAcLabel(ac), "KLM1023  PH-BXA            KLM B738");
    ac.to = "LHR";
    EXPECT_EQ(flightLabel(ac), "KLM1023  PH-BXA      ->LHR");
    EXPECT_EQ(flightLabel(ac).size(), flightLabel(LiveAc{}).size());
}

TEST_F(Model, TheFirstBrokenInvariantIsNamed) {
    gLiveAcs.push_back(flyingAircraft(4740000));
    gLiveAcs.push_back(flyingAircraft(4750000));
    ASSERT_EQ(validateLiveTable(), "");

    struct Fault {
        const char* text;
        void (*make)(LiveAc& ac);
    };
    const Fault faults[] = {
        {"hexid of a static aircraft", [](LiveAc& ac) { ac.hexid = kLastStaticId; }},
        {"stands twice", [](LiveAc& ac) { ac.hexid = 4740000; }},
        {"stands twice", [](LiveAc& ac) { ac.objectId = 4740001; }},
        {"active without an object", [](LiveAc& ac) { ac.objectId = 0; }},
        {"active with an empty stream", [](LiveAc& ac) { ac.stream.clear(); }},
        {"don't rise", [](LiveAc& ac) { ac.stream[2].time = ac.stream[1].time; }},
        {"no number", [](LiveAc& ac) { ac.alt = std::numeric_limits<f64>::quiet_NaN(); }},
        {"heading", [](LiveAc& ac) { ac.heading = -0.1; }},
        {"curve", [](LiveAc& ac) { ac.curveT = 1; }},
    };
    for (const Fault& fault : faults) {
        gLiveAcs[1] = flyingAircraft(4750000);
        fault.make(gLiveAcs[1]);
        EXPECT_NE(validateLiveTable().find(fault.text), std::string::npos) << fault.text;
    }
}

}  // namespace
}  // namespace hcr
