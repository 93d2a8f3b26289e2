// What other programs send by SAMP: a call that is read is written as one that is read as the same.
#include "apps/view/samp/file_url.h"
#include "apps/view/samp/local_http.h"
#include "apps/view/samp/samp_child.h"
#include "apps/view/samp/xml_rpc.h"

#include <cstdint>
#include <cstdlib>

using namespace pavane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string text(reinterpret_cast<const char*>(data), size);
    if (size && data[0] % 4)  // the frame has to be right before anything else is looked at
        text = "<methodCall><methodName>m</methodName><params><param><value>" + text.substr(1) +
               "</value></param></params></methodCall>";
    std::string method, error, file, url;
    std::vector<RpcValue> values, again;
    RpcValue answer;
    HttpPlace place;
    if (readRpcCall(text, method, values, error)) {
        const std::string written = rpcCallText(method, values);
        std::string name;
        if (!readRpcCall(written, name, again, error) || rpcCallText(name, again) != written)
            std::abort();
    } else if (error.empty())
        std::abort();
    error.clear();
    if (!readRpcAnswer(text, answer, error) && error.empty())
        std::abort();
    if (fileOfUrl(text, file) && (!fileOfUrl(fileUrl(file), url) || url != file))
        std::abort();
    (void)readHttpPlace(text, place);
    (void)sampWords(text);
    return 0;
}
