#include "apps/view/samp/samp_hub.h"

#include "apps/view/samp/file_url.h"
#include "tessel/LineReader.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/trimmed.h"

#include <sys/stat.h>
#include <unistd.h>

namespace pavane
{

namespace
{

constexpr const char* hubPrefix = "samp.hub.";

}  // namespace

std::string sampText(std::string_view text)
{
    std::string made;
    for (const char c : text)
        made += (c >= 0x20 && c < 0x7f) || c == '\n' || c == '\r' || c == '\t' ? c : '?';
    return made;
}

int sampLockFile(const std::string& variable, const std::string& home, std::string& file,
                 std::string& error)
{
    constexpr std::string_view start = "std-lockurl:";
    if (variable.empty())
        return file = home + "/.samp", 1;
    if (variable.starts_with(start) && fileOfUrl(variable.substr(start.size()), file))
        return 1;
    error = "SAMP_HUB names no lock file of this machine: " + plainText(variable);
    return 0;
}

int readSampLock(const std::string& file, SampLock& lock, std::string& error)
{
    AFile in;
    struct stat info {
    };
    if (!in.open(file, AFile::readOnly) || stat(file.c_str(), &info) != 0) {
        error = "no hub is running (there is no " + plainText(file) + ')';
        return 0;
    }
    if (!S_ISREG(info.st_mode) || info.st_uid != geteuid()) {
        error = plainText(file) + " belongs to somebody else";
        return 0;
    }
    LineReader lines(in);
    std::string line;
    while (lines.next(line)) {
        const std::size_t equal = line.find('=');
        if (line.starts_with('#') || equal == std::string::npos)
            continue;
        const std::string_view key = trimmed(std::string_view(line).substr(0, equal), whiteSpace);
        const std::string value(trimmed(std::string_view(line).substr(equal + 1), whiteSpace));
        if (key == "samp.secret")
            lock.secret = value;
        else if (key == "samp.hub.xmlrpc.url")
            lock.url = value;
    }
    if (!lines.fault().empty() || lock.secret.empty() || lock.url.empty()) {
        error = plainText(file) + " does not say where the hub is";
        return 0;
    }
    return 1;
}

RpcValue sampAnswer(int isDone, const RpcValue& result, const std::string& why)
{
    std::vector<std::pair<std::string, RpcValue>> members = {
        {"samp.status", isDone ? "samp.ok" : "samp.error"}};
    if (isDone)
        members.emplace_back("samp.result", result);
    else
        members.emplace_back("samp.error", RpcValue::mapOf({{"samp.errortxt", sampText(why)}}));
    return RpcValue::mapOf(members);
}

int SampHub::call(const std::string& method, std::vector<RpcValue> arguments, RpcValue& answer,
                  std::string& error)
{
    std::string text;
    if (!key_.empty())
        arguments.insert(arguments.begin(), RpcValue(key_));
    if (postHttp(place_, rpcCallText(hubPrefix + method, arguments), patience, text, error) &&
        readRpcAnswer(text, answer, error))
        return 1;
    error.insert(0, "the hub ");
    return 0;
}

int SampHub::enterAs(const std::string& url, const std::string& key, std::string& error)
{
    url_ = url;
    key_ = key;
    if (readHttpPlace(url, place_))
        return 1;
    error = "the hub is at no address that can be used: " + plainText(url);
    return 0;
}

int SampHub::enter(const SampLock& lock, std::string& error)
{
    RpcValue answer;
    if (!enterAs(lock.url, {}, error) || !call("register", {RpcValue(lock.secret)}, answer, error))
        return 0;
    key_ = answer.textOf("samp.private-key");
    if (key_.empty())
        error = "the hub gives no key";
    return !key_.empty();
}

int SampHub::subscribe(const std::string& callback, const std::vector<std::string>& types,
                       std::string& error)
{
    const RpcValue told = RpcValue::mapOf(
        {{"samp.name", "pavane-view"},
         {"samp.description.text", "Maps of radio astronomy: areas, numbers, several maps"}});
    std::vector<std::pair<std::string, RpcValue>> wanted;
    wanted.reserve(types.size());
    for (const std::string& type : types)
        wanted.emplace_back(type, RpcValue::mapOf({}));
    RpcValue answer;
    return call("declareMetadata", {told}, answer, error) &&
           call("setXmlrpcCallback", {RpcValue(callback)}, answer, error) &&
           call("declareSubscriptions", {RpcValue::mapOf(wanted)}, answer, error);
}

int SampHub::notifyAll(const std::string& type, const RpcValue& parameters, std::string& error)
{
    RpcValue answer;
    return call("notifyAll", {RpcValue::mapOf({{"samp.mtype", type}, {"samp.params", parameters}})},
                answer, error);
}

int SampHub::reply(const std::string& message, int isDone, const RpcValue& result,
                   const std::string& why, std::string& error)
{
    RpcValue answer;
    return call("reply", {RpcValue(message), sampAnswer(isDone, result, why)}, answer, error);
}

int SampHub::ping(std::string& error)
{
    RpcValue answer;
    std::string text;
    if (postHttp(place_, rpcCallText("samp.hub.ping", {}), patience, text, error))
        return 1;
    error.insert(0, "the hub ");
    return 0;
}

void SampHub::leave()
{
    RpcValue answer;
    std::string error;
    if (!key_.empty())
        (void)call("unregister", {}, answer, error);
    key_.clear();
}

}  // namespace pavane
