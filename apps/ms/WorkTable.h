#pragma once

#include "apps/ms/MsBuilder.h"

#include <casacore/casa/Arrays/Vector.h>
#include <casacore/tables/Tables/ScalarColumn.h>
#include <casacore/tables/Tables/Table.h>
#include <memory>
#include <string>
#include <vector>

namespace pavane_ms
{

/// A working copy as `import` makes them: its rows by blocks. The table is never ended on the way
/// of a failure, since what it would then write to the disk fails again.
class WorkTable
{
public:
    /// For writing it is locked as long as it is open; throws when another program has it.
    WorkTable(const std::string& name, int isWritten);

    casacore::Table& table() { return *table_; }
    const WorkFacts& facts() const { return facts_; }
    const std::vector<std::string>& hands() const { return hands_; }
    int handCount() const { return static_cast<int>(hands_.size()); }
    /// Indices of the parallel hands, which there always are.
    int firstParallel() const { return 0; }
    int lastParallel() const { return handCount() - 1; }
    int hasHand(std::size_t i) const;
    std::size_t blockRows() const { return blockRows_; }

    /// What of a block of rows names them.
    struct Rows {
        casacore::Vector<int> first, second, window, array, field;
        casacore::Vector<double> time;
        std::vector<int> channels;
    };
    void read(std::size_t from, std::size_t count, Rows& rows) const;
    int antennaNumber(int row) const;
    int source(int field) const;
    int ifNumber(int window) const;
    /// Everything reaches the disk, and the table ends.
    void finish();

private:
    std::string name_;
    casacore::Table* table_ = nullptr;
    WorkFacts facts_;
    std::vector<std::string> hands_;
    std::vector<int> channels_;  ///< of each window
    std::size_t blockRows_ = 1;
};

}  // namespace pavane_ms
