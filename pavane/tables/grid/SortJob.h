#pragma once

#include "pavane/tables/grid/RowOrder.h"
#include "pavane/tables/grid/table_values.h"
#include "platform/api.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// More rows than this are not sorted: keys and orders would take several GiB.
inline constexpr int mostSortedRows = 100'000'000;

/// Sorts the rows of a table by a column, in pieces: rows of equal cells stay in the order in which
/// they are shown. Numbers come before texts, texts are compared by their characters, capitals or
/// not; cells that are empty or not a number come last in both directions.
class PAVANE_API SortJob
{
public:
    /// `rows` at most mostSortedRows; rising or falling. The order is the one shown now; it, the
    /// number of rows and the cells have to stay until the end.
    SortJob(int rows, const SortedBy& by, const RowOrder& shown);
    /// Goes on by some hundred cells, or some thousand rows; done without memory, too.
    WorkState step(TableValues& values);
    /// How far it is, 0 to 100.
    int percent() const;
    /// The order, when it is done; 0, and nothing changed, when there was no memory for it.
    int takeOrder(RowOrder& order);

private:
    enum class Phase { collect, runs, merge, place, done };
    enum class Kind : std::uint32_t { number, text, last };
    /// Where a row goes: by kind, then by key. The key of a number has the order of the number,
    /// that of a text is its first 8 bytes.
    struct Key {
        std::uint64_t key;
        std::uint32_t row;
        Kind kind;
    };
    struct Less {
        const SortJob& job;
        bool operator()(const Key& a, const Key& b) const { return job.isBefore(a, b); }
    };

    WorkState stepWithMemory(TableValues& values);
    WorkState collect(TableValues& values);
    void addText(Key& key, const CString& text);
    void sortRun();
    void mergePiece();
    void beginPair();
    void place();
    bool isBefore(const Key& a, const Key& b) const;
    std::string_view textOf(const Key& key) const;

    std::size_t rows_;
    SortedBy by_;
    const RowOrder& shown_;
    Phase phase_ = Phase::collect;
    int failed_ = 0;
    CString cell_;
    // The memory grows by the piece: large blocks that are cleared or moved at once would be felt.
    std::vector<CString> texts_;     ///< of each piece of rows, in small letters, end to end
    std::vector<std::size_t> ends_;  ///< of the text of each row there; empty while there is none
    std::vector<Key> keys_;
    std::vector<Key> merged_;
    std::size_t at_ = 0;     ///< rows done in this phase
    std::size_t width_ = 0;  ///< of the runs that are being merged
    std::size_t left_ = 0;   ///< the next of each run of the pair, and where they end
    std::size_t right_ = 0;
    std::size_t leftEnd_ = 0;
    std::size_t rightEnd_ = 0;
    std::size_t passes_ = 0;
    std::size_t passesDone_ = 0;
    std::vector<int> records_;
    std::vector<int> rowsOfRecords_;
};

}  // namespace pavane
