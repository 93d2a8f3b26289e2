#include "apps/view/data_batch.h"

#include "apps/view/batch_output.h"
#include "apps/view/print_batch.h"
#include "apps/view/printed_table.h"
#include "apps/view/progress.h"
#include "apps/view/table_export.h"
#include "apps/view/UvLegendGraph.h"
#include "apps/view/UvPlotGraph.h"
#include "apps/view/visibility_plot.h"
#include "pavane/axes/maps/MapFigure.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/tables/components/component_file.h"
#include "pavane/tables/uvdata/UvObservation.h"
#include "tessel/plain_text.h"

#include <limits>
#include <memory>

namespace pavane
{

namespace
{

constexpr double megalambda = 1e6;
/// Digits that tell any two 32-bit floats apart.
constexpr int floatDigits = 9;

int refuse(const std::string& file, std::string& error)
{
    error = file + ": " + error;
    return 0;
}

std::string countLine(const char* key, std::int64_t count, const char* unit)
{
    return std::string(key) + ' ' + std::to_string(count) + ' ' + unit + '\n';
}

std::string totalsText(const UvTotals& totals)
{
    const double blank = std::numeric_limits<double>::quiet_NaN();
    const int isAny = totals.leastUv <= totals.greatestUv;
    const auto line = [&](const char* key, double value, const char* unit) {
        return statLine(key, isAny ? value : blank, floatDigits, unit);
    };
    return countLine("groups", totals.groups, "groups") +
           countLine("visibilities", totals.visibilities, "visibilities") +
           countLine("flagged", totals.flagged, "visibilities") +
           countLine("not_finite", totals.notFinite, "visibilities") +
           line("uv_min", totals.leastUv / megalambda, "Mlambda") +
           line("uv_max", totals.greatestUv / megalambda, "Mlambda") +
           line("amp_min", totals.leastAmplitude, "Jy") +
           line("amp_max", totals.greatestAmplitude, "Jy");
}

/// The axis with its points and a model, as pictures have it.
struct UvPicture {
    std::unique_ptr<A2DAxis> axis;
    MapFigure figure;

    UvPicture(const AUVXFile& file, const UvPlotPoints& points, const AComponents& model)
        : axis(newUvAxis(points.view()))
    {
        auto* const graph = new UvPlotGraph(axis.get());
        graph->SetPoints(&points);
        graph->SetKeyOf(&file);
        graph->SetHeader(uvPlotHeader(file, points));
        if (model.count() > 0)
            (new UvModelGraph(axis.get()))->compute(model, points.places(), points.view());
        (void)new UvLegendGraph(axis.get(), *graph);
        figure.setAxis(axis.get());
        figure.setEqualUnits(points.view().kind == UvView::Kind::coverage);
    }
};

/// The baselines of a file, those of its times.
int findBaselines(const ViewOptions& options, UvObservation& observation, std::string& error)
{
    ProgressLine progress("Looking for baselines in " + plainText(options.map));
    while (observation.step())
        (void)progress.show(observation.done());
    error = observation.error();
    return error.empty();
}

/// Reads the panels of a plot that is not of distance.
int readPanels(const ViewOptions& options, UvObservation& observation, const UvMarks& marks,
               const AComponents& model, PanelChart& chart, std::string& error)
{
    const int hasAll = options.plot.kind == DataPlot::closure && options.plot.baselines.empty();
    if (!hasAll && !findBaselines(options, observation, error))
        return refuse(options.map, error);
    ProgressLine progress("Reading " + plainText(options.map));
    if (!readVisibilityChart(
            observation.file(), options.plot, observation.baselines(), marks, model,
            [&](double done) { return progress.show(done); }, chart, error))
        return refuse(options.map, error);
    return 1;
}

/// Draws all panels, on as many pages as they need.
void putPanels(const PanelChart& chart, int panelsOfPage, PictureJob& job)
{
    const auto count = static_cast<int>(chart.panels.size());
    const int most = panelsOfPage > 0 ? panelsOfPage : mostPanels;
    const std::shared_ptr<A2DAxisMulti> axis(newChartAxis(chart, count > most ? most : 0));
    job.pages = axis->getPages();
    job.turnTo = [axis](int page) { axis->setPage(page); };
    job.draw = [axis](CDC& dc, const CRect& rect) {
        CRect whole = rect;
        axis->draw(dc, whole);
    };
}

/// Reads what is plotted; the numbers of it alone where no picture is asked for.
int readPoints(const ViewOptions& options, UvPlotPoints& points, std::string& error)
{
    ProgressLine progress("Reading " + plainText(options.map));
    while (points.step())
        (void)progress.show(points.done());
    error = points.error();
    return error.empty() || refuse(options.map, error);
}

}  // namespace

int runDataBatch(char** argv, const ViewOptions& options, std::string& error)
{
    AComponents model;
    UvObservation observation;
    if (!options.model.empty() && !readComponentFile(options.model, model, error))
        return refuse(options.model, error);
    if (!observation.open(options.map, error))
        return refuse(options.map, error);
    AUVXFile& file = observation.file();
    UvMarks marks;
    marks.times = options.times;
    if (!options.times.isAll() && !observation.limitTimes(options.times)) {
        error = observation.error();
        return refuse(options.map, error);
    }
    std::vector<std::string> notes;
    for (const std::string& note : file.notes())
        notes.push_back(options.map + ": " + note);
    printNotes(notes);
    notes.clear();

    const int wantsPlot = options.wantsPicture() || options.wantsPrintedPicture();
    const int wantsNumbers =
        options.stats || (!wantsPlot && options.tables.empty() && !options.print.wanted());
    const int wantsPanels = wantsPlot && !isOfPoints(options.plot.kind);
    UvPlotPoints points(file, marks, wantsPlot && !wantsPanels ? UvPlotPoints::usualMost : 0,
                        options.plot.view());
    if ((wantsNumbers || (wantsPlot && !wantsPanels)) && !readPoints(options, points, error))
        return 0;
    PanelChart chart;
    if (wantsPanels && !readPanels(options, observation, marks, model, chart, error))
        return 0;
    AComponents none;
    const int hasTables = writeTables(options, &observation, none, nullptr, notes, error);
    printNotes(notes);
    if (!hasTables)
        return 0;
    const auto newJob = [&] {
        const std::string& object = file.header().object;
        PictureJob drawing{
            object.empty() ? "visibilities" : object, options.width, options.height, 1, {}};
        if (wantsPanels)
            putPanels(chart, options.plot.panels, drawing);
        else
            drawing.draw = [picture = std::make_shared<UvPicture>(file, points, model)](
                               CDC& dc, const CRect& rect) {
                picture->figure.draw(dc, picture->figure.layOut(dc, rect));
            };
        BatchJob job{std::move(drawing), usualCaption(file.header()), {}};
        if (options.wantsPrintedTable())
            job.newWindow = [&] {
                return newPrintedTable(options.tables.back(), &observation, &none, nullptr);
            };
        return job;
    };
    if ((wantsPlot || options.print.wanted()) && !writePictures(argv, options, newJob, error))
        return 0;
    return !wantsNumbers || printText(totalsText(points.totals()), error);
}

}  // namespace pavane
