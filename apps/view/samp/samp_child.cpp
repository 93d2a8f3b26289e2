#include "apps/view/samp/samp_child.h"

#include "apps/view/samp/file_url.h"
#include "apps/view/samp/samp_hub.h"
#include "tessel/AFile.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fcntl.h>
#include <functional>
#include <new>
#include <unistd.h>

namespace pavane
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int failed = 2;
/// Of what a message may have in it, and of a text of areas that is sent.
constexpr std::size_t longestWord = 4096, longestAnswer = std::size_t{8} * 1024 * 1024;
constexpr auto betweenPings = std::chrono::seconds(10);
constexpr int patientPings = 3;
constexpr int turnTime = 1000;  // ms

int wakeEnd = -1;

extern "C" void onTerminate(int)
{
    const char byte = 0;
    (void)!write(wakeEnd, &byte, 1);
}

int complain(const std::string& error)
{
    std::fprintf(stderr, "%s\n", plainText(error).c_str());
    return failed;
}

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

/// A line for the window: no word of others can end it or begin another word.
void say(const std::vector<std::string>& words)
{
    std::string line;
    for (const std::string& word : words) {
        line += line.empty() ? "" : "\t";
        for (const char c : word)
            line += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
    }
    std::printf("%s\n", line.c_str());
    (void)std::fflush(stdout);
}

/// What others send, told to the window or answered here.
class SampServer
{
public:
    int run();

private:
    std::string answer(const std::string& xml);
    std::string take(const std::string& method, const std::vector<RpcValue>& arguments);
    std::string handle(const RpcValue& message, const std::string& id);
    void laterReply(const std::string& id, const std::string& why);
    void keepHub();

    SampHub hub_;
    LocalHttpServer server_;
    std::deque<std::function<void()>> later_;  ///< what is said to the hub when it listens again
    Clock::time_point nextPing_ = Clock::now() + betweenPings;
    int lostPings_ = 0;
    int isOver_ = 0;
};

/// "" or the fault of the caller.
std::string SampServer::handle(const RpcValue& message, const std::string& id)
{
    const std::string type = message.textOf("samp.mtype");
    const RpcValue* const found = message.find("samp.params");
    const RpcValue parameters = found ? *found : RpcValue::mapOf({});
    if (type == "samp.hub.event.shutdown") {
        say({"gone", "the hub was ended"});
        isOver_ = 1;
    } else if (type == "samp.app.ping")
        laterReply(id, {});
    else if (type == areasMessage)
        say({"areas", id});
    else if (type == "image.load.fits") {
        const std::string url = parameters.textOf("url"), name = parameters.textOf("name");
        std::string file;
        if (url.size() > longestWord || name.size() > longestWord || !fileOfUrl(url, file))
            laterReply(id, "only files of this machine are opened (file: URLs)");
        else
            say({"load", id, url, name});
    } else if (type == "coord.pointAt.sky") {
        const std::string ra = parameters.textOf("ra"), dec = parameters.textOf("dec");
        double longitude = 0, latitude = 0;
        if (!stoval(ra, longitude) || !stoval(dec, latitude) || !std::isfinite(longitude) ||
            !(latitude >= -90 && latitude <= 90))
            laterReply(id, "ra and dec are no degrees");
        else
            say({"point", id, valToStr(longitude), valToStr(latitude)});
    } else if (!id.empty())
        laterReply(id, "this message is not understood");
    return {};
}

void SampServer::laterReply(const std::string& id, const std::string& why)
{
    if (!id.empty())
        later_.emplace_back([this, id, why] {
            std::string error;
            (void)hub_.reply(id, why.empty(), RpcValue::mapOf({}), why, error);
        });
}

/// The fault, "" for none.
std::string SampServer::take(const std::string& method, const std::vector<RpcValue>& arguments)
{
    const int isCall = method == "samp.client.receiveCall";
    const int isNotification = method == "samp.client.receiveNotification";
    if (arguments.empty() || arguments[0].text != hub_.key())
        return "the key is wrong";
    if (method == "samp.client.receiveResponse")
        return {};  // nothing is asked of others
    if (!isCall && !isNotification)
        return "there is no such method";
    if (arguments.size() != (isCall ? 4U : 3U))
        return "arguments are missing";
    const std::string id = isCall ? arguments[2].text : std::string();
    if (isCall && (id.empty() || id.size() > longestWord))
        return "the number of the message is none";
    return handle(arguments.back(), id);
}

std::string SampServer::answer(const std::string& xml)
{
    try {
        std::string method, error;
        std::vector<RpcValue> arguments;
        if (!readRpcCall(xml, method, arguments, error))
            return rpcFaultText("the call " + error);
        const std::string fault = take(method, arguments);
        return fault.empty() ? rpcAnswerText("") : rpcFaultText(fault);
    } catch (const std::bad_alloc&) {
        return rpcFaultText("there is no memory for it");
    }
}

/// A hub that is gone without a word is seen by its silence.
void SampServer::keepHub()
{
    if (isOver_ || Clock::now() < nextPing_)
        return;
    std::string error;
    lostPings_ = hub_.ping(error) ? 0 : lostPings_ + 1;
    nextPing_ = Clock::now() + betweenPings;
    if (lostPings_ < patientPings)
        return;
    say({"gone", error});
    isOver_ = 1;
}

int SampServer::run()
{
    std::string file, error;
    SampLock lock;
    int ends[2] = {-1, -1};
    if (!sampLockFile(variable("SAMP_HUB"), variable("HOME"), file, error) ||
        !readSampLock(file, lock, error) || !server_.open(error) || !hub_.enter(lock, error))
        return complain(error);
    const std::string callback = "http://127.0.0.1:" + std::to_string(server_.port()) + "/";
    if (!hub_.subscribe(callback,
                        {"image.load.fits", "coord.pointAt.sky", areasMessage, "samp.app.ping",
                         "samp.hub.event.shutdown"},
                        error)) {
        hub_.leave();
        return complain(error);
    }
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return complain("there are no descriptors");
    wakeEnd = ends[1];
    (void)std::signal(SIGTERM, onTerminate);
    say({"registered", hub_.url(), hub_.key()});
    char byte = 0;
    while (!isOver_ && read(ends[0], &byte, 1) != 1) {
        server_.turn(turnTime, ends[0], [this](const std::string& xml) { return answer(xml); });
        while (!later_.empty() && !server_.isBusy()) {
            later_.front()();
            later_.pop_front();
        }
        keepHub();
    }
    hub_.leave();
    return 0;
}

int readParameters(const std::vector<std::string>& words, std::size_t from,
                   std::vector<std::pair<std::string, RpcValue>>& members)
{
    for (std::size_t i = from; i < words.size(); ++i) {
        const std::size_t equal = words[i].find('=');
        if (equal == std::string::npos)
            return 0;
        members.emplace_back(words[i].substr(0, equal), sampText(words[i].substr(equal + 1)));
    }
    return 1;
}

int readText(const std::string& file, std::string& text)
{
    AFile in;
    if (!in.open(file, AFile::readOnly) || in.left() < 0 ||
        in.left() > static_cast<std::int64_t>(longestAnswer))
        return 0;
    text.resize(static_cast<std::size_t>(in.left()));
    return in.read(text.data(), static_cast<std::int64_t>(text.size()));
}

int sendOnce(const std::vector<std::string>& words)
{
    SampHub hub;
    std::string error;
    std::vector<std::pair<std::string, RpcValue>> members;
    const int isReply = words[0] == sampReplyWord;
    if (words.size() < (isReply ? 4U : 2U) || !readParameters(words, isReply ? 4 : 2, members))
        return complain("is for pavane-view itself");
    if (!hub.enterAs(variable(sampUrlVariable), variable(sampKeyVariable), error))
        return complain(error);
    if (!isReply)
        return hub.notifyAll(words[1], RpcValue::mapOf(members), error) ? 0 : complain(error);
    int isDone = words[2] == "ok";
    std::string text, why = isDone ? "" : words[3];
    if (isDone && !words[3].empty()) {
        isDone = readText(words[3], text);
        if (baseNameOf(words[3]).starts_with(sampAnswerStart))
            (void)unlink(words[3].c_str());
        why = isDone ? "" : "the areas are too many for a message";
        members.emplace_back("regions", sampText(text));
    }
    return hub.reply(words[1], isDone, RpcValue::mapOf(members), why, error) ? 0 : complain(error);
}

}  // namespace

std::vector<std::string> sampWords(const std::string& line)
{
    std::vector<std::string> words(1);
    for (const char c : line)
        if (c == '\t')
            words.emplace_back();
        else
            words.back() += c;
    return words;
}

int isSampChild(const std::vector<std::string>& words)
{
    return !words.empty() &&
           (words[0] == sampServerWord || words[0] == sampSendWord || words[0] == sampReplyWord);
}

int runSampChild(const std::vector<std::string>& words)
{
    (void)std::signal(SIGPIPE, SIG_IGN);
    try {
        if (words[0] != sampServerWord)
            return sendOnce(words);
        SampServer server;
        return server.run();
    } catch (const std::bad_alloc&) {
        return complain("there is no memory for it");
    }
}

int hasSamp() { return 1; }

}  // namespace pavane
