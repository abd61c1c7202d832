#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "core/model/geo.h"
#include "tools/tracks/tracks.h"

namespace hcr {
namespace {

constexpr f64 kWidth = 1400, kHeight = 1000, kMargin = 60;
constexpr f64 kLabelGap = 5;

/// Degrees to pixels, north up, the same scale in both directions.
struct View {
    f64 lat0 = 90, lat1 = -90, lon0 = 180, lon1 = -180;
    f64 scale = 1, stretch = 1;

    void include(const TrackPoint& p) {
        lat0 = std::min(lat0, p.lat);
        lat1 = std::max(lat1, p.lat);
        lon0 = std::min(lon0, p.lon);
        lon1 = std::max(lon1, p.lon);
    }
    void fit() {
        if (lat0 > lat1) lat0 = lat1 = lon0 = lon1 = 0;
        stretch = std::cos((lat0 + lat1) / 2 * kDegToRad);
        const f64 high = std::max(lat1 - lat0, 0.01), wide = std::max((lon1 - lon0) * stretch, 0.01);
        scale = std::min((kWidth - 2 * kMargin) / wide, (kHeight - 2 * kMargin) / high);
    }
    f64 x(f64 lon) const { return kWidth / 2 + (lon - (lon0 + lon1) / 2) * stretch * scale; }
    f64 y(f64 lat) const { return kHeight / 2 - (lat - (lat0 + lat1) / 2) * scale; }
};

std::string lf_escape(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '<') {
            result += "&lt;";
        } else if (c == '&') {
            result += "&amp;";
        } else if (static_cast<unsigned char>(c) >= 0x20) {
            result += c;
        }
    }
    return result;
}

std::string lf_points(const View& view, const Track& track) {
    std::string text;
    for (const TrackPoint& p : track) text += fmt::format("{:.1f},{:.1f} ", view.x(p.lon), view.y(p.lat));
    return text;
}

void lf_drawReported(std::string& svg, const View& view, const Track& track) {
    svg += fmt::format(
        "<polyline points=\"{}\" fill=\"none\" stroke=\"#d5dae3\" stroke-width=\"6\" "
        "stroke-linejoin=\"round\"/>\n",
        lf_points(view, track));
    for (const TrackPoint& p : track) {
        svg += fmt::format("<circle cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"2.2\" fill=\"#a3acbb\"/>\n", view.x(p.lon),
                           view.y(p.lat));
    }
}

void lf_drawFlown(std::string& svg, const View& view, const std::string& name, const Track& track) {
    const std::size_t hue = std::hash<std::string>{}(name) % 360;
    svg += fmt::format("<polyline points=\"{}\" fill=\"none\" stroke=\"hsl({},75%,42%)\" stroke-width=\"2\"/>\n",
                       lf_points(view, track), hue);
    const TrackPoint& last = track.back();
    svg +=
        fmt::format("<text x=\"{:.1f}\" y=\"{:.1f}\" font-size=\"11\" fill=\"hsl({},75%,32%)\">{} {:.0f} ft</text>\n",
                    view.x(last.lon) + kLabelGap, view.y(last.lat) - kLabelGap, hue, lf_escape(name), last.alt);
}

void lf_drawScale(std::string& svg, const View& view) {
    const f64 pixelsPerNm = view.scale / 60.0;
    const f64 nm = std::pow(10.0, std::floor(std::log10(300.0 / pixelsPerNm)));
    const f64 y = kHeight - 24;
    svg += fmt::format(
        "<path d=\"M30 {} h{:.1f} m0 -5 v10 M30 {} v10\" stroke=\"#333\" fill=\"none\"/>"
        "<text x=\"34\" y=\"{}\" font-size=\"12\">{:g} nm</text>\n",
        y, nm * pixelsPerNm, y - 5, y - 8, nm);
}

}  // namespace

std::string drawTracks(const Tracks& flown, const Tracks& reported) {
    View view;
    for (const auto& [name, track] : flown) {
        for (const TrackPoint& p : track) view.include(p);
    }
    view.fit();
    std::string svg = fmt::format(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {} {}\" "
        "font-family=\"sans-serif\">\n<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n",
        kWidth, kHeight);
    for (const auto& [name, track] : flown) {
        const auto told = reported.find(name);
        if (told != reported.end()) lf_drawReported(svg, view, told->second);
    }
    for (const auto& [name, track] : flown) lf_drawFlown(svg, view, name, track);
    svg += fmt::format(
        "<text x=\"30\" y=\"30\" font-size=\"16\">{} aircraft: reported (grey, a dot per report) and "
        "flown (colour)</text>\n",
        flown.size());
    lf_drawScale(svg, view);
    return svg + "</svg>\n";
}

}  // namespace hcr
