#pragma once

#include "pavane/imaging/AStudy.h"
#include "tessel/gains/AGains.h"

#include <cstddef>
#include <string>
#include <vector>

namespace pavane
{

/// Ids of the links that are on before link `at`: those whose corrections its data have.
std::vector<int> linksBefore(const std::vector<StudyLink>& chain, std::size_t at);
/// Non-zero when link `at` was solved for on other data than those that it is applied to: links
/// before it were switched, removed or solved for anew since.
int isStale(const std::vector<StudyLink>& chain, std::size_t at);
/// An id that no link has, nor had any that a link knows of.
int nextLinkId(const std::vector<StudyLink>& chain);
/// Puts a link at the end, solved for on all that are on before it. Its id.
int addLinkTo(std::vector<StudyLink>& chain, int gains, const std::string& name);
/// Other gains in the place of those of link `at`, solved for anew: it has another id, and what
/// comes after it is stale.
void replaceLink(std::vector<StudyLink>& chain, std::size_t at, int gains, const std::string& name);

/// The chain of gains as a user edits it, with steps of undo. Gains are never deleted, so that
/// every step comes back whole.
class ChainEdits
{
public:
    const std::vector<StudyLink>& chain() const { return chain_; }
    /// The chain as the study has it now. What came about elsewhere, by a self-calibration, is a
    /// step named `label`.
    void follow(const std::vector<StudyLink>& chain, const std::string& label);
    /// Forgets the steps: it is another study.
    void reset(const std::vector<StudyLink>& chain);

    // Edits, a step each; 0 when they change nothing
    int setOn(std::size_t at, int on);
    int remove(std::size_t at);
    /// The user takes a stale link as it is.
    int confirm(std::size_t at);
    int add(int gains, const std::string& name);
    /// The chain that a round was made of: links that are known, of now or of an earlier step, stay
    /// what they are.
    int take(const std::vector<int>& gains);

    /// Name of the step that undo, or redo, would take; "" for none.
    std::string undoLabel() const { return undo_.empty() ? std::string() : undo_.back().label; }
    std::string redoLabel() const { return redo_.empty() ? std::string() : redo_.back().label; }
    int undo();
    int redo();

private:
    struct Step {
        std::string label;
        std::vector<StudyLink> chain;  ///< before it, or after it
    };
    int change(const std::string& label, std::vector<StudyLink> chain);
    const StudyLink* known(int gains) const;

    std::vector<StudyLink> chain_;
    std::vector<Step> undo_, redo_;
};

/// What a list of links tells of one.
struct LinkLine {
    std::string name, kind, interval, solved;
    int isOn = 1, isStale = 0;
    std::string solvedOn;  ///< "data", or the links' places, "1, 2"
    std::string state;     ///< "", "off", "solved on other data"
};

enum LinkColumn {
    linkOn = 1,
    linkName,
    linkKind,
    linkInterval,
    linkSolved,
    linkSolvedOn,
    linkState,
    linkColumns = linkState
};

const char* linkTitle(int column);
std::string linkCell(const LinkLine& line, int column);

/// What gains tell of themselves: phase, amplitude or both; "60 s", "12 intervals of their own";
/// "320 of 340".
void describeGains(const AGains& gains, LinkLine& line);
/// The rest of it, by the chain.
LinkLine linkLineOf(const std::vector<StudyLink>& chain, std::size_t at);

}  // namespace pavane
