#include <gtest/gtest.h>

#include "SorvaneMac/Drafting/ChatStream.h"
#include "SorvaneMac/Drafting/LoopbackAddress.h"
#include "SorvaneMac/Drafting/NumbersInText.h"
#include "SorvaneMac/Drafting/SanitizedText.h"

namespace sorvane {
namespace {

TEST(SanitizedText, DropsWhatIsNoProse) {
    const struct {
        int line;
        const char* text;
        const char* whole;
        /// The same while it still grows.
        const char* soFar;
    } cases[] = {
        {__LINE__, "  Plain.  \r\nMore. ", "Plain.\nMore.", "Plain.\nMore."},
        {__LINE__, "A.\n```json\n{\"a\": 1}\n```\nB.", "A.\nB.", "A.\nB."},
        {__LINE__, "A.\n ```\nnever closed\nB.", "A.", "A."},
        {__LINE__, "Tool_Call: f(1)\nA.\n  TOOL_CALLS here\nI have called it.\nB.", "A.\nB.",
         "A.\nB."},
        {__LINE__, "A tool_call inside stays.", "A tool_call inside stays.",
         "A tool_call inside stays."},
        {__LINE__, "A.\nI have", "A.\nI have", "A."},
        {__LINE__, "A.\n``", "A.\n``", "A."},
        {__LINE__, "A.\nIt", "A.\nIt", "A.\nIt"},
        {__LINE__, "", "", ""},
        {__LINE__, "```", "", ""},
        {__LINE__, "tool_call(", "", ""},
        {__LINE__, "```json {\"a\": 1}```\nB.", "B.", "B."},
        {__LINE__, "TOOL_CALL: x\n\n\n", "", ""},
        {__LINE__, "<tool_call>\n{\"f\": 1}\n</tool_call>\nB.", "B.", "B."},
        {__LINE__, "<think>hm\n```\n42</think> A.\n\nB.", "A.\n\nB.", "A.\n\nB."},
        {__LINE__, "A.\n<thi", "A.\n<thi", "A."},
        {__LINE__, "A < think > B.", "A < think > B.", "A < think > B."},
        {__LINE__, "A.\rtool_call: f\rB.", "A.\nB.", "A.\nB."},
        {__LINE__, "A.\u2028```\u2028x\u2028```\u2029I have called\u0085B.", "A.\nB.", "A.\nB."},
        {__LINE__, "A.\r\n\r\nB.\rI ha", "A.\n\nB.\nI ha", "A.\n\nB."},
        {__LINE__, "<think>\u0130\u0130\u0130\u0130\u0130\u0130</THINK> <tool_call></tool_call>B.",
         "B.", "B."},
        {__LINE__, "<think>a</think> <think>", "", ""},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(SanitizedText::sanitized(each.text), each.whole) << "line " << each.line;
        EXPECT_EQ(SanitizedText::sanitizedSoFar(each.text), each.soFar) << "line " << each.line;
    }
}

TEST(NumbersInText, FindsTheNumbersThatTheSourceLacks) {
    using List = std::vector<std::string>;
    const struct {
        int line;
        const char* draft;
        const char* source;
        List foreign;
    } cases[] = {
        {__LINE__, "t was 2.10 with 38 df, p below 0.05.", "t(38) = 2.1, p < .05", {}},
        {__LINE__, "An effect of -0.45 (0.450).", "d = .45", {"-0.45"}},
        {__LINE__, "An effect of 0.45, −.45 or –.450.", "r = -.45", {"0.45"}},
        {__LINE__, "r\u00a0= −\u20090.45, [−0.10, ‑0.2]", "r = -0.45, [-0.1, -.2]", {}},
        {__LINE__, "r = −.45", "r = 0.45", {"-.45"}},
        {__LINE__, "3-5 items, M-2, (4)−1, 6% -7", "3 to 5 items, 2, 4, 1; 6% – 7", {"-7"}},
        {__LINE__, "-1,200 and -0.00", "lost −1200 of 0", {}},
        {__LINE__, "1,200", "-1,200", {"1,200"}},
        {__LINE__, "1,200 people; 1200; F(2, 40)", "N = 1200, F(2,40) = 3", {}},
        {__LINE__, "About 45% did, 45% of 300.", "p = .45", {"45", "300"}},
        {__LINE__, "It rose by 3.15.", "from 3.1 to 5", {"3.15"}},
        {__LINE__, "The mean was 3.", "M = 3.0", {}},
        {__LINE__, "The mean was 03.50, not ٣.", "M = 3.5", {"3"}},
        {__LINE__, "No numbers here.", "", {}},
        {__LINE__, "x1 and 2nd", "", {"1", "2"}},
        {__LINE__, "1,2,3", "1 2", {"1,2,3"}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(NumbersInText::foreign(each.draft, each.source), each.foreign)
            << "line " << each.line;
    }
}

TEST(LoopbackAddress, TakesAddressesOfThisMachineAlone) {
    const struct {
        int line;
        const char* text;
        const char* authority;
        const char* path;
    } taken[] = {
        {__LINE__, "http://127.0.0.1:11434/v1", "127.0.0.1:11434", "/v1"},
        {__LINE__, " HTTP://LocalHost:8080/ ", "127.0.0.1:8080", ""},
        {__LINE__, "localhost", "127.0.0.1:80", ""},
        {__LINE__, "127.1.2.3:1/v1/chat/completions", "127.1.2.3:1", "/v1"},
        {__LINE__, "http://[::1]:65535/a/b/", "[::1]:65535", "/a/b"},
    };
    for (const auto& each : taken) {
        const auto address = LoopbackAddress::parse(each.text);
        ASSERT_TRUE(address) << "line " << each.line;
        EXPECT_EQ(address->authority(), each.authority) << "line " << each.line;
        EXPECT_EQ(address->path, each.path) << "line " << each.line;
    }
    for (const char* const refused : {"",
                                      "http://",
                                      "http://example.com/v1",
                                      "http://192.168.1.5:11434",
                                      "http://0.0.0.0:80",
                                      "https://127.0.0.1/v1",
                                      "ftp://127.0.0.1",
                                      "http://127.0.0.1@example.com/",
                                      "http://localhost@example.com",
                                      "http://localhost.example.com",
                                      "http://127.0.0.1.example",
                                      "http://127.0.0.1:0",
                                      "http://127.0.0.1:65536",
                                      "http://127.0.0.1:",
                                      "http://127.0.0.1:a",
                                      "http://127.0.0.256",
                                      "http://127.0.1",
                                      "http://0127.0.0.1",
                                      "http://[::2]:80",
                                      "http://[::1",
                                      "http://[::1]x",
                                      "http://::1/",
                                      "http://[::ffff:10.0.0.1]/",
                                      "http://127.0.0.1/v1?x=1",
                                      "http://127.0.0.1/a b",
                                      "http://127.0.0.1#f",
                                      "http://127.0.0.1\\@example.com/",
                                      "//127.0.0.1"}) {
        EXPECT_FALSE(LoopbackAddress::parse(refused)) << refused;
    }
}

std::string event(const std::string& content) {
    return "data: {\"choices\": [{\"delta\": {\"content\": \"" + content + "\"}}]}\n\n";
}

TEST(ChatStream, ReadsAnAnswerHoweverItIsCut) {
    const std::string told = "This is unavailable.";
    const struct {
        int line;
        std::string bytes;
        std::string text;
        bool isDone;
        bool fails;
    } cases[] = {
        {__LINE__, event("It ") + ": ping\n\n" + event("is.") + "data: [DONE]\n\n", "It is.", true,
         false},
        {__LINE__,
         event("It") + "data:{\"choices\":[{\"delta\":{},\"finish_reason\":\"stop\"}]}\r\n", "It",
         true, false},
        {__LINE__,
         "{\"choices\":[{\"message\":{\"content\":\"Whole.\"},\"finish_reason\":\"stop\"}]}",
         "Whole.", true, false},
        {__LINE__, event("Half"), "Half", false, false},
        {__LINE__, event("Half") + "data: {\"error\": {\"message\": \"out of memory\"}}\n", "Half",
         false, true},
        {__LINE__, event("A") + "data: nonsense\n" + event("B"), "A", false, true},
        {__LINE__, "data: " + std::string(100'000, '[') + "\n", "", false, true},
        {__LINE__, std::string(3 << 20, 'x'), "", false, true},
        {__LINE__, event(std::string(40'000, 'x')), "", false, true},
        {__LINE__, "data: {\"choices\": 3}\ndata: {\"choices\": [7]}\ndata: [DONE]\n", "", true,
         false},
        {__LINE__,
         "data: {\"choices\":[{\"delta\":{\"content\":\"A\"},\"finish_reason\":\"\"}]}\n" +
             event("b"),
         "Ab", false, false},
        {__LINE__, event("A\\ud83d") + event("\\uDE00\\\\ud83d") + event("\\ude00\\u00e9"),
         "A😀\\ud83d\uFFFDé", false, false},
        {__LINE__, event("\\u00e9\\ud83d\\ude00") + "data: [DONE]\n", "é😀", true, false},
        {__LINE__, "", "", false, false},
    };
    for (const auto& each : cases) {
        for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, each.bytes.size() + 1}) {
            ChatStream stream;
            for (std::size_t at = 0; at < each.bytes.size(); at += piece) {
                stream.take(std::string_view(each.bytes).substr(at, piece));
            }
            stream.finish();
            EXPECT_EQ(stream.text(), each.text) << "line " << each.line;
            EXPECT_EQ(stream.isDone(), each.isDone) << "line " << each.line;
            EXPECT_EQ(stream.failure().has_value(), each.fails) << "line " << each.line;
        }
    }
}

TEST(ChatStream, CutsALongMessageBetweenCharacters) {
    std::string message(199, 'x');
    EXPECT_EQ(chatErrorMessage("{\"error\": \"" + message + "\u00e9\"}"), message);
}

}  // namespace
}  // namespace sorvane
