#include "apps/view/printed_table.h"

#include "apps/view/AreaNumbersTbl.h"
#include "apps/view/profiles/map_tables.h"
#include "apps/view/profiles/NumbersTbl.h"
#include "pavane/tables/observation/AComponentsTbl.h"
#include "pavane/tables/observation/AObservationTbl.h"

namespace pavane
{

namespace
{

/// Without the widths that a user gave the columns of a window: they are in the profile.
class PrintedRecords : public AObservationTbl
{
public:
    using AObservationTbl::AObservationTbl;
    CString profileSection() override { return {}; }
};

class PrintedComponents : public AComponentsTbl
{
public:
    explicit PrintedComponents(const AComponents* model)
    {
        if (model)
            (void)list_.reset(*model);
        SetComponents(&list_);
    }
    CString profileSection() override { return {}; }

private:
    EditedComponents list_;
};

class PrintedNumbers : public NumbersTbl
{
public:
    CString profileSection() override { return {}; }
};

class PrintedAreas : public AreaNumbersTbl
{
public:
    CString profileSection() override { return {}; }
};

}  // namespace

std::unique_ptr<ABWindow> newPrintedTable(const TableWish& wish, UvObservation* observation,
                                          const AComponents* model, const MapTables* measured)
{
    if (measured && wish.table == areaTable) {
        auto numbers = std::make_unique<PrintedAreas>();
        numbers->SetTable(&measured->areas);
        return numbers;
    }
    if (const NumberTable* const found = measured ? measured->numbersOf(wish.table) : nullptr) {
        auto numbers = std::make_unique<PrintedNumbers>();
        numbers->SetTable(found);
        return numbers;
    }
    UvTable table = UvTable::telescopes;
    if (!uvTableOf(wish.table, table))
        return std::make_unique<PrintedComponents>(model);
    auto records = std::make_unique<PrintedRecords>(table);
    records->SetObservation(observation);
    return records;
}

}  // namespace pavane
