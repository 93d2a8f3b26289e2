#pragma once

#include "apps/ms/MsBuilder.h"
#include "apps/ms/Words.h"

#include <casacore/tables/Tables/ArrayColumn.h>
#include <casacore/tables/Tables/ScalarColumn.h>
#include <casacore/tables/Tables/Table.h>
#include <memory>
#include <string>
#include <vector>

namespace pavane_ms
{

/// A MeasurementSet of anybody, read only. Its IFs are its spectral windows, counted from 1; in the
/// copy those that are taken are counted anew.
class MsInput
{
public:
    MsInput(const std::string& name, const Selection& selection);

    const casacore::Table& table() const { return table_; }
    casacore::Table subtable(const std::string& name) const;
    casacore::rownr_t rows() const { return table_.nrow(); }
    const HandPlan& plan() const { return plan_; }
    const std::vector<MsWindow>& windows() const { return windows_; }
    double referenceDay() const { return referenceDay_; }
    int hasField(int field) const;
    /// -1 for one that is not taken.
    int windowOfSpectral(int spectral) const;

    /// A block of rows; `window` is -1 in those of windows that are not taken.
    void readRows(casacore::rownr_t first, std::vector<MsRow>& rows) const;
    /// Adds the cells of a row.
    void readCells(casacore::rownr_t place, const MsRow& row, MsBuilder::Block& block);
    /// Afterwards rows are counted in the order of time.
    void sortByTime();

private:
    struct Description {
        int window = -1;  ///< of the copy
        int spectral = 0;
        std::vector<int> hands;  ///< casacore's codes
        std::vector<int> from;   ///< of each stored hand, -1: none
    };
    void readDescriptions(const Selection& selection);
    void openColumns(const Selection& selection);

    std::string name_;
    casacore::Table table_;
    HandPlan plan_;
    std::vector<MsWindow> windows_;
    std::vector<Description> descriptions_;
    std::vector<int> descriptionOf_;  ///< of each window of the copy
    std::vector<int> hasField_;
    double referenceDay_ = 0;
    std::string column_, flagColumn_ = "FLAG", weightColumn_;
    casacore::ArrayColumn<casacore::Complex> data_;
    casacore::ArrayColumn<bool> flag_;
    casacore::ArrayColumn<float> spectrum_, weight_;
    casacore::ScalarColumn<bool> flagRow_;
};

}  // namespace pavane_ms
