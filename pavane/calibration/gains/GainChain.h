#pragma once

#include "tessel/api.h"
#include "tessel/gains/AGains.h"

#include <complex>
#include <cstddef>
#include <string>
#include <vector>

namespace pavane
{

/// Solutions one after another: each was solved for on data that those before it had corrected.
class PAVANE_API GainChain
{
public:
    struct Link {
        std::string name;
        AGains gains;
        int isOn = 1;
        int id = 0;                 ///< that of no other link, ever
        std::vector<int> solvedOn;  ///< ids of the links whose corrections the data had
    };

    const std::vector<Link>& links() const { return links_; }
    /// Puts gains at the end, solved for on data that all links that are on have corrected. Its id.
    int add(const std::string& name, AGains gains);
    /// 0 when there is no link of that id.
    int remove(int id);
    int setOn(int id, int on);
    /// Other gains in the place of those of a link, solved for anew on what is on before it.
    int replace(int id, AGains gains);
    /// Flags solutions or takes it back; the data of a later link do not count as others for it.
    Gain* gain(int id, std::size_t interval, std::size_t group, std::size_t hand,
               std::size_t antenna);
    /// Non-zero when links before it were switched, removed or solved for anew since: what it was
    /// solved on are not the data that it is applied to.
    int isStale(int id) const;
    /// The user takes a stale link as it is.
    int confirm(int id);

private:
    Link* find(int id);
    std::vector<int> onBefore(const Link& link) const;

    std::vector<Link> links_;
    int lastId_ = 0;
};

/// The telescopes, time and hands that a visibility is of.
struct GainPlace {
    int subarray = 1, first = 0, second = 0;  ///< numbers of the antennas
    double time = 0;                          ///< days since 0h of the reference day
    int source = 0;
    int ifIndex = 0;  ///< from 0
    char firstHand = 'R', secondHand = 'R';
};

/// g(first) conj(g(second)), by which the visibility is divided; its weight is multiplied by the
/// square of its size. 0, and `factor` 1, when one of the gains cannot be used or is not there.
/// Gains of the hand 'I' are those of every hand.
PAVANE_API int gainFactor(const AGains& gains, const GainPlace& place,
                          std::complex<double>& factor);
/// The product of those of all links that are on.
PAVANE_API int gainFactor(const GainChain& chain, const GainPlace& place,
                          std::complex<double>& factor);

}  // namespace pavane
