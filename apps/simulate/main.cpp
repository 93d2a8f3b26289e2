// Makes the demo's input: a VLBI observation of a jet, as dirty map, dirty beam, CLEAN map,
// component file, visibilities and a list of u,v points.
#include "apps/simulate/clean.h"
#include "apps/simulate/imaging.h"
#include "apps/simulate/jet_model.h"
#include "apps/simulate/options.h"
#include "apps/simulate/uv_file.h"
#include "pavane/axes/maps/cells/fit_beam.h"
#include "tessel/fits_map.h"
#include "tessel/plain_text.h"
#include "tessel/SafeFile.h"
#include "tessel/value_text.h"

#include <cmath>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <system_error>

using namespace pavane;

namespace
{

enum ExitStatus { done = 0, wrongUse = 1, badOutput = 2 };

constexpr double degreesPerMas = 1 / 3.6e6;
constexpr double cleanGain = 0.08;
/// The CLEAN stops at this many times the noise of the map.
constexpr double cleanDepth = 3.0;
/// One u,v point of so many goes into the list.
constexpr std::size_t uvEvery = 97;

MapHeader headerOf(const SimulateOptions& o, const MapBeam& beam)
{
    const double step = o.cell * degreesPerMas;
    MapHeader header;
    const double middle = o.size / 2 + 1;
    header.axes = {{o.size, "RA---SIN", "deg", 83.5, middle, -step, 0},
                   {o.size, "DEC--SIN", "deg", o.observation.declination, middle, step, 0},
                   {1, "FREQ", "Hz", o.observation.frequency, 1, o.observation.ifSpacing, 0},
                   {1, "STOKES", "", 1, 1, 1, 0}};
    header.bunit = "JY/BEAM";
    header.object = "SIMULATED";
    header.telescope = "VLBA";
    header.dateObs = "2026-03-20";
    header.equinox = 2000;
    header.hasBeam = 1;
    header.bmaj = beam.major * step;
    header.bmin = beam.minor * step;
    header.bpa = beam.angle;
    return header;
}

/// The middle of a beam that is wider than the map.
AMatrix<float> middleOf(const AMatrix<float>& wide, int size)
{
    AMatrix<float> middle(size, size);
    const int shift = wide.rows() / 2 - size / 2;
    for (int r = 0; r < middle.rows(); ++r)
        std::copy_n(wide.row(r + shift) + shift, size, middle.row(r));
    return middle;
}

int writeText(const std::string& file, const std::string& text, std::string& error)
{
    SafeFile out;
    if (out.open(file) && out.file().write(text.data(), static_cast<std::int64_t>(text.size())) &&
        out.commit())
        return 1;
    error = file + ": " + out.fault();
    return 0;
}

int writeMap(const std::string& file, const AMatrix<float>& cells, const MapHeader& header,
             std::string& error)
{
    if (writeFitsMap(file, cells, header, error))
        return 1;
    error = file + ": " + error;
    return 0;
}

std::string uvText(const Visibilities& samples)
{
    std::string text = "u,v\n";
    for (std::size_t i = 0; i < samples.u.size(); i += uvEvery)
        text += valToStr(samples.u[i]) + ',' + valToStr(samples.v[i]) + '\n';
    return text;
}

/// Makes the folder and those that it lies in.
int makeFolder(const std::string& folder, std::string& error)
{
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    if (!failed && std::filesystem::is_directory(folder, failed))
        return 1;
    error = folder + ": the folder cannot be made: " +
            (failed ? failed.message() : std::string("there is a file of that name"));
    return 0;
}

int complain(const std::string& error)
{
    std::fprintf(stderr, "pavane-simulate: %s\n", plainText(error).c_str());
    return badOutput;
}

int simulate(const SimulateOptions& o, std::string& error)
{
    const AComponents jet = jetModel();
    Gains gains;
    if (!o.gains.empty() && !gains.read(o.gains, error))
        return 0;
    Visibilities samples = observe(o.observation, jet);
    const std::vector<ObservedGroup> groups = observedGroups(o.observation);
    const std::vector<Hands> hands = correlated(o.observation, groups, gains, samples);
    const double cell = o.cell / 1000;
    temperWeights(samples, o.size * cell);
    const AMatrix<float> map = dirtyImage(samples, o.size, cell, 0);
    const AMatrix<float> wideBeam = dirtyImage(samples, 2 * o.size, cell, 1);
    if (!map.rows() || !wideBeam.rows()) {
        error = "there is no sample, or no memory for the maps";
        return 0;
    }
    MapBeam beam;  // in cells; east is to the left
    const TMinMax cells{0, 1.0 - wideBeam.columns(), 0, wideBeam.rows() - 1.0};
    if (!fitBeam(AFloatMatrixAccess(wideBeam), cells, beam)) {
        error = "the main lobe of the dirty beam does not lie within the map or has too few cells";
        return 0;
    }
    const double noise = o.observation.noise / std::sqrt(static_cast<double>(samples.u.size()));
    const MapHeader header = headerOf(o, beam);
    MapHeader beamHeader = header;
    beamHeader.bunit.clear();
    std::ostringstream model;
    jet.Store(model);
    const std::string folder = o.folder + '/';
    std::printf("%zu samples of %d IFs over %s hours; beam %s x %s mas at %s degrees\n",
                samples.u.size(), o.observation.ifs, valToStr(o.observation.hours, 3).c_str(),
                valToStr(beam.major * o.cell, 3).c_str(), valToStr(beam.minor * o.cell, 3).c_str(),
                valToStr(beam.angle, 3).c_str());
    return writeMap(folder + "dirty.fits", map, header, error) &&
           writeMap(folder + "beam.fits", middleOf(wideBeam, o.size), beamHeader, error) &&
           writeMap(folder + "clean.fits",
                    cleaned(map, wideBeam, beam, o.iterations, cleanGain, cleanDepth * noise),
                    header, error) &&
           writeText(folder + "model.txt", model.str(), error) &&
           writeUvFile(folder + "observation.uvfits", o.observation, groups, hands, o.unsorted,
                       error) &&
           writeText(folder + "uv.csv", uvText(samples), error);
}

}  // namespace

int main(int argc, char** argv)
{
    std::signal(SIGXFSZ, SIG_IGN);
    SimulateOptions options;
    std::string error;
    if (!parseSimulateOptions(std::vector<std::string>(argv + 1, argv + argc), options, error)) {
        (void)complain(error);
        std::fprintf(stderr, "%s\n", usageLine(simulateProgram()).c_str());
        return wrongUse;
    }
    if (options.help || options.version) {
        const std::string text =
            options.help ? helpText(simulateProgram()) : versionLine(simulateProgram());
        return std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0 ? done : badOutput;
    }
    return makeFolder(options.folder, error) && simulate(options, error) ? done : complain(error);
}
