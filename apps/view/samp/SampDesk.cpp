#include "apps/view/samp/SampDesk.h"

#include "apps/view/samp/file_url.h"
#include "apps/view/samp/samp_child.h"
#include "platform/profile.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/processes.h"
#include "tessel/value_text.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace pavane
{

namespace
{

constexpr unsigned serverNews = WM_USER + 1, helperNews = WM_USER + 2;
/// A flood of messages starts no flood of programs.
constexpr std::size_t mostHelpers = 8;
/// Milliseconds for the leave of the hub.
constexpr int patience = 1000;
/// The program itself, whatever it is called and wherever it lies.
constexpr const char* ownProgram = "/proc/self/exe";

CString wordOf(const std::pair<std::string, std::string>& parameter)
{
    return CString(parameter.first).append("=").append(parameter.second);
}

}  // namespace

void SampDesk::Toggle()
{
    if (isOn()) {
        (void)Leave();
        return user_.sampTold("SAMP is off");
    }
    comesBack_ = server_.IsRunning();  // once it has gone
    if (!comesBack_)
        enter();
}

int SampDesk::Leave()
{
    if (isOn())
        server_.Terminate(patience);
    isLeaving_ = server_.IsRunning();
    comesBack_ = 0;
    url_.clear();
    key_.clear();
    return isLeaving_;
}

void SampDesk::enter()
{
    CString error;
    lastError_.clear();
    if (!GetSafeHwnd() &&
        !CWnd::Create(GetWndClassName(), CString(), WS_POPUP, CRect(), nullptr, 0))
        error = "there is no memory for a window";
    else if (server_.Start({{ownProgram, sampServerWord}, {}}, GetSafeHwnd(), serverNews, error))
        return user_.sampTold("SAMP: looking for the hub");
    user_.sampTold("SAMP: " + error);
}

LRESULT SampDesk::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    if (message != serverNews && message != helperNews)
        return CWnd::WindowProc(message, wParam, lParam);
    const auto& news = *reinterpret_cast<const ProcessNews*>(lParam);  // NOLINT: a pointer in it
    if (message == serverNews)
        heardServer(news);
    else
        heardHelper(news);
    return 0;
}

void SampDesk::heardServer(const ProcessNews& news)
{
    if (news.kind == ProcessNews::line)
        return take(sampWords(news.text));
    if (news.kind == ProcessNews::errorLine) {
        lastError_ = plainText(news.text);
        return;
    }
    const int wasOn = !url_.empty();
    const int wasLeaving = std::exchange(isLeaving_, 0);
    url_.clear();
    key_.clear();
    if (std::exchange(comesBack_, 0))
        return enter();
    if (wasLeaving)
        return user_.sampEnded();
    if (!lastError_.empty())
        user_.sampTold("SAMP: " + lastError_);
    else if (wasOn)
        user_.sampTold("SAMP is off: the hub has gone");
    lastError_.clear();
    user_.sampEnded();
}

void SampDesk::heardHelper(const ProcessNews& news)
{
    if (news.kind == ProcessNews::errorLine)
        user_.sampTold("SAMP: " + plainText(news.text));
    // those that have ended go when another one starts: this one is telling
}

void SampDesk::take(const std::vector<std::string>& words)
{
    const std::string& kind = words[0];
    double ra = 0, dec = 0;
    if (kind == "registered" && words.size() == 3) {
        url_ = words[1];
        key_ = words[2];
        user_.sampTold("SAMP is on: other programs can send maps and positions");
    } else if (kind == "gone" && words.size() == 2)
        lastError_ = "off: " + words[1];
    else if (kind == "load" && words.size() == 4) {
        std::string file;
        reply(words[1], fileOfUrl(words[2], file) ? user_.sampLoad(file)
                                                  : std::string("the URL names no file"));
    } else if (kind == "point" && words.size() == 4 && stoval(words[2], ra) &&
               stoval(words[3], dec))
        reply(words[1], user_.sampPoint(ra, dec));
    else if (kind == "areas" && words.size() == 2 && !words[1].empty()) {
        Parameters facts;
        const std::string file = answerFile();
        const std::string why = user_.sampAreas(file, facts);
        reply(words[1], why, file, facts);
    }
}

std::string SampDesk::answerFile() const
{
    return folderOf(GetProfileFile()) + sampAnswerStart + std::to_string(processId()) + '-' +
           std::to_string(answers_ % static_cast<int>(2 * mostHelpers)) + ".reg";
}

void SampDesk::reply(const std::string& message, const std::string& why, const std::string& file,
                     const Parameters& facts)
{
    if (!message.empty()) {
        std::vector<CString> words = {ownProgram, sampReplyWord, message};
        words.insert(words.end(), {why.empty() ? "ok" : "error", why.empty() ? file : why});
        for (const auto& fact : facts)
            words.push_back(wordOf(fact));
        std::error_code ignored;
        if (!startHelper(words) && !file.empty())
            std::filesystem::remove(file, ignored);
    }
    ++answers_;
}

int SampDesk::Send(const std::string& type, const Parameters& parameters)
{
    std::vector<CString> words = {ownProgram, sampSendWord, type};
    for (const auto& parameter : parameters)
        words.push_back(wordOf(parameter));
    return isRegistered() && startHelper(words);
}

int SampDesk::startHelper(std::vector<CString> words)
{
    std::erase_if(helpers_, [](const auto& helper) { return !helper->IsRunning(); });
    if (helpers_.size() == mostHelpers)
        return 0;
    auto helper = std::make_unique<CProcess>();
    CString error;
    // the key is a secret: it does not stand where every user sees the words of programs
    const std::vector<CString> settings = {std::string(sampUrlVariable) + '=' + url_,
                                           std::string(sampKeyVariable) + '=' + key_};
    if (!helper->Start({std::move(words), settings}, GetSafeHwnd(), helperNews, error)) {
        user_.sampTold("SAMP: " + error);
        return 0;
    }
    helpers_.push_back(std::move(helper));
    return 1;
}

}  // namespace pavane
