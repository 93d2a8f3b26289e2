#pragma once

#include "pavane/dialogs/values/ACleanSelectionPM.h"
#include "pavane/dialogs/values/PageForm.h"
#include "pavane/tables/freq/AFreqGroupArray.h"

namespace pavane
{

/// What stands on the page "CLEAN selection". The groups are edited by the table of IFs.
class PAVANE_API SelectionForm : public PageForm
{
public:
    enum Field {
        form,
        start,
        stop,
        ifs,  ///< the table, for refusals
        fieldCount
    };
    enum Note {
        used,  ///< how many IFs are used, and what is wrong with the groups
        span,  ///< of the data
        beam   ///< whether beam and dirty map can stay
    };

    SelectionForm() : PageForm(fieldCount) {}
    const ACleanSelectionPM& record() const { return record_; }
    /// Shows a record. A form that the data do not have becomes their first one, groups of IFs that
    /// they do not have each IF by itself.
    void setRecord(const ACleanSelectionPM& record);
    /// The groups as the table edits them; as many IFs as the data have.
    AFreqGroupArray& groups() { return groups_; }
    /// Shows start and end of the data.
    void takeWholeTime();

    std::vector<CString> lines(int field) const override;
    CString note(int which) const override;
    FormRefusal save() override;

private:
    FormRefusal read(ACleanSelectionPM& pm) const;
    std::vector<std::vector<int>> groupLists() const;

    ACleanSelectionPM record_, opened_;
    AFreqGroupArray groups_;
};

}  // namespace pavane
