#include "pavane/tables/observation/freq_list.h"

#include "pavane/tables/freq/group_look.h"

#include <cmath>

namespace pavane
{

void setUpFreqList(ATableWnd& table, std::int16_t ifsCharacters)
{
    constexpr std::int16_t nameCharacters = 24;
    constexpr std::int16_t frequencyCharacters = 17;
    ATableColumn columns[freqColumnCount] = {{nameCharacters, colChars},
                                             {ifsCharacters, colChars},
                                             {frequencyCharacters, colChars},
                                             {frequencyCharacters, colChars}};
    table.setColumnPar(columns, freqColumnCount);
    table.setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSizeColumns);
}

CString frequencyEndText(const AUVXFqTbl& table, int selection, const ABitArray* are, int highest)
{
    double end = std::nan("");
    const auto take = [&](double hertz) {
        end = highest ? std::fmax(end, hertz) : std::fmin(end, hertz);
    };
    for (int i = 0; i < table.ifCount(); ++i) {
        if (are && !are->get(i))
            continue;
        take(table.frequency(selection, i, 0));
        take(table.frequency(selection, i, table.channels() - 1));
    }
    return megahertzText(end);
}

}  // namespace pavane
