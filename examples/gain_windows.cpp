// Gains of antennas in a graph, in a table and as means, which edit the same gains:
//   gain_windows GAINS.txt            windows; a text file of gains as writeGainText makes it
//   gain_windows GAINS.txt OUT.png    a picture of the first antennas without one
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/windows/save_axis.h"
#include "pavane/calibration/windows/AGainGraphWnd.h"
#include "pavane/calibration/windows/AGainTbl.h"
#include "pavane/calibration/windows/AMeanGainWnd.h"
#include "pavane/windows/library_resources.h"
#include "platform/platform.h"
#include "tessel/gains/gain_files.h"

#include <algorithm>
#include <cstdio>
#include <memory>

using namespace pavane;

namespace
{

/// The program ends with its window.
class Graph : public AGainGraphWnd
{
protected:
    void OnNotice(const CString& text) override { SetWindowText("Gains - " + text); }
    void OnDestroy() override
    {
        AGainGraphWnd::OnDestroy();
        PostQuitMessage(0);
    }
};

int draw(const AGains& gains, const char* file)
{
    const GainChartChoice choice;
    const int rows = std::min(choice.rowsOfPage, static_cast<int>(gains.antennas().size()));
    const std::unique_ptr<A2DAxisMulti> axis(newChartAxis(gainChart(gains, choice)));
    axis->setPanels(gainColumns(choice), rows, gainColumns(choice) * rows);
    CString message;
    return SaveAxis(*axis, {1200, 900}, file, message);
}

int show(AGains& gains)
{
    constexpr unsigned style = WS_OVERLAPPEDWINDOW | WS_VISIBLE;
    EditedGains edited(gains);
    Graph graph;
    AGainTbl table;
    AMeanGainWnd means;
    graph.SetGains(&edited);
    table.SetGains(&edited);
    means.SetGains(&edited);
    (void)means.Create("", "Mean gains", style, CRect(940, 480, 1840, 860), nullptr, 0);
    (void)table.Create("", "Table of gains", style | WS_VSCROLL, CRect(940, 40, 1840, 440), nullptr,
                       0);
    (void)graph.Create("", "Gains", style, CRect(40, 40, 920, 860), nullptr, 0);
    graph.SetFocus();
    return RunMessages();
}

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, argc > 2 ? PlatformUse::pictures : PlatformUse::windows))
        return 1;
    AddLibraryResources();
    int result = 1;
    AGains gains;
    std::string error = "a file of gains is not named";
    if (argc < 2 || !readGainText(argv[1], gains, error))
        (void)std::fprintf(stderr, "%s\n", error.c_str());
    else
        result = argc > 2 ? !draw(gains, argv[2]) : show(gains);
    ShutdownPlatform();
    return result;
}
