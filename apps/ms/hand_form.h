#pragma once

#include <complex>
#include <cstdint>
#include <string>
#include <vector>

namespace pavane_ms
{

/// How the two columns of parallel hands are filled for the imaging engine, which drops a
/// visibility when one of them is flagged.
struct HandForm {
    enum Kind { mean, strict, single };
    Kind kind = mean;
    int hand = 0;  ///< of `single`: 0 the first parallel hand, 1 the second

    /// `text`: mean, strict or the name of a hand that the data have.
    HandForm() = default;
    HandForm(const std::string& text, const std::vector<std::string>& hands, int isIntensity);
};

/// A visibility of one hand. Weights are those of a flagged one, too.
struct Visibility {
    std::complex<float> value;
    float weight = 0;
    bool isFlagged = true;
};

/// Makes both parallel hands what the form says; how many of the two maps are made from.
int applyForm(const HandForm& form, Visibility& first, Visibility& second);

}  // namespace pavane_ms
