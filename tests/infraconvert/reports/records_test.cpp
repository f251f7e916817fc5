// Records on their way through the formats.

#include "base/errors.h"
#include "infraconvert/workspace.h"
#include "reports/json_stream.h"
#include "reports/record_json.h"
#include "window/exceptions.h"

#include <gtest/gtest.h>

namespace {

using namespace infraconvert;
using json = nlohmann::ordered_json;
using support::contains;
using support::workspace_t;

const std::vector<std::string> pair_of_releases = {"--from", "4.1(2)", "--to", "5.0(3)"};

// Loses an attachment, has lines of no known encoding, and a secret.
const std::string lossy = "feature lldp\nsnmp-server community s3cret\n"
                          "class-map voice\n  match cos 5\n"
                          "policy-map in\n  class voice\n    set qos-group 2\n"
                          "policy-map dc\n  class voice\n    priority\n"
                          "system qos\n  service-policy dc\n"
                          "interface Ethernet1/1\n  description \xE9t\xE9 <script>\n"
                          "  service-policy input in\n";

support::result_t audit(const workspace_t &here, std::vector<std::string> more) {
    more.insert(more.begin(), "audit");
    more.insert(more.end(), pair_of_releases.begin(), pair_of_releases.end());
    return here.run(more);
}

std::vector<std::string> lines_of(const std::string &text) {
    std::vector<std::string> lines;
    for (size_t from = 0; from < text.size(); from = text.find('\n', from) + 1)
        lines.push_back(text.substr(from, text.find('\n', from) - from));
    return lines;
}

TEST(records, come_back_from_json_as_they_were) {
    const workspace_t here;
    here.write("a\xE9.cfg", lossy);
    here.write("b.cfg", "feature lldp\n");
    here.write("c.cfg", "");
    here.write("d.cfg", "feature lldp\n" + lossy.substr(lossy.find("system qos"))); // fails
    here.write("agreed", "IC041 | * | * | of the window | 2099-12-31\n");
    const std::vector<std::vector<std::string>> ways = {
        {"--rollback"}, {"--mask"}, {"--details"}, {"--details", "--via", "4.2(1)"}};
    for (const auto &way : ways) {
        std::vector<std::string> words = {"--format", "jsonl",     "--accept", "@agreed",
                                          "b.cfg",    "a\xE9.cfg", "c.cfg",    "d.cfg"};
        words.insert(words.begin(), way.begin(), way.end());
        const auto result = audit(here, words);
        const auto lines = lines_of(result.out);
        ASSERT_EQ(lines.size(), 6) << result.out << result.err;
        EXPECT_EQ(header_json(header_from(json::parse(lines[0]))).dump(), lines[0]);
        totals_t totals;
        for (size_t i = 1; i < 5; i++) {
            const audited_t audited = record_from(json::parse(lines[i]));
            EXPECT_EQ(json_line(record_json(audited)), lines[i] + '\n');
            EXPECT_EQ(likeness_of(audited), audited.alike);
            totals.add(audited);
        }
        const json last = json::parse(lines[5]);
        EXPECT_EQ(last["kind"], totals_kind);
        EXPECT_EQ(totals_json(totals)["codes"], last["codes"]);
        EXPECT_EQ(totals_json(totals)["states"], last["states"]);
    }
}

// Which step of a route did it is told of services, lines and findings, and of one step of nothing.
TEST(records, tell_the_step_of_a_route) {
    const workspace_t here;
    here.write("a.cfg", lossy);
    const auto details = [&](const std::vector<std::string> &via) {
        std::vector<std::string> words = {"--json", "--details", "a.cfg"};
        words.insert(words.begin(), via.begin(), via.end());
        return json::parse(audit(here, words).out)["configurations"][0];
    };
    const json first = {"4.1(2)", "4.2(1)"}, second = {"4.2(1)", "5.0(3)"};
    const json stops = details({"--via", "4.2(1)"});
    EXPECT_EQ(stops["steps"].front()["hop"], first);
    EXPECT_EQ(stops["steps"].back()["hop"], second);
    EXPECT_EQ(stops["findings"][0]["hop"], first);
    size_t changed = 0;
    for (const json &line : stops["diff"]) {
        const bool is_changed = line["edit"] == "add" || line["edit"] == "remove";
        EXPECT_EQ(line.contains("hop"), is_changed) << line;
        changed += is_changed && line["hop"] == first;
    }
    EXPECT_GT(changed, 0);
    EXPECT_EQ(details({}).dump().find("\"hop\""), std::string::npos);
}

TEST(records, that_are_none_are_refused) {
    const workspace_t here;
    here.write("a.cfg", lossy);
    const auto result = audit(here, {"--format", "jsonl", "a.cfg"});
    const auto lines = lines_of(result.out);
    json header = json::parse(lines[0]), record = json::parse(lines[1]);
    header["format_version"] = 2;
    EXPECT_THROW(header_from(header), input_error_t);
    record["findings"][0]["code"] = "IC999";
    EXPECT_THROW(record_from(record), input_error_t);
    record.erase("findings");
    EXPECT_THROW(record_from(record), input_error_t);
    EXPECT_THROW(record_from(json::array()), input_error_t);
}

TEST(records, make_the_same_document_in_one_piece) {
    const workspace_t here;
    here.write("a.cfg", lossy);
    here.write("b.cfg", "feature lldp\n");
    here.write("c.cfg", "");
    const std::vector<std::string> files = {"a.cfg", "b.cfg", "c.cfg"};
    const auto as = [&](const char *format) {
        return audit(here, {"--format", format, "a.cfg", "b.cfg", "c.cfg"});
    };
    const json document = json::parse(as("json").out);
    const auto lines = lines_of(as("jsonl").out);
    ASSERT_EQ(document["configurations"].size(), 3);
    for (size_t i = 0; i < 3; i++)
        EXPECT_EQ(document["configurations"][i], json::parse(lines[i + 1]));
    EXPECT_EQ(document["count"], 3);
    EXPECT_EQ(document["need_hands"], 2);
    EXPECT_EQ(json::parse(audit(here, {"--json", "c.cfg"}).out)["configurations"].size(), 1);
    const json sarif = json::parse(as("sarif").out)["runs"][0];
    EXPECT_EQ(sarif["invocations"][0]["toolExecutionNotifications"].size(), 1);
    EXPECT_EQ(sarif["results"].size(), document["configurations"][0]["findings"].size());
}

// What is written as agreed on is agreed on: whatever stands in names and lines.
TEST(records, make_a_baseline) {
    const workspace_t here;
    here.write("odd [1]*.cfg", lossy);
    here.write("b.cfg", lossy);
    const auto baseline = audit(here, {"--format", "accept", "odd [1]*.cfg"});
    EXPECT_EQ(baseline.status, 4);
    here.write("agreed", baseline.out);
    const auto again = audit(here, {"--accept", "@agreed", "odd [1]*.cfg"});
    EXPECT_EQ(again.status, 0) << again.out;
    EXPECT_FALSE(contains(again.err, "meets nothing")) << again.err;
    EXPECT_EQ(audit(here, {"--accept", "@agreed", "b.cfg"}).status, 4);
    here.write("masked", audit(here, {"--mask", "--format", "accept", "b.cfg"}).out);
    EXPECT_EQ(audit(here, {"--accept", "@masked", "b.cfg"}).status, 0);
}

// A baseline names nothing that goes on failing with it, but does not hide it either.
TEST(records, a_baseline_tells_apart_what_no_exception_helps) {
    const workspace_t here;
    std::string maps, policy = "policy-map p\n"; // with more classes than there are qos-groups
    for (const std::string name : {"1", "2", "3", "4", "5", "6"}) {
        maps += "class-map c" + name + "\n  match cos " + name + "\n";
        policy += "  class c" + name + "\n    bandwidth percent 10\n";
    }
    here.write("a.cfg", maps + policy + "system qos\n  service-policy p\n");
    here.write("b.cfg", "");
    here.write("c.cfg", lossy);
    const auto result = audit(here, {"--format", "accept", "a.cfg", "b.cfg", "c.cfg"});
    EXPECT_EQ(result.status, 1);
    size_t rows = 0, comments = 0;
    for (const std::string &line : lines_of(result.out)) {
        rows += line.starts_with("IC") && contains(line, " | c.cfg | ");
        EXPECT_FALSE(contains(line, " | a.cfg | ") || contains(line, " | b.cfg | ")) << line;
        comments += line.starts_with("# no exception helps: a.cfg: IC090 qos: ") ||
                    line == "# no exception helps: b.cfg: the configuration is empty";
    }
    EXPECT_GT(rows, 0u);
    EXPECT_EQ(comments, 2u) << result.out;
    here.write("agreed", result.out);
    EXPECT_EQ(audit(here, {"--accept", "@agreed", "c.cfg"}).status, 0);
}

TEST(records, fail_a_run_as_wished) {
    const workspace_t here;
    here.write("loss.cfg", lossy);
    here.write("warned.cfg", "version 4.0(1)\nfeature lldp\n");
    here.write("empty.cfg", "");
    const auto status = [&](const char *which, const char *file) {
        return audit(here, {"--fail-on", which, file}).status;
    };
    EXPECT_EQ(status("error", "loss.cfg"), 4);
    EXPECT_EQ(status("error", "warned.cfg"), 0);
    EXPECT_EQ(status("warning", "warned.cfg"), 4);
    EXPECT_EQ(status("never", "loss.cfg"), 0);
    EXPECT_EQ(status("never", "empty.cfg"), 5); // nothing was looked at
    EXPECT_EQ(status("always", "loss.cfg"), 2);
}

// Standard input can be read but once.
TEST(records, keep_fixes_of_standard_input) {
    workspace_t here;
    here.input = lossy;
    const auto result = audit(here, {"--fixes", "fixes", "-"});
    EXPECT_EQ(result.status, 4) << result.out;
    EXPECT_TRUE(contains(here.read("fixes/-/after.cfg"), "service-policy type qos input in"));
}

// Many: which need hands, and why; the same is told once.
TEST(first_screen, tells_which_need_hands) {
    const workspace_t here;
    for (int i = 0; i < 30; i++)
        here.write("fleet/fine" + std::to_string(i) + ".cfg", "feature lldp\n");
    for (int i = 0; i < 20; i++)
        here.write("fleet/loss" + std::to_string(i) + ".cfg", lossy);
    here.write("fleet/empty.cfg", "");
    const auto result = audit(here, {"fleet"});
    EXPECT_EQ(result.status, 5);
    EXPECT_LE(std::count(result.out.begin(), result.out.end(), '\n'), 24) << result.out;
    for (const char *told :
         {"51 configurations, 4.1(2) to 5.0(3): 21 need hands\n",
          "1 unusable, 20 would lose something; --mend mends 20 of them whole\n",
          "30  convert without loss, all alike\n",
          "IC041      20     20  A policy that only marks is not attached any more\n",
          "fleet/empty.cfg  unusable   the configuration is empty\n",
          "fleet/loss0.cfg  changed    2 errors   IC010 IC041  and 19 alike\n"})
        EXPECT_TRUE(contains(result.out, told)) << told << '\n' << result.out;
    EXPECT_LT(result.out.find("fleet/empty.cfg"), result.out.rfind("fleet/loss0.cfg"));
    EXPECT_TRUE(contains(audit(here, {"--details", "fleet"}).out, "fleet/loss7.cfg: changed, "));
}

} // namespace
