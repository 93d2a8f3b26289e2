#include "apps/ms/hand_form.h"

#include "apps/ms/Failure.h"

#include <cmath>

namespace pavane_ms
{

HandForm::HandForm(const std::string& text, const std::vector<std::string>& hands, int isIntensity)
{
    if (text.empty() || text == "mean" || (isIntensity && text == "I"))
        return;
    kind = text == "strict" ? strict : single;
    if (kind == strict)
        return;
    hand = text == hands.front() ? 0 : 1;
    if (isIntensity || (text != hands.front() && text != hands.back()))
        throw Failure("--form takes mean, strict or a parallel hand of the data (" +
                      (isIntensity ? std::string("I") : hands.front() + ", " + hands.back()) +
                      "), not " + text);
}

int applyForm(const HandForm& form, Visibility& first, Visibility& second)
{
    if (form.kind == HandForm::strict)
        // the engine drops the visibility when one of its hands is flagged
        return first.isFlagged || second.isFlagged ? 0 : 2;
    Visibility result;
    int used = 0;
    if (form.kind == HandForm::single) {
        result = form.hand == 0 ? first : second;
        used = !result.isFlagged;
    } else {
        std::complex<double> sum = 0;
        double weight = 0, spare = 0;
        for (const Visibility& each : {first, second}) {
            spare += static_cast<double>(each.weight);
            if (each.isFlagged)
                continue;
            ++used;
            sum += std::complex<double>(each.value) * static_cast<double>(each.weight);
            weight += static_cast<double>(each.weight);
        }
        result.isFlagged = used == 0;
        if (used > 0)
            result.value = std::complex<float>(sum / weight);
        result.weight = static_cast<float>(used > 0 ? weight : spare);
    }
    // both columns together weigh as much as what they are made from
    result.weight /= 2;
    first = second = result;
    return used;
}

}  // namespace pavane_ms
