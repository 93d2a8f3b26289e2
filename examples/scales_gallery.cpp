// Amplitude and phase of the visibilities of a file, a panel a baseline: draws PNG files at 96 and
// 300 dots per inch and a page into a folder.
//     scales_gallery FOLDER FILE.uvfits [BASELINES]
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/AGraphXYErrors.h"
#include "platform/picture.h"
#include "platform/platform.h"
#include "tessel/uvfits/AUVXFile.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

using namespace pavane;

namespace
{

struct Series {
    std::vector<double> time, amplitude, phase, amplitudeError, phaseError;
};
using Pair = std::pair<int, int>;

/// The means over IFs and channels of the first polarisation.
int readSeries(AUVXFile& file, std::map<Pair, Series>& series)
{
    const UvHeader& header = file.header();
    UvGroups groups;
    for (std::int64_t first = 0; first < header.groups; first += groups.count) {
        const int count =
            static_cast<int>(std::min<std::int64_t>(file.blockGroups(), header.groups - first));
        constexpr int what = UvGroups::times | UvGroups::baselines | UvGroups::cellValues;
        if (!file.readGroups(first, count, what, groups))
            return 0;
        for (int i = 0; i < groups.count; ++i) {
            double real = 0, imaginary = 0, weight = 0;
            for (int k = 0; k < header.ifs * header.channels; ++k) {
                const UvVisibility v =
                    file.visibility(groups, i, k / header.channels, k % header.channels, 0);
                const double w = v.weight > 0 ? v.weight : 0;
                real += w * v.real;
                imaginary += w * v.imaginary;
                weight += w;
            }
            if (!(weight > 0))
                continue;
            const auto at = static_cast<std::size_t>(i);
            Series& s = series[{groups.antenna1[at], groups.antenna2[at]}];
            const double amplitude = std::hypot(real, imaginary) / weight;
            s.time.push_back(groups.time[at] * 86400);
            s.amplitude.push_back(amplitude);
            s.phase.push_back(std::atan2(imaginary, real) * 57.29577951308232);
            s.amplitudeError.push_back(1 / std::sqrt(weight));
            s.phaseError.push_back(57.29577951308232 / std::sqrt(weight) / amplitude);
        }
    }
    return 1;
}

void fill(A2DAxisMulti& axis, const AUVXFile& file, std::map<Pair, Series>& series, int most)
{
    axis.setNameOX("Time");
    int panel = 0;
    for (auto& [pair, s] : series) {
        if (panel >= 2 * most)
            break;
        const int n = static_cast<int>(s.time.size());
        CString name;
        for (const int antenna : {pair.first, pair.second}) {
            const AUVXTlscItem* const telescope = file.telescope(1, antenna);
            name +=
                (name.empty() ? "" : "-") + (telescope ? telescope->name : std::to_string(antenna));
        }
        for (const bool isPhase : {false, true}) {
            AYScale scale;
            scale.name = isPhase ? "Phase [deg]" : "Ampl. [%sJy]";
            scale.panel = panel;
            scale.weight = isPhase ? 1 : 1.4;
            scale.intervals = isPhase ? 4 : 3;
            if (isPhase) {
                scale.range = {-180, 180};
                scale.period = 360;
            }
            auto* const points = new AGraphXYErrors(
                &axis, s.time.data(), isPhase ? s.phase.data() : s.amplitude.data(), n, nullptr,
                graphPointDot, 0, isPhase ? RGB(170, 60, 0) : RGB(0, 70, 170), 0);
            points->setYErrors(isPhase ? s.phaseError.data() : s.amplitudeError.data());
            axis.setScaleOf(points, axis.addScale(scale));
            if (!isPhase)
                axis.setPanelCaption(panel, name);
            ++panel;
        }
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::pictures) || argc < 3)
        return 1;
    AUVXFile file;
    std::string error;
    std::map<Pair, Series> series;
    if (!file.open(argv[2], error) || !readSeries(file, series)) {
        std::fprintf(stderr, "%s: %s\n", argv[2], error.c_str());
        return 1;
    }
    A2DAxisMulti axis(2, 1, nullptr, 0);
    fill(axis, file, series, argc > 3 ? std::atoi(argv[3]) : 9);
    axis.setPanels(3, 6);
    const std::string base = std::string(argv[1]) + "/visibilities";
    CString message;
    for (const int dpi : {96, 300}) {
        CPicture picture(1000 * dpi / 96, 700 * dpi / 96);
        const auto dc = picture.dc();
        dc->SetSmooth(1);
        axis.setWantedFHeight(15 * dpi / 96);
        CRect all(0, 0, picture.width(), picture.height());
        axis.draw(*dc, all);
        if (!SavePNG(picture, base + "-" + std::to_string(dpi) + ".png", message, dpi))
            return 1;
    }
    axis.setWantedFHeight(15);
    CPageFile page(CPageFile::Format::pdf, 1000, 700, "visibilities");
    CRect whole(0, 0, 12000, 8400);
    axis.draw(page.dc(), whole);
    return page.Close(base + ".pdf", message) ? 0 : 1;
}
