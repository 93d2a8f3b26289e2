#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace pavane
{

/// How a job stands.
enum class ProgressState : std::uint8_t {
    running,   ///< also before it has begun
    finished,  ///< Finish was called
    failed,    ///< Fail was called
    stopped    ///< it went without either, as a job does that the user gave up
};

/// What is known of a job at one moment.
struct ProgressReport {
    ProgressState state = ProgressState::running;
    double fraction = -1;  ///< done of the whole, 0 to 1, and never less than was told before; -1:
                           ///< how much there is to do is not known
    CString text;          ///< what it does now; of a failed one what went wrong
    int result = 0;        ///< of Finish
};

/// A text of a job and when it came, in seconds since the job began.
struct ProgressText {
    double seconds = 0;
    CString text;
};

/// The side of a job that the user's thread has: how far it is, and that it shall stop. A value;
/// copies are of the same job. The side that works is an AProgressWriter.
class PAVANE_API AProgress
{
public:
    AProgress();

    ProgressReport GetReport() const;
    int HasEnded() const { return GetReport().state != ProgressState::running; }
    /// The texts from number `first` on, counted from 0, and their number afterwards in `first`. Of
    /// a job that says very much the earliest are gone.
    std::vector<ProgressText> GetTexts(std::uint64_t& first) const;
    /// Asks the job to stop; it ends when it looks.
    void Cancel();
    int IsCancelled() const;
    friend bool operator==(const AProgress&, const AProgress&) = default;

private:
    friend class AProgressWriter;
    /// What is read and written without a lock; apart, as each is written by the other side.
    struct Count {
        alignas(64) std::atomic<std::int64_t> done{0};
        alignas(64) std::atomic<bool> cancelled{false};
    };
    struct Share;
    struct Writing;
    std::shared_ptr<Share> share_;
};

/// The side of a job that works, in any thread: says what it does and how far it is. A handle;
/// copies are of the same job and may go to other threads, each handle in one thread at a time.
/// When the last one goes and the job has not ended, it counts as stopped.
///
/// What was said before Finish or Fail has happened for whoever reads that the job has ended, so
/// results need no lock of their own. A handle that was moved from, and that of a job that has
/// ended, say nothing.
class PAVANE_API AProgressWriter
{
public:
    explicit AProgressWriter(const AProgress& progress);

    /// The job has steps that take so much of its time each; before the first of them begins. What
    /// is not above 0, or not finite, counts as 0. One step without this.
    void SetSteps(std::span<const double> weights);
    /// Begins the next step (the first call: the first), which has `total` pieces; in the last step
    /// only the total changes. 0 or less: how many is not known.
    void SetTotal(std::int64_t total);
    /// So many more pieces are done. No lock, and as cheap as counting; less than 1 does nothing,
    /// and pieces beyond the total count as the total.
    void Advance(std::int64_t pieces = 1)
    {
        if (pieces > 0 && count_ &&
            count_->done.fetch_add(pieces < most ? pieces : most, std::memory_order_relaxed) > most)
            count_->done.store(most, std::memory_order_relaxed);
    }
    /// What the job does now, for the user. Not for each piece: this takes a lock.
    void SetText(const CString& text);
    /// Non-zero when the user wants it to stop; whoever looks returns. Cheap.
    int IsCancelled() const { return count_ && count_->cancelled.load(std::memory_order_relaxed); }
    /// Ends the job, with a number that the user's thread may ask for; 0 when it has ended before.
    int Finish(int result = 1);
    /// Ends it with what went wrong.
    int Fail(const CString& text);

private:
    static constexpr std::int64_t most = std::int64_t{1} << 60;

    AProgress::Share* share() const;
    std::shared_ptr<AProgress::Count> count_;  ///< its last release ends the job
};

}  // namespace pavane
