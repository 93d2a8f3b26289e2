#include "pavane/dialogs/values/ACleanSelectionPM.h"

#include "pavane/dialogs/values/AUVXTIntervalPM.h"
#include "pavane/dialogs/values/number_list.h"
#include "tessel/stokes_name.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace pavane
{

namespace
{

constexpr int mostIfs = 65536;
constexpr double secondsPerDay = 86400;
constexpr double greatestTime = 1e12;
/// Seconds by which a choice from the first or to the last time of the data goes beyond them: the
/// end of a selection does not belong to it, and times that are stored in single precision jitter.
constexpr double beyondData = 1;

struct FormName {
    const char* form;
    const char* text;
};
constexpr FormName formNames[] = {
    {"mean", "Mean of the hands that are there"},
    {"strict", "Both hands, where both are there"},
    {"RR", "RR alone"},
    {"LL", "LL alone"},
    {"XX", "XX alone"},
    {"YY", "YY alone"},
    {"I", "Total intensity as stored"},
};

int readTimeEntry(const CString& text, double& time)
{
    double read = 0;
    if (!stoval(text, read) || !(std::abs(read) <= greatestTime))
        return 0;
    time = read;
    return 1;
}

}  // namespace

std::vector<std::string> polarisationForms(const std::vector<std::string>& products)
{
    const auto has = [&](const char* product) {
        return std::find(products.begin(), products.end(), product) != products.end();
    };
    std::vector<std::string> forms;
    for (const FormName& each : formNames)
        if (has(each.form))
            forms.emplace_back(each.form);
    if (forms.empty())
        return forms;
    if ((has("RR") && has("LL")) || (has("XX") && has("YY")))
        forms.insert(forms.begin(), "strict");
    forms.insert(forms.begin(), "mean");
    return forms;
}

CString polarisationFormText(const std::string& form)
{
    for (const FormName& each : formNames)
        if (form == each.form)
            return each.text;
    return form;
}

CString faultOfGroups(const std::vector<std::vector<int>>& groups, int ifs)
{
    std::vector<int> all;
    for (const std::vector<int>& group : groups)
        all.insert(all.end(), group.begin(), group.end());
    if (all.empty())
        return "No IF is in a group, so that there is nothing to make a map of.";
    std::sort(all.begin(), all.end());
    if (all.front() < 0 || all.back() >= ifs)
        return "IF " + std::to_string(all.back() + 1) + " is not in the data, which have " +
               std::to_string(ifs) + ".";
    const auto twice = std::adjacent_find(all.begin(), all.end());
    if (twice != all.end())
        return "IF " + std::to_string(*twice + 1) +
               " is in two groups. Here an IF can be in one only.";
    return {};
}

void ACleanSelectionPM::SetData(const AUVXFile& file, const AUVXTIntervalPM& times)
{
    std::vector<std::string> products;
    for (const int code : file.header().stokes)
        products.push_back(stokesName(code));
    forms = polarisationForms(products);
    frequencies = file.fqTbl();
    infoStart = times.infoStart;
    infoStop = times.infoStop;
}

std::vector<int> ACleanSelectionPM::ifs() const
{
    std::vector<int> used;
    for (const std::vector<int>& group : groups)
        used.insert(used.end(), group.begin(), group.end());
    std::sort(used.begin(), used.end());
    used.erase(std::unique(used.begin(), used.end()), used.end());
    if (static_cast<int>(used.size()) == frequencies.ifCount())
        used.clear();
    return used;
}

void ACleanSelectionPM::giveTo(CleanParameters& parameters) const
{
    parameters.form = form;
    parameters.ifs = ifs();
    const bool isWhole = !(start < stop);
    const bool isKnown = infoStart < infoStop;
    const double from = isKnown && start <= infoStart ? infoStart - beyondData : start;
    const double to = isKnown && stop >= infoStop ? infoStop + beyondData : stop;
    parameters.start = isWhole ? 0 : from / secondsPerDay;
    parameters.end = isWhole ? 0 : to / secondsPerDay;
}

void ACleanSelectionPM::takeFrom(const CleanParameters& parameters)
{
    form = parameters.form;
    groups.clear();
    for (const int i : parameters.ifs)
        groups.push_back({i});
    start = parameters.start * secondsPerDay;
    stop = parameters.end * secondsPerDay;
    if (!(infoStart < infoStop) || !(start < stop))
        return;
    start = std::max(start, infoStart);
    stop = std::min(stop, infoStop);
}

std::vector<RecordEntry> ACleanSelectionPM::entries() const
{
    return {{"CS FORM", form},
            {"CS GROUPS", numberListsText(groups)},
            {"CS TS", valToStr(start)},
            {"CS TE", valToStr(stop)}};
}

int ACleanSelectionPM::takeEntry(const RecordEntry& entry)
{
    if (entry.key == "CS GROUPS")
        return readNumberLists(entry.text, mostIfs, groups);
    if (entry.key == "CS TS")
        return readTimeEntry(entry.text, start);
    if (entry.key == "CS TE")
        return readTimeEntry(entry.text, stop);
    const bool isForm = entry.key == "CS FORM" &&
                        std::any_of(std::begin(formNames), std::end(formNames),
                                    [&](const FormName& each) { return entry.text == each.form; });
    if (isForm)
        form = entry.text;
    return isForm;
}

}  // namespace pavane
