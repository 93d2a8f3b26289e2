#include "apps/view/samp/xml_rpc.h"

#include "tessel/plain_text.h"

#include <expat.h>
#include <limits>
#include <memory>
#include <new>

namespace pavane
{

namespace
{

constexpr const char* header = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr std::size_t deepest = 16, mostValues = 20000;
constexpr int mostElementsDeep = 100;

std::string escaped(std::string_view text)
{
    std::string made;
    for (const char c : text)
        if (c == '<')
            made += "&lt;";
        else if (c == '>')
            made += "&gt;";
        else if (c == '&')
            made += "&amp;";
        else if (c == '\r')
            made += "&#13;";
        else if (static_cast<unsigned char>(c) >= 0x20 || c == '\n' || c == '\t')
            made += c;
        else
            made += '?';  // no character of XML
    return made;
}

void write(std::string& out, const RpcValue& value)
{
    out += "<value>";
    if (value.kind == RpcValue::Kind::text)
        out.append("<string>").append(escaped(value.text)).append("</string>");
    else if (value.kind == RpcValue::Kind::list) {
        out += "<array><data>";
        for (const RpcValue& item : value.items)
            write(out, item);
        out += "</data></array>";
    } else {
        out += "<struct>";
        for (std::size_t i = 0; i < value.items.size() && i < value.names.size(); ++i) {
            out.append("<member><name>").append(escaped(value.names[i])).append("</name>");
            write(out, value.items[i]);
            out += "</member>";
        }
        out += "</struct>";
    }
    out += "</value>";
}

/// Gathers what a document holds. Nothing leaves a handler but the end of the parser.
class RpcReader
{
public:
    int read(std::string_view xml, std::string& error)
    {
        using Parser = std::remove_pointer_t<XML_Parser>;
        const std::unique_ptr<Parser, decltype(&XML_ParserFree)> parser(XML_ParserCreate("UTF-8"),
                                                                        &XML_ParserFree);
        if (!parser || xml.size() > std::numeric_limits<int>::max()) {
            error = "needs more memory than there is";
            return 0;
        }
        parser_ = parser.get();
        XML_SetUserData(parser_, this);
        XML_SetElementHandler(parser_, &RpcReader::onStart, &RpcReader::onEnd);
        XML_SetCharacterDataHandler(parser_, &RpcReader::onText);
        XML_SetStartDoctypeDeclHandler(parser_, &RpcReader::onDoctype);
        const int isRead =
            XML_Parse(parser_, xml.data(), static_cast<int>(xml.size()), 1) == XML_STATUS_OK;
        if (fault_.empty() && !isRead)
            fault_ = std::string("is no XML: ") + XML_ErrorString(XML_GetErrorCode(parser_));
        error = fault_;
        return fault_.empty();
    }

    std::string method;
    std::vector<RpcValue> values;
    int isFault = 0, isAnswer = 0;

private:
    static RpcReader& self(void* data) { return *static_cast<RpcReader*>(data); }
    static void onDoctype(void* data, const XML_Char*, const XML_Char*, const XML_Char*, int)
    {
        self(data).stop("has a document type");
    }
    static void onText(void* data, const XML_Char* text, int length)
    {
        try {
            self(data).text_.append(text, static_cast<std::size_t>(length));
        } catch (const std::bad_alloc&) {
            self(data).stop("needs more memory than there is");
        }
    }
    static void onStart(void* data, const XML_Char* name, const XML_Char**)
    {
        try {
            self(data).start(name);
        } catch (const std::bad_alloc&) {
            self(data).stop("needs more memory than there is");
        }
    }
    static void onEnd(void* data, const XML_Char* name)
    {
        try {
            self(data).end(name);
        } catch (const std::bad_alloc&) {
            self(data).stop("needs more memory than there is");
        }
    }
    void stop(const char* why)
    {
        if (fault_.empty())
            fault_ = why;
        (void)XML_StopParser(parser_, XML_FALSE);
    }

    void start(std::string_view name)
    {
        text_.clear();
        if (++deep_ > mostElementsDeep)
            return stop("is too deep");
        if (name == "value") {
            if (open_.size() == deepest || ++count_ > mostValues)
                return stop("has too many values");
            open_.emplace_back();
        } else if (open_.empty()) {
            isFault |= name == "fault";
            isAnswer |= name == "methodResponse";
        } else if (name == "struct")
            open_.back().value.kind = RpcValue::Kind::map;
        else if (name == "array")
            open_.back().value.kind = RpcValue::Kind::list;
        else
            open_.back().isTyped = 1;
    }
    void end(std::string_view name)
    {
        --deep_;
        if (name == "methodName")
            method = text_;
        else if (name == "name" && !open_.empty())
            open_.back().value.names.push_back(text_);
        else if (name == "value" && !open_.empty())
            close();
        else if (!open_.empty() && open_.back().value.kind == RpcValue::Kind::text)
            open_.back().value.text = text_;
        text_.clear();
    }
    void close()
    {
        Open done = std::move(open_.back());
        open_.pop_back();
        RpcValue& value = done.value;
        if (value.kind == RpcValue::Kind::text && !done.isTyped)
            value.text = text_;
        if (value.kind == RpcValue::Kind::map && value.names.size() != value.items.size())
            return stop("has a member without a name or a value");
        if (open_.empty())
            return values.push_back(std::move(value));
        RpcValue& parent = open_.back().value;
        if (parent.kind == RpcValue::Kind::text)
            return stop("has a value in a text");
        parent.items.push_back(std::move(value));
    }

    struct Open {
        RpcValue value;
        int isTyped = 0;
    };
    XML_Parser parser_ = nullptr;
    std::vector<Open> open_;
    std::string text_, fault_;
    std::size_t count_ = 0;
    int deep_ = 0;
};

}  // namespace

RpcValue RpcValue::listOf(std::vector<RpcValue> values)
{
    RpcValue list;
    list.kind = Kind::list;
    list.items = std::move(values);
    return list;
}

RpcValue RpcValue::mapOf(const std::vector<std::pair<std::string, RpcValue>>& members)
{
    RpcValue map;
    map.kind = Kind::map;
    for (const auto& [name, value] : members) {
        map.names.push_back(name);
        map.items.push_back(value);
    }
    return map;
}

const RpcValue* RpcValue::find(std::string_view name) const
{
    for (std::size_t i = 0; kind == Kind::map && i < names.size() && i < items.size(); ++i)
        if (names[i] == name)
            return &items[i];
    return nullptr;
}

std::string RpcValue::textOf(std::string_view name) const
{
    const RpcValue* const found = find(name);
    return found && found->kind == Kind::text ? found->text : std::string();
}

std::string rpcCallText(const std::string& method, const std::vector<RpcValue>& arguments)
{
    std::string out = header;
    out.append("<methodCall><methodName>").append(escaped(method)).append("</methodName><params>");
    for (const RpcValue& argument : arguments) {
        out += "<param>";
        write(out, argument);
        out += "</param>";
    }
    return out + "</params></methodCall>";
}

std::string rpcAnswerText(const RpcValue& value)
{
    std::string out = header;
    out += "<methodResponse><params><param>";
    write(out, value);
    return out + "</param></params></methodResponse>";
}

std::string rpcFaultText(const std::string& why)
{
    std::string out = header;
    out += "<methodResponse><fault><value><struct><member><name>faultCode</name><value><int>1"
           "</int></value></member><member><name>faultString</name><value><string>";
    return out + escaped(why) +
           "</string></value></member></struct></value></fault>"
           "</methodResponse>";
}

int readRpcCall(std::string_view xml, std::string& method, std::vector<RpcValue>& arguments,
                std::string& error)
{
    RpcReader reader;
    if (!reader.read(xml, error))
        return 0;
    if (reader.method.empty() || reader.isAnswer) {
        error = "is no call";
        return 0;
    }
    method = std::move(reader.method);
    arguments = std::move(reader.values);
    return 1;
}

int readRpcAnswer(std::string_view xml, RpcValue& value, std::string& error)
{
    RpcReader reader;
    if (!reader.read(xml, error))
        return 0;
    if (reader.isFault && !reader.values.empty())
        error = "refuses: " + plainText(reader.values[0].textOf("faultString"));
    else if (!reader.isAnswer || reader.values.size() != 1)
        error = "is no answer";
    else
        value = std::move(reader.values[0]);
    return error.empty();
}

}  // namespace pavane
