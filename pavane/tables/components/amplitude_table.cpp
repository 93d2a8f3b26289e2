#include "pavane/tables/components/amplitude_table.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

AmplitudeTable::AmplitudeTable(double (*factor)(double))
{
    double nodes[terms];
    for (int k = 0; k < terms; ++k)
        nodes[k] = std::cos((k + 0.5) * std::numbers::pi / terms);
    for (int i = 0; i < intervals; ++i) {
        // Newton's divided differences, then expanded into powers of s
        double differences[terms];
        for (int k = 0; k < terms; ++k)
            differences[k] = factor((i + 0.5 + 0.5 * nodes[k]) / perUnit);
        for (int order = 1; order < terms; ++order)
            for (int k = terms - 1; k >= order; --k)
                differences[k] =
                    (differences[k] - differences[k - 1]) / (nodes[k] - nodes[k - order]);
        double powers[terms] = {differences[terms - 1]};
        for (int k = terms - 2; k >= 0; --k) {
            for (int j = terms - 1; j > 0; --j)
                powers[j] = powers[j - 1] - nodes[k] * powers[j];
            powers[0] = differences[k] - nodes[k] * powers[0];
        }
        for (int k = 0; k < terms; ++k)
            coefficient[k][i] = powers[k];
    }
}

}  // namespace pavane
