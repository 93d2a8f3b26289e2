#include "apps/view/visibility_table.h"

#include "pavane/tables/uvdata/uv_row_columns.h"
#include "tessel/plain_text.h"

#include <limits>
#include <ostream>

namespace pavane
{

int writeVisibilityTable(AUVXFile& file, const UvMarks& marks, const UvView& view,
                         const std::function<int(double)>& isGoing, std::ostream& stream,
                         std::string& error)
{
    constexpr double far = std::numeric_limits<double>::infinity();
    UvPlotRows rows(file, marks, view, {-far, far, -far, far},
                    std::numeric_limits<std::size_t>::max());
    const auto writeLine = [&](const auto& cellOf) {
        const char* between = "";
        for (const UvRowColumn& column : uvRowColumns()) {
            stream << between << cellOf(column);
            between = "\t";
        }
        stream << '\n';
    };
    writeLine([](const UvRowColumn& column) { return std::string(column.title); });
    for (int goesOn = 1; goesOn && stream.good();) {
        goesOn = rows.step();
        for (const UvPointOrigin& row : rows.take())
            writeLine([&](const UvRowColumn& column) { return plainText(column.text(file, row)); });
        if (goesOn && !isGoing(rows.done())) {
            error = "was not read to its end";
            return 0;
        }
    }
    error = rows.error();
    return error.empty() && stream.good();
}

}  // namespace pavane
