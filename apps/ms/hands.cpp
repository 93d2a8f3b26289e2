#include "apps/ms/hands.h"

#include "apps/ms/Failure.h"

#include <algorithm>
#include <iterator>

namespace pavane_ms
{

namespace
{

struct Hand {
    int code, fits;
    const char* name;
};

constexpr Hand hands[] = {{1, 1, "I"},   {2, 2, "Q"},    {3, 3, "U"},    {4, 4, "V"},
                          {5, -1, "RR"}, {6, -3, "RL"},  {7, -4, "LR"},  {8, -2, "LL"},
                          {9, -5, "XX"}, {10, -7, "XY"}, {11, -8, "YX"}, {12, -6, "YY"}};
constexpr int rr = 5, xx = 9;

const Hand* handOf(int code)
{
    const auto* found = std::find_if(std::begin(hands), std::end(hands),
                                     [code](const Hand& hand) { return hand.code == code; });
    return found == std::end(hands) ? nullptr : found;
}

}  // namespace

int storedHand(int fitsCode)
{
    for (const Hand& hand : hands)
        if (hand.fits == fitsCode)
            return hand.code;
    return 0;
}

int fitsHand(int code) { return handOf(code) ? handOf(code)->fits : 0; }
std::string handName(int code) { return handOf(code) ? handOf(code)->name : ""; }

HandPlan planHands(const std::vector<int>& codes, const std::vector<std::string>& wanted)
{
    HandPlan plan;
    std::string all;
    for (const int code : codes)
        all.append(all.empty() ? "" : ",").append(handName(code));
    for (const std::string& name : wanted)
        if (std::none_of(codes.begin(), codes.end(),
                         [&](int code) { return handName(code) == name; }))
            throw Failure(
                std::string("the data have no hand ").append(name).append(", but ").append(all));
    const auto isWanted = [&](int code) {
        return wanted.empty() ||
               std::find(wanted.begin(), wanted.end(), handName(code)) != wanted.end();
    };
    const auto placeOf = [&](int code) {
        const auto found = std::find(codes.begin(), codes.end(), code);
        return found == codes.end() || !isWanted(code) ? -1
                                                       : static_cast<int>(found - codes.begin());
    };
    const auto hasAny = [&](int first, int last) {
        for (int code = first; code <= last; ++code)
            if (placeOf(code) >= 0)
                return 1;
        return 0;
    };
    for (const int first : {rr, xx}) {
        if (!plan.stored.empty() || (placeOf(first) < 0 && placeOf(first + 3) < 0))
            continue;
        const int hasCross = hasAny(first + 1, first + 2);
        for (int code = first; code <= first + 3; ++code)
            if (hasCross || code == first || code == first + 3) {
                plan.stored.push_back(code);
                plan.from.push_back(placeOf(code));
            }
    }
    if (plan.stored.empty() && placeOf(1) >= 0) {
        plan.stored = {rr, rr + 3};
        plan.from = {placeOf(1), placeOf(1)};
        plan.isIntensity = 1;
    }
    if (plan.stored.empty())
        throw Failure("the data have no parallel hands and no total intensity to make a map of" +
                      (all.empty() ? all : ", only " + all));
    for (std::size_t i = 0; i < codes.size(); ++i) {
        const int isTaken =
            std::find(plan.from.begin(), plan.from.end(), static_cast<int>(i)) != plan.from.end();
        if (isTaken)
            plan.names.push_back(handName(codes[i]));
        else if (isWanted(codes[i]))
            plan.leftOut.push_back(handName(codes[i]));
    }
    return plan;
}

}  // namespace pavane_ms
