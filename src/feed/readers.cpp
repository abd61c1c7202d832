#include "feed/readers.h"

#include <mutex>

#include "core/model/run_state.h"
#include "feed/qnh_reader.h"
#include "feed/traffic_reader.h"
#include "shell/window_state.h"

namespace hcr {
namespace {

void lf_checkReader(UdpReader& reader) {
    const i32 count = reader.packetCount;
    const bool silent = count == reader.lastPacketCount;
    reader.lastPacketCount = count;
    if (silent) {
        reader.lamp = kLampSilent;
        reader.alive = false;
    } else if (!reader.alive || reader.lamp == kLampSilent) {
        // A reset of the feed sets the mark, but leaves the lamp as it is.
        reader.lamp = kLampReceiving;
        reader.alive = true;
    }
}

}  // namespace

void gf_checkReaders() {
    if (!gWindow.rtConnected) return;
    lf_checkReader(gTrafficReader);
    lf_checkReader(gQnhReader);
    gf_repaint(Band::realTraffic);
}

void gf_showFeedSilent() {
    for (UdpReader* reader : {static_cast<UdpReader*>(&gTrafficReader), static_cast<UdpReader*>(&gQnhReader)}) {
        i32 receiving = kLampReceiving;
        reader->lamp.compare_exchange_strong(receiving, kLampSilent);
    }
    gf_repaint(Band::realTraffic);
}

void gf_resetFeed() {
    gTrafficReader.qnh = kStandardQnh;
    gQnhReader.lastQnh = kStandardQnh;
    gQnh = kStandardQnh;
    if (gWindow.qnh != 0) {  // before the first weather nothing is shown
        gWindow.qnh = kStandardQnh;
        gf_repaint(Band::realTraffic);
    }
    gLastTimestamp = 0;
    {
        const std::lock_guard lock(gTrafficReader.callsignMutex);
        gTrafficReader.realCallsigns.clear();
    }
    gTrafficReader.stop = false;
    gQnhReader.stop = false;
    gQnhReader.packetCount = 0;
    gTrafficReader.alive = true;
    gQnhReader.alive = true;
}

void gf_resetReaders() {
    {
        const std::lock_guard lock(gTrafficReader.callsignMutex);
        static_cast<DecoderRun&>(gTrafficReader) = {};
    }
    for (UdpReader* reader : {static_cast<UdpReader*>(&gTrafficReader), static_cast<UdpReader*>(&gQnhReader)}) {
        static_cast<ReaderRun&>(*reader) = {};
    }
    gf_resetFeed();
}

void gf_setFeedPorts(u16 traffic, u16 weather) {
    gTrafficReader.port = traffic != 0 ? traffic : kTrafficPort;
    gQnhReader.port = weather != 0 ? weather : kWeatherPort;
}

}  // namespace hcr
