// report: parts that go together are one report, and all others are refused before anything shows.

#include "infraconvert/workspace.h"

#include <gtest/gtest.h>

namespace {

using arguments_t = std::vector<std::string>;
using support::contains;
using support::workspace_t;

class report_t : public ::testing::Test {
  protected:
    void SetUp() override {
        here.write("a.cfg", "version 4.1(2)\nnpiv enable\n");
        here.write("b.cfg", "version 4.1(2)\nfeature lldp\n");
        here.write("agreed", "IC041 | a.cfg | * | in the window |\nIC041 | b.cfg | * | too |\n"
                             "IC041 | c.cfg | * | nowhere |\n");
        write_part("a.jsonl", {"a.cfg"});
        write_part("b.jsonl", {"b.cfg"});
    }

    std::string part_of(arguments_t more) const {
        arguments_t arguments = {"audit", "--to", "5.0(3)", "--format", "jsonl"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return here.run(arguments).out;
    }
    void write_part(const std::string &name, const arguments_t &more) const {
        here.write(name, part_of(more));
    }

    workspace_t here;
};

TEST_F(report_t, refuses_parts_that_do_not_go_together) {
    const std::string whole = here.read("b.jsonl");
    const size_t last_line = whole.rfind('\n', whole.size() - 2) + 1;
    const size_t first_line = whole.find('\n') + 1;
    here.write("lost.jsonl", whole.substr(0, first_line) + whole.substr(last_line));
    here.write("cut.jsonl", whole.substr(0, last_line));
    here.write("within.jsonl", whole.substr(0, last_line - 40));
    here.write("unended.jsonl", whole.substr(0, whole.size() - 1));
    here.write("empty.jsonl", "");
    here.write("joined.jsonl", whole + whole);
    here.write("later.jsonl", "{\"kind\":\"infraconvert audit\",\"format_version\":99}\n");
    here.write("odd.jsonl",
               whole.substr(0, first_line) + "{\"path\":1}\n" + whole.substr(last_line));
    write_part("masked.jsonl", {"--mask", "b.cfg"});
    write_part("npiv.jsonl", {"--service", "npiv", "b.cfg"});
    const struct {
        const char *part, *message;
    } rows[] = {
        {"cut.jsonl",
         "cut.jsonl is not whole: it ends after 1 configuration; make this part again"},
        {"lost.jsonl", "lost.jsonl is not whole"},
        {"within.jsonl", "within.jsonl is not whole: it ends after 0 configurations"},
        {"unended.jsonl", "unended.jsonl is not whole"},
        {"empty.jsonl", "empty.jsonl is not whole"},
        {"joined.jsonl", "line 4: more stands behind the end of the part"},
        {"later.jsonl", "later.jsonl, line 1: it is of another kind or of a later version"},
        {"b.cfg", "b.cfg, line 1: no line of infraconvert audit --format jsonl"},
        {"masked.jsonl", "masked, and not by"},
        {"npiv.jsonl", "it was made otherwise than a.jsonl"},
        {"missing.jsonl", "missing.jsonl: No such file"},
        {".", "a part is read twice"},
    };
    for (const auto &row : rows) {
        const auto result = here.run({"report", "a.jsonl", row.part});
        EXPECT_EQ(result.status, 5) << row.part << result.err;
        EXPECT_EQ(result.out, "") << row.part;
        EXPECT_TRUE(contains(result.err, row.message)) << row.part << ": " << result.err;
    }
    // What only a full look shows.
    const auto odd = here.run({"report", "a.jsonl", "odd.jsonl"});
    EXPECT_EQ(odd.status, 5);
    EXPECT_TRUE(contains(odd.err, "odd.jsonl, line 2: ")) << odd.err;
    EXPECT_EQ(here.run({"report"}).status, 2);
}

TEST_F(report_t, tells_what_is_odd_about_parts_that_do) {
    const auto twice = here.run({"report", "a.jsonl", "b.jsonl", "a.jsonl"});
    EXPECT_EQ(twice.status, 0) << twice.err;
    EXPECT_TRUE(contains(twice.err, "warning: 1 configuration stands in more than one part"))
        << twice.err;
    EXPECT_TRUE(contains(twice.out, "3 configurations")) << twice.out;
    const auto page = here.run({"report", "--format", "html", "a.jsonl"});
    EXPECT_TRUE(contains(page.err, "made without --details")) << page.err;
    EXPECT_TRUE(contains(page.out, "</html>"));
}

// An exception is told as met by nothing only when no part has met it.
TEST_F(report_t, tells_of_exceptions_that_no_part_met) {
    const std::string marks = "version 4.1(2)\nclass-map voice\n  match cos 5\npolicy-map in\n"
                              "  class voice\n    set qos-group 2\npolicy-map dc\n  class voice\n"
                              "    priority\nsystem qos\n  service-policy dc\n"
                              "interface Ethernet1/1\n  service-policy input in\n";
    here.write("a.cfg", marks);
    here.write("b.cfg", marks);
    write_part("a.jsonl", {"--accept", "@agreed", "a.cfg"});
    write_part("b.jsonl", {"--accept", "@agreed", "b.cfg"});
    const auto result = here.run({"report", "a.jsonl", "b.jsonl"});
    EXPECT_TRUE(contains(result.err, "agreed, line 3")) << result.err;
    EXPECT_FALSE(contains(result.err, "agreed, line 1")) << result.err;
    EXPECT_FALSE(contains(result.err, "agreed, line 2")) << result.err;
}

} // namespace
