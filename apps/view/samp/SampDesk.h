#pragma once

#include "platform/CWnd.h"
#include "platform/process.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pavane
{

/// What messages of other programs do in the windows of this one. Each returns "" or why not.
class SampUser
{
public:
    virtual ~SampUser() = default;
    virtual std::string sampLoad(const std::string& file) = 0;
    /// Degrees, ICRS.
    virtual std::string sampPoint(double ra, double dec) = 0;
    /// Writes the areas of the shown map as regions into the file; `facts` gets what else is told.
    virtual std::string sampAreas(const std::string& file,
                                  std::vector<std::pair<std::string, std::string>>& facts) = 0;
    /// A line for the user.
    virtual void sampTold(const std::string& text) = 0;
    /// The program beside this one has ended, whoever wanted that.
    virtual void sampEnded() = 0;
};

/// The talk of the program with others by SAMP: the program beside it that does the talking, and
/// what comes from there. A window that never shows, for it gets messages. Nothing here waits.
class SampDesk : public CWnd
{
public:
    using Parameters = std::vector<std::pair<std::string, std::string>>;

    explicit SampDesk(SampUser& user) : user_(user) {}
    ~SampDesk() override { DestroyWindow(); }
    /// Looks for the hub; what comes of it is told to the user. Off again when it is on.
    void Toggle();
    /// Takes leave of the hub; non-zero while that is under way, for a second at most.
    int Leave();
    /// On, or on its way to it.
    int isOn() const { return server_.IsRunning() && !isLeaving_; }
    /// A hub knows us.
    int isRegistered() const { return isOn() && !key_.empty(); }
    /// Sends a notification to all; 0 while no hub knows us.
    int Send(const std::string& type, const Parameters& parameters);

    const char* GetWndClassName() { return "PavaneSamp"; }

protected:
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

private:
    void enter();
    void heardServer(const ProcessNews& news);
    void heardHelper(const ProcessNews& news);
    void take(const std::vector<std::string>& words);
    void reply(const std::string& message, const std::string& why, const std::string& file = {},
               const Parameters& facts = {});
    int startHelper(std::vector<CString> words);
    std::string answerFile() const;

    SampUser& user_;
    CProcess server_;
    /// Each does one thing and ends; the last ones are kept until then.
    std::vector<std::unique_ptr<CProcess>> helpers_;
    std::string url_, key_, lastError_;
    int answers_ = 0;
    int isLeaving_ = 0, comesBack_ = 0;
};

}  // namespace pavane
