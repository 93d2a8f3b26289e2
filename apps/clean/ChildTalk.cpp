#include "apps/clean/ChildTalk.h"

#include "pavane/progress/AProgress.h"
#include "pavane/windows/controls/AProgressDlg.h"
#include "platform/process.h"

#include <memory>

namespace pavane
{

namespace
{

constexpr unsigned newsMessage = WM_USER + 18;
/// Kept of what it writes; one that floods fills no memory.
constexpr std::size_t mostLines = 10000;

/// Hears the program and tells the progress box.
class ChildTalk : public CWnd
{
public:
    ChildTalk(const std::vector<std::string>& words, std::vector<std::string>& lines)
        : words_(words), lines_(lines), writer_(std::make_unique<AProgressWriter>(progress_))
    {
    }
    ~ChildTalk() override { DestroyWindow(); }

    int run(const CString& name, CWnd* owner, std::string& error)
    {
        CString why;
        if (!Create("PavaneChild", "", WS_POPUP, CRect(), nullptr, 0) ||
            !process_.Start({{words_.begin(), words_.end()}, {}}, GetSafeHwnd(), newsMessage,
                            why)) {
            error = words_.front() + ": " + why;
            return 0;
        }
        AProgressDlg dialog(owner);
        (void)dialog.Watch(progress_, name);
        process_.Kill();
        if (status_ == 0)
            return 1;
        error = progress_.IsCancelled() ? "it was stopped"
                : lastError_.empty()    ? words_.front() + " failed"
                                        : lastError_;
        return 0;
    }

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override
    {
        if (message != newsMessage)
            return CWnd::WindowProc(message, wParam, lParam);
        const auto& news = *reinterpret_cast<const ProcessNews*>(lParam);  // NOLINT: a pointer
        if (news.kind == ProcessNews::ended) {
            status_ = news.status;
            (void)writer_->Finish();
        } else if (news.kind == ProcessNews::errorLine) {
            lastError_ = news.text;
        } else if (lines_.size() < mostLines) {
            lines_.push_back(news.text);
        }
        return 0;
    }

private:
    const std::vector<std::string>& words_;
    std::vector<std::string>& lines_;
    AProgress progress_;
    std::unique_ptr<AProgressWriter> writer_;
    CProcess process_;
    std::string lastError_;
    int status_ = -1;
};

}  // namespace

int runChild(const std::vector<std::string>& words, const CString& name, CWnd* owner,
             std::vector<std::string>& lines, std::string& error)
{
    lines.clear();
    ChildTalk talk(words, lines);
    return talk.run(name, owner, error);
}

}  // namespace pavane
