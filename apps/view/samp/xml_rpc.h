#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pavane
{

/// A value of XML-RPC as SAMP has them: a text, a list, or a map of names. A plain value; scalars
/// of other types are their texts.
struct RpcValue {
    enum class Kind { text, list, map };

    RpcValue() = default;
    RpcValue(std::string words) : text(std::move(words)) {}
    RpcValue(const char* words) : text(words) {}
    static RpcValue listOf(std::vector<RpcValue> values);
    static RpcValue mapOf(const std::vector<std::pair<std::string, RpcValue>>& members);

    /// The member of a map; null for none.
    const RpcValue* find(std::string_view name) const;
    /// The text of a member; "" for none.
    std::string textOf(std::string_view name) const;

    Kind kind = Kind::text;
    std::string text;
    std::vector<RpcValue> items;     ///< of a list or a map
    std::vector<std::string> names;  ///< of a map's items
};

/// What was called, or answered, as XML.
std::string rpcCallText(const std::string& method, const std::vector<RpcValue>& arguments);
std::string rpcAnswerText(const RpcValue& value);
std::string rpcFaultText(const std::string& why);

// What others send is believed in nothing: a document type (and so any entity), more than 16 values
// in one another and more than 20 000 of them end the reading. 0 with `error`, a clause without its
// subject.
int readRpcCall(std::string_view xml, std::string& method, std::vector<RpcValue>& arguments,
                std::string& error);
/// A fault is an error too.
int readRpcAnswer(std::string_view xml, RpcValue& value, std::string& error);

}  // namespace pavane
