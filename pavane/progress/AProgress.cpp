#include "pavane/progress/AProgress.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <deque>
#include <mutex>
#include <utility>

namespace pavane
{

namespace
{

using Clock = std::chrono::steady_clock;

/// Texts that are kept of a job.
constexpr std::size_t mostTexts = 500;

}  // namespace

/// What both sides share. Pieces are counted over all steps without a lock; where a step began is
/// said under the lock, and who reads holds it, so that no count meets the step of another one.
struct AProgress::Share : Count {
    std::mutex mutex;  ///< for all that follows
    std::vector<double> weights{1};
    std::size_t step = 0;
    double before = 0;       ///< weight of the steps before this one
    double sum = 1;          ///< weight of all
    std::int64_t base = 0;   ///< pieces that were done when this step began
    std::int64_t total = 0;  ///< of this step; 0: not known
    bool hasBegun = false;   ///< a total was set
    double shown = -1;       ///< the most that a reader was told
    ProgressState state = ProgressState::running;
    int result = 0;
    CString text;
    std::deque<ProgressText> texts;
    std::uint64_t firstText = 0;  ///< number of the first one that is kept
    Clock::time_point begin = Clock::now();
    std::weak_ptr<Writing> writing;

    int end(ProgressState how, int resultOf, const CString* error);
    double fraction() const;
    void say(const CString& said);
};

/// Held by all handles of the side that works, and by them alone.
struct AProgress::Writing {
    std::shared_ptr<Share> share;
    explicit Writing(std::shared_ptr<Share> of) : share(std::move(of)) {}
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;
    ~Writing() { (void)share->end(ProgressState::stopped, 0, nullptr); }
};

int AProgress::Share::end(ProgressState how, int resultOf, const CString* error)
{
    const std::lock_guard lock(mutex);
    if (state != ProgressState::running)
        return 0;
    shown = std::max(shown, fraction());  // pieces that are still counted tell nothing any more
    state = how;
    result = resultOf;
    if (error)
        say(*error);
    return 1;
}

void AProgress::Share::say(const CString& said)
{
    if (said == text)
        return;
    text = said;
    texts.push_back({std::chrono::duration<double>(Clock::now() - begin).count(), said});
    if (texts.size() > mostTexts) {
        texts.pop_front();
        ++firstText;
    }
}

double AProgress::Share::fraction() const
{
    if (state == ProgressState::finished)
        return 1;
    // of several steps at least those before are known
    if (total <= 0 && weights.size() == 1)
        return -1;
    const std::int64_t here = done.load(std::memory_order_relaxed) - base;
    const auto held = static_cast<double>(std::clamp<std::int64_t>(here, 0, total));
    const double part = total > 0 ? held / static_cast<double>(total) : 0;
    return sum > 0 ? std::min((before + weights[step] * part) / sum, 1.0) : -1;
}

AProgress::AProgress() : share_(std::make_shared<Share>()) {}

ProgressReport AProgress::GetReport() const
{
    const std::lock_guard lock(share_->mutex);
    const ProgressState state = share_->state;
    if (state == ProgressState::running || state == ProgressState::finished)
        share_->shown = std::max(share_->shown, share_->fraction());
    return {share_->state, share_->shown, share_->text, share_->result};
}

std::vector<ProgressText> AProgress::GetTexts(std::uint64_t& first) const
{
    const std::lock_guard lock(share_->mutex);
    const std::uint64_t end = share_->firstText + share_->texts.size();
    const std::uint64_t from = std::clamp(first, share_->firstText, end);
    first = end;
    return {share_->texts.begin() + static_cast<std::ptrdiff_t>(from - share_->firstText),
            share_->texts.end()};
}

void AProgress::Cancel() { share_->cancelled.store(true, std::memory_order_relaxed); }

int AProgress::IsCancelled() const { return share_->cancelled.load(std::memory_order_relaxed); }

AProgressWriter::AProgressWriter(const AProgress& progress)
{
    AProgress::Share& share = *progress.share_;
    const std::lock_guard lock(share.mutex);
    std::shared_ptr<AProgress::Writing> writing = share.writing.lock();
    if (!writing)
        share.writing = writing = std::make_shared<AProgress::Writing>(progress.share_);
    count_ = {writing, &share};
}

AProgress::Share* AProgressWriter::share() const
{
    return static_cast<AProgress::Share*>(count_.get());
}

void AProgressWriter::SetSteps(std::span<const double> weights)
{
    AProgress::Share* const job = share();
    if (!job || weights.empty())
        return;
    std::vector<double> known(weights.begin(), weights.end());
    double sum = 0;
    for (double& weight : known) {
        weight = std::isfinite(weight) && weight > 0 ? weight : 0;
        sum += weight;
    }
    if (!std::isfinite(sum))
        return;
    const std::lock_guard lock(job->mutex);
    if (job->hasBegun)
        return;
    job->weights = std::move(known);
    job->sum = sum;
}

void AProgressWriter::SetTotal(std::int64_t total)
{
    AProgress::Share* const job = share();
    if (!job)
        return;
    const std::lock_guard lock(job->mutex);
    if (job->state != ProgressState::running)
        return;
    if (job->hasBegun && job->step + 1 < job->weights.size()) {
        job->before += job->weights[job->step++];
        job->base = job->done.load(std::memory_order_relaxed);
    }
    job->hasBegun = true;
    job->total = std::clamp<std::int64_t>(total, 0, most);
}

void AProgressWriter::SetText(const CString& text)
{
    AProgress::Share* const job = share();
    if (!job)
        return;
    const std::lock_guard lock(job->mutex);
    if (job->state == ProgressState::running)
        job->say(text);
}

int AProgressWriter::Finish(int result)
{
    AProgress::Share* const job = share();
    return job && job->end(ProgressState::finished, result, nullptr);
}

int AProgressWriter::Fail(const CString& text)
{
    AProgress::Share* const job = share();
    return job && job->end(ProgressState::failed, 0, &text);
}

}  // namespace pavane
