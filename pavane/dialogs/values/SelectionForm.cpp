#include "pavane/dialogs/values/SelectionForm.h"

#include "pavane/dialogs/values/number_list.h"
#include "pavane/dialogs/values/time_texts.h"

#include <algorithm>

namespace pavane
{

void SelectionForm::setRecord(const ACleanSelectionPM& record)
{
    record_ = opened_ = record;
    const std::vector<std::string>& forms = record.forms;
    const auto at = std::find(forms.begin(), forms.end(), record.form);
    setChoice(form, at != forms.end() ? static_cast<int>(at - forms.begin())
                    : forms.empty()   ? -1
                                      : 0);
    const bool isWhole = !(record.start < record.stop);
    setText(start, timeText(isWhole ? record.infoStart : record.start, 1));
    setText(stop, timeText(isWhole ? record.infoStop : record.stop, 1));
    groups_ = AFreqGroupArray(record.frequencies);
    const int count = record.frequencies.ifCount();
    const auto isThere = [&](const std::vector<int>& group) {
        return !group.empty() && *std::min_element(group.begin(), group.end()) >= 0 &&
               *std::max_element(group.begin(), group.end()) < count;
    };
    if (record.groups.empty() || !std::all_of(record.groups.begin(), record.groups.end(), isThere))
        return;
    groups_.Free();
    for (const std::vector<int>& group : record.groups) {
        ABitArray bits(count);
        for (const int i : group)
            bits.set(i, 1);
        groups_.Add(bits);
    }
}

void SelectionForm::takeWholeTime()
{
    setText(start, timeText(record_.infoStart, 1));
    setText(stop, timeText(record_.infoStop, 1));
}

std::vector<CString> SelectionForm::lines(int field) const
{
    std::vector<CString> lines;
    if (field == form)
        for (const std::string& each : record_.forms)
            lines.push_back(polarisationFormText(each));
    return lines;
}

std::vector<std::vector<int>> SelectionForm::groupLists() const
{
    std::vector<std::vector<int>> lists;
    for (int g = 0; g < groups_.count(); ++g) {
        std::vector<int> list;
        for (int i = 0; i < record_.frequencies.ifCount(); ++i)
            if (groups_(g).get(i))
                list.push_back(i);
        if (!list.empty())
            lists.push_back(std::move(list));
    }
    return lists;
}

FormRefusal SelectionForm::read(ACleanSelectionPM& pm) const
{
    const int chosen = choice(form);
    if (chosen < 0 || chosen >= static_cast<int>(record_.forms.size()))
        return {form, "The data have no parallel hands to make a map of."};
    double from = 0, to = 0;
    if (!readTime(text(start), 1, from))
        return {start, "The start has to be a time such as 01:30:00."};
    if (!readTime(text(stop), 1, to))
        return {stop, "The end has to be a time such as 01:30:00."};
    if (!(from < to))
        return {stop, "The end has to lie behind the start."};
    const bool isKnown = record_.infoStart < record_.infoStop;
    if (isKnown && from >= record_.infoStop)
        return {start, "The data end before that."};
    if (isKnown && to <= record_.infoStart)
        return {stop, "The data begin after that."};
    std::vector<std::vector<int>> lists = groupLists();
    if (const int count = record_.frequencies.ifCount()) {
        const CString fault = faultOfGroups(lists, count);
        if (!fault.empty())
            return {ifs, fault};
    }
    pm.form = record_.forms[static_cast<std::size_t>(chosen)];
    pm.groups = std::move(lists);
    // clock texts have microseconds: the whole time is what is shown for it
    const bool isWhole = text(start) == timeText(record_.infoStart, 1) &&
                         text(stop) == timeText(record_.infoStop, 1);
    pm.start = isWhole                                         ? 0
               : text(start) == timeText(record_.infoStart, 1) ? record_.infoStart
                                                               : from;
    pm.stop = isWhole ? 0 : text(stop) == timeText(record_.infoStop, 1) ? record_.infoStop : to;
    return {};
}

CString SelectionForm::note(int which) const
{
    if (which == span)
        return "data: " + timeText(record_.infoStart, 1) + " to " + timeText(record_.infoStop, 1);
    ACleanSelectionPM pm = record_;
    const FormRefusal refusal = read(pm);
    if (which == used) {
        if (refusal.field == ifs)
            return refusal.message;
        ACleanSelectionPM now = record_;
        now.groups = groupLists();
        std::vector<int> without;
        for (int i = 0; i < record_.frequencies.ifCount(); ++i)
            if (std::none_of(now.groups.begin(), now.groups.end(), [i](const auto& group) {
                    return std::find(group.begin(), group.end(), i) != group.end();
                }))
                without.push_back(i);
        if (without.empty())
            return "All IFs are used.";
        return (without.size() == 1 ? "IF " : "IFs ") + numberListText(without) +
               (without.size() == 1 ? " is" : " are") + " in no group and not used.";
    }
    if (refusal.isRefused())
        return {};
    CleanParameters before, now;
    opened_.giveTo(before);
    pm.giveTo(now);
    return isOtherSelection(before, now)
               ? "A new beam and a new dirty map are made before the next round."
               : "Beam and dirty map stay as they are.";
}

FormRefusal SelectionForm::save()
{
    ACleanSelectionPM pm = record_;
    FormRefusal refusal = read(pm);
    if (!refusal.isRefused())
        record_ = pm;
    return refusal;
}

}  // namespace pavane
