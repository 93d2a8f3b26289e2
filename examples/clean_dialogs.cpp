// Shows the dialogs of CLEAN and self-calibration one by one for a made-up observation, and prints
// what was chosen. Named first: parameters, selection, areas, beam, selfcal, write, read; without a
// name all of them.

#include "pavane/dialogs/ACleanParameterPage.h"
#include "pavane/dialogs/AGainFilesDlg.h"
#include "pavane/dialogs/ASelfCalPage.h"
#include "pavane/dialogs/clean/AAreaSetsDlg.h"
#include "pavane/dialogs/clean/ABeamShapePage.h"
#include "pavane/dialogs/clean/ACleanSelectionPage.h"
#include "platform/message.h"
#include "platform/platform.h"

#include <cmath>
#include <cstdio>
#include <string>

using namespace pavane;

namespace
{

constexpr const char* section = "CleanDialogs";

const std::vector<GainAntenna> antennas = {{1, 1, "BR"}, {1, 2, "FD"}, {1, 3, "HN"}, {1, 4, "KP"},
                                           {1, 5, "LA"}, {1, 6, "MK"}, {1, 7, "NL"}, {1, 8, "OV"},
                                           {1, 9, "PT"}, {1, 10, "SC"}};

void print(const std::vector<RecordEntry>& entries)
{
    for (const RecordEntry& entry : entries)
        std::printf("%s=%s\n", entry.key.c_str(), entry.text.c_str());
}

void askParameters()
{
    ACleanParameterPM pm;
    (void)pm.LoadFromINI(nullptr, section, 1);
    pm.greatestUv = 2.41e8;  // 8600 km at 3.6 cm
    if (!AskCleanParameters(nullptr, pm))
        return;
    (void)pm.StoreToINI(nullptr, section, 1);
    print(pm.entries());
}

void askSelection()
{
    constexpr double megahertz = 1e6;
    AUVXFreqs freqs;
    for (int i = 0; i < 8; ++i) {
        UvIf one;
        one.offset.value = 16 * megahertz * i;
        one.channelWidth.value = 0.5 * megahertz;
        one.bandwidth.value = 16 * megahertz;
        freqs.ifs.push_back(one);
    }
    ACleanSelectionPM pm;
    pm.groups = {{0, 1, 2, 3}, {4, 5, 6}};
    (void)pm.LoadFromINI(nullptr, section, 1);
    pm.forms = polarisationForms({"RR", "LL", "RL", "LR"});
    pm.frequencies = AUVXFqTbl(8.4e9, 1, 4, {freqs});
    pm.infoStart = 5 * 3600 + 130;
    pm.infoStop = 13 * 3600 + 130;
    if (!AskCleanSelection(nullptr, pm))
        return;
    (void)pm.StoreToINI(nullptr, section, 1);
    print(pm.entries());
}

void askAreas()
{
    const AreaMap map{TMinMax{25.6, -25.5, -25.6, 25.5}, 512, 512};
    const AMnMxMCTransform cells(map.range, map.rows, map.columns);
    AreaCollection areas, core;
    AreaShape shape;
    shape.kind = AreaShape::Kind::ellipse;
    shape.centre = {256, 256};
    shape.width = shape.height = 30;
    (void)core.add(shape, cells);
    (void)areas.add(shape, cells);
    shape.centre = {300, 240};
    shape.width = 90;
    shape.angle = -0.4;
    (void)areas.add(shape, cells);
    AAreaSets sets;
    CString error;
    if (!sets.LoadFromINI(nullptr, section, 1) && sets.keep("core", core, error) < 0)
        std::fprintf(stderr, "%s\n", error.c_str());
    AAreaSetsDlg dialog(sets, areas, map);
    if (dialog.DoModal() != IDOK)
        return;
    (void)sets.StoreToINI(nullptr, section, 1);
    for (int i = 0; i < sets.count(); ++i)
        std::printf("%s: %d\n", sets.name(i).c_str(), sets.areas(i));
}

void askBeam()
{
    ABeamShapePM pm;
    (void)pm.LoadFromINI(nullptr, section, 1);
    pm.fitted = {1.84, 0.77, -12.5};
    if (!AskBeamShape(nullptr, pm))
        return;
    (void)pm.StoreToINI(nullptr, section, 1);
    print(pm.entries());
}

void askSelfCalibration()
{
    ASelfCalPM pm;
    pm.references = {"LA", "PT"};
    (void)pm.LoadFromINI(nullptr, section, 1);
    pm.integration = 2;
    pm.span = 8 * 3600;
    for (const GainAntenna& antenna : antennas)
        pm.antennas.push_back(antenna.name);
    if (!AskSelfCalibration(nullptr, pm))
        return;
    (void)pm.StoreToINI(nullptr, section, 1);
    print(pm.entries());
}

/// Phases that drift, of two groups of IFs.
AGains madeGains()
{
    constexpr int minutes = 480;
    constexpr double minute = 1.0 / 1440;
    std::vector<GainInterval> intervals;
    for (int i = 0; i < minutes; ++i)
        intervals.push_back({i * minute, (i + 1) * minute});
    AGains gains;
    if (!gains.create(antennas, intervals, {{0, 1}, {2, 3}}, {'R', 'L'}))
        return gains;
    gains.ifs = 4;
    gains.referenceDay = 2451545.5;
    for (std::size_t t = 0; t < intervals.size(); ++t)
        for (std::size_t g = 0; g < 2; ++g)
            for (std::size_t h = 0; h < 2; ++h)
                for (std::size_t a = 0; a + 1 < antennas.size(); ++a) {
                    Gain& gain = gains.at(t, g, h, a);
                    gain.value = std::polar(1.0, 0.01 * static_cast<double>(t * a));
                    gain.error = 0.05;
                    gain.state = (t + a) % 97 ? GainState::solved : GainState::failed;
                    gain.isFlagged = t < 3 && a == 2;
                }
    return gains;
}

void writeGains()
{
    const AGains gains = madeGains();
    AGainFilesDlg dialog(gains);
    dialog.SetFile("gains.fits");
    if (dialog.DoModal() == IDOK)
        std::printf("written to %s\n", dialog.GetFile().c_str());
}

void readGains()
{
    GainFacts data;
    data.antennas = antennas;
    data.ifs = 4;
    data.hands = {'R', 'L'};
    data.referenceDay = 2451545.5;
    data.end = 0.4;
    AGainFilesDlg dialog(data);
    dialog.SetFile("gains.fits");
    if (dialog.DoModal() == IDOK)
        std::printf("%s\n", gainSummary(dialog.GetGains()).c_str());
}

constexpr struct {
    const char* name;
    void (*show)();
} dialogs[] = {
    {"parameters", askParameters},
    {"selection", askSelection},
    {"areas", askAreas},
    {"beam", askBeam},
    {"selfcal", askSelfCalibration},
    {"write", writeGains},
    {"read", readGains},
};

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    const std::string wanted = argc > 1 ? argv[1] : "";
    int isKnown = 0;
    for (const auto& each : dialogs)
        if (wanted.empty() || wanted == each.name) {
            isKnown = 1;
            each.show();
        }
    ShutdownPlatform();
    return isKnown ? 0 : 1;
}
