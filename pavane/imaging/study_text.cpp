#include "pavane/imaging/study_text.h"

#include "pavane/imaging/TextFields.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace pavane
{

namespace
{

constexpr int mostNumber = 1'000'000'000;
constexpr std::array<const char*, 4> kinds = {"dirty", "clean", "residual", "model"};
constexpr std::string_view studyHead = "# pavane study ", roundHead = "# pavane round ";

void addMap(FieldWriter& out, const CleanParameters& p)
{
    out.add("width", p.width);
    out.add("height", p.height);
    out.number("cell", p.cell);
    out.add("weighting", nameOf(p.weighting));
    out.number("robust", p.weighting == ImageWeighting::briggs ? p.robust : 0);
    out.number("taper", p.taper);
    out.list("ifs", p.ifs);
    out.numbers("shift", {p.shiftX, p.shiftY});
}

void addParameters(FieldWriter& out, const CleanParameters& p)
{
    addMap(out, p);
    if (p.weighting != ImageWeighting::briggs)
        out.number("robust", p.robust);
    out.add("polarisation", p.form);
    out.numbers("times", {p.start, p.end});
    out.number("gain", p.gain);
    out.number("majorgain", p.majorGain);
    out.add("iterations", p.iterations);
    out.number("threshold", p.threshold);
    out.add("thresholdunit", p.unit == ThresholdUnit::sigma ? "sigma" : "mJy");
    out.add("automask", p.isAutoMask ? 1 : 0);
    out.number("automasksigma", p.autoMaskSigma);
    out.add("multiscale", p.isMultiscale ? 1 : 0);
    out.add("stopseachcycle", p.stopsEachCycle ? 1 : 0);
}

int readMap(FieldReader& in, CleanParameters& p)
{
    const std::string& name = in.name();
    if (name == "width")
        p.width = static_cast<int>(in.whole(0, mostNumber));
    else if (name == "height")
        p.height = static_cast<int>(in.whole(0, mostNumber));
    else if (name == "cell")
        p.cell = in.number();
    else if (name == "weighting") {
        if (!weightingOf(in.value(), p.weighting))
            in.refuse("is no weighting");
    } else if (name == "robust")
        p.robust = in.number();
    else if (name == "taper")
        p.taper = in.number();
    else if (name == "ifs")
        p.ifs = in.list(0);
    else if (name == "shift") {
        const std::vector<double> shift = in.numbers(2, 2);
        p.shiftX = shift[0];
        p.shiftY = shift[1];
    } else
        return 0;
    return 1;
}

int readParameters(FieldReader& in, CleanParameters& p)
{
    const std::string& name = in.name();
    if (readMap(in, p))
        return 1;
    if (name == "polarisation")
        p.form = in.value();
    else if (name == "times") {
        const std::vector<double> times = in.numbers(2, 2);
        p.start = times[0];
        p.end = times[1];
    } else if (name == "gain")
        p.gain = in.number();
    else if (name == "majorgain")
        p.majorGain = in.number();
    else if (name == "iterations")
        p.iterations = in.whole(0, mostNumber);
    else if (name == "threshold")
        p.threshold = in.number();
    else if (name == "thresholdunit")
        p.unit = in.value() == "sigma" ? ThresholdUnit::sigma : ThresholdUnit::millijansky;
    else if (name == "automask")
        p.isAutoMask = in.flag();
    else if (name == "automasksigma")
        p.autoMaskSigma = in.number();
    else if (name == "multiscale")
        p.isMultiscale = in.flag();
    else if (name == "stopseachcycle")
        p.stopsEachCycle = in.flag();
    else
        return 0;
    return 1;
}

void addTag(FieldWriter& out, std::string_view name, const DataTag& tag)
{
    out.add(name, tag.isKnown ? "known " + tag.what : "unknown");
}

DataTag readTag(FieldReader& in)
{
    constexpr std::string_view known = "known ";
    if (in.value().compare(0, known.size(), known) == 0)
        return {1, in.value().substr(known.size())};
    if (in.value() != "unknown")
        in.refuse("is neither known nor unknown");
    return {};
}

StudyLink readLink(FieldReader& in)
{
    StudyLink link;
    const std::vector<std::string> words = in.words();
    if (words.size() < 5) {
        in.refuse("is no link of a chain");
        return link;
    }
    std::array<int, 3> numbers{};
    for (std::size_t i = 0; i < 3; ++i)
        if (!stoval(words[i], numbers[i]) || numbers[i] < 0)
            in.refuse("is no link of a chain");
    link.id = numbers[0];
    link.gains = numbers[1];
    link.isOn = numbers[2] != 0;
    link.name = words[3];
    std::string_view ids = words[4];
    while (ids.size() > 1) {  // "-1-2": the ids, each behind its minus
        const std::size_t end = std::min(ids.find('-', 1), ids.size());
        int id = 0;
        if (ids.front() != '-' || !stoval(ids.substr(1, end - 1), id) || id < 0) {
            in.refuse("is no link of a chain");
            return link;
        }
        link.solvedOn.push_back(id);
        ids.remove_prefix(end);
    }
    return link;
}

void addLink(FieldWriter& out, const StudyLink& link)
{
    std::string ids = "-";
    for (const int id : link.solvedOn)
        ids.append(ids == "-" ? "" : "-").append(std::to_string(id));
    out.words("link", {std::to_string(link.id), std::to_string(link.gains), link.isOn ? "1" : "0",
                       link.name, ids});
}

int readSettings(FieldReader& in, StudySettings& settings)
{
    const std::string& name = in.name();
    if (name == "link")
        settings.chain.push_back(readLink(in));
    else if (name == "flags")
        settings.flags = static_cast<int>(in.whole(0, mostNumber));
    else if (name == "keepsfailed")
        settings.keepsFailed = in.flag();
    else if (name == "keepsweights")
        settings.keepsWeights = in.flag();
    else if (name == "round")
        settings.round = static_cast<int>(in.whole(-1, mostNumber));
    else if (name == "other")
        settings.other.push_back(in.value());
    else
        return readParameters(in, settings.parameters);
    return 1;
}

void readNote(FieldReader& in, StudyRecord& record)
{
    const std::string& value = in.value();
    const std::size_t blank = std::min(value.find(' '), value.size());
    int id = 0;
    if (!stoval(std::string_view(value).substr(0, blank), id) || id < 0)
        in.refuse("is no note of a round");
    else
        record.notes[id] = value.substr(std::min(blank + 1, value.size()));
}

void addNumbers(FieldWriter& out, const RoundNumbers& n)
{
    out.add("cleaned", n.iterations);
    out.add("cleanedinall", n.allIterations);
    out.numbers("fluxes", {n.modelFlux, n.restoredFlux, n.restoredPeak});
    out.number("peak", n.peak);
    out.numbers("peakat", {static_cast<double>(n.peakX), static_cast<double>(n.peakY)});
    out.numbers("noise", {n.noiseOutside, n.noiseInside, n.dynamicRange});
    out.number("cleanedto", n.threshold);
    out.add("maskcells", n.maskCells);
    out.add("cycles", n.cycles);
    out.number("seconds", n.seconds);
}

int cellOf(double value) { return value >= 0 && value < mostNumber ? static_cast<int>(value) : -1; }

int readNumbers(FieldReader& in, RoundNumbers& n)
{
    const std::string& name = in.name();
    if (name == "cleaned")
        n.iterations = in.whole(0, INT64_MAX);
    else if (name == "cleanedinall")
        n.allIterations = in.whole(0, INT64_MAX);
    else if (name == "fluxes") {
        const std::vector<double> v = in.numbers(3, 3, 1);
        n.modelFlux = v[0];
        n.restoredFlux = v[1];
        n.restoredPeak = v[2];
    } else if (name == "peak")
        n.peak = in.number(1);
    else if (name == "peakat") {
        const std::vector<double> v = in.numbers(2, 2);
        n.peakX = cellOf(v[0]);
        n.peakY = cellOf(v[1]);
    } else if (name == "noise") {
        const std::vector<double> v = in.numbers(3, 3, 1);
        n.noiseOutside = v[0];
        n.noiseInside = v[1];
        n.dynamicRange = v[2];
    } else if (name == "cleanedto")
        n.threshold = in.number(1);
    else if (name == "maskcells")
        n.maskCells = in.whole(0, INT64_MAX);
    else if (name == "cycles")
        n.cycles = static_cast<int>(in.whole(0, mostNumber));
    else if (name == "seconds")
        n.seconds = in.number(1);
    else
        return 0;
    return 1;
}

int readData(FieldReader& in, DataState& data)
{
    const std::string& name = in.name();
    if (name == "chain")
        data.chain = in.list(1);
    else if (name == "flags")
        data.flags = static_cast<int>(in.whole(0, mostNumber));
    else if (name == "keepsfailed")
        data.keepsFailed = in.flag();
    else if (name == "keepsweights")
        data.keepsWeights = in.flag();
    else
        return 0;
    return 1;
}

RoundKind readKind(FieldReader& in)
{
    for (std::size_t i = 0; i < kinds.size(); ++i)
        if (in.value() == kinds[i])
            return static_cast<RoundKind>(i);
    in.refuse("is no kind of a round");
    return RoundKind::dirty;
}

void readCourse(FieldReader& in, StudyRound& round)
{
    const std::vector<double> v = in.numbers(2, 2);
    if (v[0] >= 0 && v[0] < 1e15)
        round.course.push_back({static_cast<long long>(v[0]), v[1]});
    else
        in.refuse("is no number that can be");
}

void readRoundField(FieldReader& in, StudyRound& round)
{
    const std::string& name = in.name();
    if (name == "id")
        round.id = static_cast<int>(in.whole(0, mostNumber));
    else if (name == "parent")
        round.parent = static_cast<int>(in.whole(-1, mostNumber));
    else if (name == "kind")
        round.kind = readKind(in);
    else if (name == "areas")
        round.areas = in.key();
    else if (name == "mask")
        round.mask = in.key();
    else if (name == "maps")
        round.maps = in.key();
    else if (name == "beam") {
        const std::vector<double> v = in.numbers(3, 3);
        round.beam = {v[0], v[1], v[2]};
    } else if (name == "course")
        readCourse(in, round);
    else if (name == "stopped")
        round.stopReason = in.value();
    else if (name == "command")
        round.commands.push_back(in.words());
    else if (name == "hasmodel")
        round.hasModel = in.flag();
    else if (!readData(in, round.data) && !readNumbers(in, round.numbers) &&
             !readParameters(in, round.parameters))
        in.unknown();
}

StudyTextKind kindOf(const FieldReader& in, std::string& fault)
{
    fault = in.fault();
    return !in.isGood()   ? StudyTextKind::bad
           : in.isNewer() ? StudyTextKind::newer
                          : StudyTextKind::good;
}

}  // namespace

std::string studyText(const StudyRecord& record)
{
    FieldWriter out("# pavane study 1");
    const StudySettings& s = record.settings;
    out.add("source", record.source);
    out.add("uvfits", record.uvfits);
    addTag(out, "modelcolumn", record.model);
    addTag(out, "correctedcolumn", record.corrected);
    out.add("stamp", record.stamp);
    out.add("nextround", record.nextRound);
    addParameters(out, s.parameters);
    for (const StudyLink& link : s.chain)
        addLink(out, link);
    out.add("flags", s.flags);
    out.add("keepsfailed", s.keepsFailed ? 1 : 0);
    out.add("keepsweights", s.keepsWeights ? 1 : 0);
    out.add("round", s.round);
    for (const auto& [id, note] : record.notes)
        out.add("note", std::to_string(id) + " " + note);
    for (const std::string& line : s.other)
        out.add("other", line);
    return out.finish();
}

StudyTextKind readStudyText(std::string_view text, StudyRecord& record, std::string& fault)
{
    record = {};
    FieldReader in(text, studyHead);
    while (in.next()) {
        const std::string& name = in.name();
        if (name == "source")
            record.source = in.value();
        else if (name == "uvfits")
            record.uvfits = in.value();
        else if (name == "modelcolumn")
            record.model = readTag(in);
        else if (name == "correctedcolumn")
            record.corrected = readTag(in);
        else if (name == "stamp")
            record.stamp = in.value();
        else if (name == "nextround")
            record.nextRound = static_cast<int>(in.whole(0, mostNumber));
        else if (name == "note")
            readNote(in, record);
        else if (!readSettings(in, record.settings))
            in.unknown();
    }
    return kindOf(in, fault);
}

std::string roundText(const StudyRound& round)
{
    FieldWriter out("# pavane round 1");
    out.add("id", round.id);
    out.add("parent", round.parent);
    out.add("kind", kinds[static_cast<std::size_t>(round.kind)]);
    out.list("chain", round.data.chain);
    out.add("flags", round.data.flags);
    out.add("keepsfailed", round.data.keepsFailed ? 1 : 0);
    out.add("keepsweights", round.data.keepsWeights ? 1 : 0);
    addParameters(out, round.parameters);
    out.add("areas", round.areas);
    out.add("mask", round.mask);
    out.add("maps", round.maps);
    out.numbers("beam", {round.beam.major, round.beam.minor, round.beam.angle});
    out.add("hasmodel", round.hasModel ? 1 : 0);
    addNumbers(out, round.numbers);
    out.add("stopped", round.stopReason);
    for (const RoundPoint& point : round.course)
        out.numbers("course", {static_cast<double>(point.iterations), point.peak});
    for (const std::vector<std::string>& command : round.commands)
        out.words("command", command);
    return out.finish();
}

StudyTextKind readRoundText(std::string_view text, StudyRound& round, std::string& fault)
{
    round = {};
    FieldReader in(text, roundHead);
    while (in.next())
        readRoundField(in, round);
    // the form and times of the data are those of the parameters
    round.data.form = round.parameters.form;
    round.data.start = round.parameters.start;
    round.data.end = round.parameters.end;
    return kindOf(in, fault);
}

std::string contentKey(std::string_view bytes)
{
    // two of FNV-1a's kind with other primes: enough to tell areas and masks of a study apart
    std::uint64_t one = 14695981039346656037U, two = 0x9E3779B97F4A7C15U;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        one = (one ^ byte) * 1099511628211U;
        two = (two + byte) * 0xD6E8FEB86659FD93U;
        two ^= two >> 29U;
    }
    std::string digits;
    for (const std::uint64_t half : {one, two})
        for (unsigned shift = 64; shift > 0; shift -= 4)
            digits += "0123456789abcdef"[(half >> (shift - 4)) & 15U];
    return digits;
}

std::string joined(const std::vector<int>& numbers)
{
    std::string text;
    for (const int each : numbers)
        text.append(text.empty() ? "" : ",").append(std::to_string(each));
    return text;
}

std::string mapWords(const CleanParameters& parameters)
{
    FieldWriter out("map");
    addMap(out, parameters);
    return out.finish();
}

}  // namespace pavane
