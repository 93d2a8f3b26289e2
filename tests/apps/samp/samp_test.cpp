// What is read of other programs, without a window.
#include "apps/view/samp/file_url.h"
#include "apps/view/samp/local_http.h"
#include "apps/view/samp/samp_child.h"
#include "apps/view/samp/samp_hub.h"

#include <arpa/inet.h>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

std::string repeated(const std::string& text, int count)
{
    std::string made;
    for (int i = 0; i < count; ++i)
        made += text;
    return made;
}

}  // namespace

TEST(XmlRpc, GivesBackWhatWasWritten)
{
    const RpcValue value = RpcValue::mapOf(
        {{"a <&> b", RpcValue("1\r\n<2>&amp;\t ")},
         {"list", RpcValue::listOf({"", RpcValue::mapOf({}), RpcValue::listOf({"x"})})}});
    std::string method, error;
    std::vector<RpcValue> arguments;
    ASSERT_TRUE(readRpcCall(rpcCallText("m", {"key", value}), method, arguments, error)) << error;
    EXPECT_EQ(method, "m");
    ASSERT_EQ(arguments.size(), 2U);
    EXPECT_EQ(arguments[0].text, "key");
    EXPECT_EQ(arguments[1].textOf("a <&> b"), "1\r\n<2>&amp;\t ");
    const RpcValue* const list = arguments[1].find("list");
    ASSERT_TRUE(list && list->items.size() == 3);
    EXPECT_EQ(list->items[2].items[0].text, "x");
    RpcValue again;
    ASSERT_TRUE(readRpcAnswer(rpcAnswerText(value), again, error)) << error;
    EXPECT_EQ(again.names, value.names);
    EXPECT_FALSE(readRpcAnswer(rpcFaultText("no <way>"), again, error));
    EXPECT_EQ(error, "refuses: no <way>");
}

TEST(XmlRpc, RefusesWhatIsNoCall)
{
    const std::string begin = "<methodCall><methodName>m</methodName><params><param>";
    const std::string end = "</param></params></methodCall>";
    const struct {
        std::string xml, error;
    } cases[] = {
        {begin + "<value>bare</value>" + end, ""},
        {begin + "<value><int>7</int></value>" + end, ""},
        {"", "no XML"},
        {begin, "no XML"},
        {"<methodCall/>", "no call"},
        {rpcAnswerText("x"), "no call"},
        {"<!DOCTYPE a [<!ENTITY b \"c\">]><methodCall/>", "document type"},
        {begin + "<value><struct><member><value>1</value></member></struct></value>" + end,
         "without a name"},
        {begin + "<value><struct><member><name>n</name></member></struct></value>" + end,
         "without a name"},
        {begin + "<value><string><value>1</value></string></value>" + end, "value in a text"},
        {begin + repeated("<value><array><data>", 17), "too many"},
        {begin + "<value><array><data>" + repeated("<value/>", 20000), "too many"},
        {repeated("<a>", 200), "too deep"},
        {begin + "<value>\xff</value>" + end, "no XML"},
    };
    for (const auto& c : cases) {
        std::string method, error;
        std::vector<RpcValue> arguments;
        EXPECT_EQ(readRpcCall(c.xml, method, arguments, error), c.error.empty()) << error;
        EXPECT_NE(error.find(c.error), std::string::npos) << error << " of " << c.xml.substr(0, 99);
    }
}

TEST(SampUrls, AreFilesOfThisMachineOnly)
{
    for (const char* file : {"/a/b.fits", "/a b/\xc3\xa4%?#&\n.fits", "/"}) {
        std::string again;
        EXPECT_TRUE(fileOfUrl(fileUrl(file), again));
        EXPECT_EQ(again, file);
    }
    std::string file = "as it was";
    for (const char* url : {"", "file:", "file:a", "file://host/a", "file:////host", "http://a/b",
                            "/a/b", "file:///a%", "file:///a%2", "file:///a%zz", "file:///a%00b"})
        EXPECT_FALSE(fileOfUrl(url, file)) << url;
    EXPECT_EQ(file, "as it was");
    EXPECT_TRUE(fileOfUrl("file:/a%20b", file) && file == "/a b");
    EXPECT_TRUE(fileOfUrl("file://localhost/c", file) && file == "/c");
    HttpPlace place;
    for (const char* url : {"", "http://", "http:///x", "https://a/", "http://a:0/", "http://a:x/",
                            "http://a:99999/", "http://u@a/", "http://a/b c", "ftp://a"})
        EXPECT_FALSE(readHttpPlace(url, place)) << url;
    ASSERT_TRUE(readHttpPlace("http://[::1]:8080/x/y?z", place));
    EXPECT_EQ(place.host + ' ' + place.port + ' ' + place.path, "::1 8080 /x/y?z");
    ASSERT_TRUE(readHttpPlace("http://127.0.0.1", place));
    EXPECT_EQ(place.port + place.path, "80/");
}

TEST(SampLocks, AreFoundAndRead)
{
    std::string file, error;
    EXPECT_TRUE(sampLockFile("", "/home/x", file, error) && file == "/home/x/.samp");
    EXPECT_TRUE(sampLockFile("std-lockurl:file:///tmp/l", "", file, error) && file == "/tmp/l");
    EXPECT_FALSE(sampLockFile("std-lockurl:http://a/l", "", file, error));
    const std::string name = testing::TempDir() + "samp-lock";
    const struct {
        const char* text;
        int isRead;
    } cases[] = {{"# hub\n samp.secret = s e \r\nsamp.hub.xmlrpc.url=http://h:1/\nother\n", 1},
                 {"samp.secret=s\n", 0},
                 {"", 0}};
    for (const auto& c : cases) {
        std::ofstream(name, std::ios::trunc) << c.text;
        SampLock lock;
        EXPECT_EQ(readSampLock(name, lock, error), c.isRead) << c.text;
        EXPECT_TRUE(!c.isRead || lock.secret + lock.url == "s ehttp://h:1/");
    }
    SampLock lock;
    EXPECT_FALSE(readSampLock(testing::TempDir() + "no/such", lock, error));
    EXPECT_FALSE(readSampLock("/dev/null", lock, error));
}

// Whoever knocks: callers, those that say nothing, too much or nonsense.
TEST(LocalHttp, AnswersCallersAndOutlivesOthers)
{
    LocalHttpServer server;
    std::string error;
    ASSERT_TRUE(server.open(error)) << error;
    std::string answer, fault;
    int isAnswered = 0;
    std::atomic<int> isOver = 0;
    const HttpPlace place{"127.0.0.1", std::to_string(server.port()), "/"};
    std::thread caller([&] {
        const auto knock = [&](const std::string& text) {
            sockaddr_in address{};
            address.sin_family = AF_INET;
            address.sin_port = htons(static_cast<std::uint16_t>(server.port()));
            address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
            auto* const to = reinterpret_cast<sockaddr*>(&address);
            (void)!connect(socket, to, sizeof address);
            (void)!send(socket, text.data(), text.size(), MSG_NOSIGNAL);
            return socket;
        };
        std::vector<int> open;
        for (const std::string& text :
             {std::string(), std::string("GET / HTTP/1.0\r\n\r\n"), std::string(20000, 'x'),
              std::string("POST / HTTP/1.0\r\nContent-Length: -1\r\n\r\n"),
              std::string("POST / HTTP/1.0\r\nContent-Length: 99999999999999999999\r\n\r\n"),
              std::string("POST / HTTP/1.0\r\nContent-Length: 2000000\r\n\r\n")})
            open.push_back(knock(text));
        isAnswered = postHttp(place, std::string(100000, 'a'), 5000, answer, fault);
        for (const int socket : open)
            (void)close(socket);
        isOver = 1;
    });
    for (int i = 0; i < 500 && !isOver; ++i)
        server.turn(20, -1, [](const std::string& body) {
            return std::to_string(body.size()) + std::string(300000, 'b');
        });
    caller.join();
    EXPECT_TRUE(isAnswered) << fault;
    EXPECT_EQ(answer, "100000" + std::string(300000, 'b'));
    // nobody, and nobody who answers
    EXPECT_FALSE(postHttp({"127.0.0.1", "1", "/"}, "", 500, answer, fault));
    EXPECT_FALSE(postHttp(place, "", 200, answer, fault));
    EXPECT_EQ(fault, "does not answer in time");
}

TEST(SampLines, AreTakenApart)
{
    EXPECT_EQ(sampWords("load\t\tfile:///a b\t"),
              (std::vector<std::string>{"load", "", "file:///a b", ""}));
    EXPECT_TRUE(isSampChild({"--samp-reply"}) && !isSampChild({"map.fits"}) && !isSampChild({}));
    EXPECT_EQ(runSampChild({"--samp-reply", "id"}), 2);
    EXPECT_EQ(sampText("a\xc3\xa4\x01\tb"), "a???\tb");
    const RpcValue refused = sampAnswer(0, {}, "why");
    EXPECT_EQ(refused.textOf("samp.status"), "samp.error");
    EXPECT_EQ(refused.find("samp.error")->textOf("samp.errortxt"), "why");
}

}  // namespace pavane
