#pragma once

#include "pavane/calibration/gains/GainChain.h"
#include "pavane/containers/Listeners.h"
#include "pavane/history/EditHistory.h"
#include "platform/api.h"
#include "tessel/gains/AGains.h"

#include <complex>
#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

namespace pavane
{

/// Where a gain stands in AGains.
struct GainIndex {
    std::size_t interval = 0, group = 0, hand = 0, antenna = 0;
};

/// The place of a cell of AGains::cells().
PAVANE_API GainIndex gainIndexOf(const AGains& gains, std::size_t cell);
PAVANE_API std::size_t cellOf(const AGains& gains, const GainIndex& at);

/// Gains that a user looks at and edits in several windows, with steps of undo that bring every bit
/// back: those of an array, or of a link of a chain. Neither is owned; it goes after this.
///
/// What was removed, or has another size than when it was given, counts as no gains: windows are
/// empty then. A host that puts other gains in the place of these calls `replaced`.
class PAVANE_API EditedGains : private EditTarget
{
public:
    EditedGains() = default;
    explicit EditedGains(AGains& gains) { show(gains); }
    EditedGains(GainChain& chain, int link) { show(chain, link); }
    EditedGains(const EditedGains&) = delete;
    EditedGains& operator=(const EditedGains&) = delete;

    /// Other gains; the steps are forgotten, and all who listen are told.
    void show(AGains& gains);
    void show(GainChain& chain, int link);
    void showNothing();
    /// The host has changed the gains by itself; the steps are forgotten.
    void replaced();

    const AGains& gains() const;

    /// All edits between these two are one step; calls nest, the outermost label counts.
    void begin(std::string_view label);
    void end();
    // Edits, each one step of undo with this label unless one is open. How many gains have changed.
    /// Flags cells, or takes that back; what was solved for stays.
    std::size_t setFlags(const std::vector<std::size_t>& cells, int on, std::string_view label);
    /// Another value; the gain counts as solved for.
    std::size_t setValue(std::size_t cell, std::complex<double> value, std::string_view label);
    /// Multiplies values and errors of an antenna in all intervals, groups and hands; a factor that
    /// is not above 0 or not finite changes nothing.
    std::size_t scaleAntenna(std::size_t antenna, double factor, std::string_view label);

    /// One step; 0 when there is none.
    int undo();
    int redo();
    const EditHistory& history() const { return history_; }
    EditHistory& history() { return history_; }
    int isModified() const { return history_.isModified(); }

    /// Calls `changed` after every change, undo and redo and when other gains are shown, until
    /// `forget` with the number that it gives.
    int listen(std::function<void()> changed) { return listeners_.listen(std::move(changed)); }
    void forget(int listener) { listeners_.forget(listener); }

private:
    int applyEdit(const EditChange& change) override;
    int applySelection(const EditSelection& selection) override;
    Gain* cell(std::size_t i);
    template <typename Change>
    std::size_t edit(const std::vector<std::size_t>& cells, std::string_view label,
                     const Change& change);
    void showOthers();
    void tell() { listeners_.tell(); }

    AGains* array_ = nullptr;
    GainChain* chain_ = nullptr;
    int link_ = 0;
    std::size_t size_ = 0;
    EditHistory history_;
    int depth_ = 0;
    int hasChanged_ = 0;  ///< in the step that is open
    Listeners listeners_;
};

}  // namespace pavane
