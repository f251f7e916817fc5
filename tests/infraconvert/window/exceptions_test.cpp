// What was agreed on.

#include "window/exceptions.h"

#include "base/errors.h"
#include "infraconvert/workspace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using namespace infraconvert;
using nlohmann::json;
using support::contains;
using support::workspace_t;

finding_t finding(const char *code, const char *place) {
    finding_t found = {finding_kind_named(code), "", {}, {}};
    found.place = place;
    return found;
}

TEST(exceptions, meet_findings_by_code_configuration_and_stanza) {
    struct row_t {
        const char *line, *configuration, *stanza;
        bool accepted;
    };
    const char *port = "interface Ethernet1/1";
    const row_t rows[] = {
        {"IC041", "a.cfg", port, true},
        {"ic041 | | ", "a.cfg", "", true},
        {"IC043", "a.cfg", port, false},
        {"IC041 | a.cfg", "site/a.cfg", port, true},
        {"IC041 | site/a.cfg", "/all/site/a.cfg", port, true},
        {"IC041 | ite/a.cfg", "site/a.cfg", port, false},
        {"IC041 | access-*", "site/access-1.cfg", port, true},
        {"IC041 | access-*", "access-1/core.cfg", port, false}, // another switch below a folder
        {"IC041 | */core.cfg", "access-1/core.cfg", port, true},
        {"IC041 | a.cfg | interface Ethernet1/* | moved | 2026-06-30", "a.cfg", port, true},
        {"IC041 | a.cfg | interface Ethernet1/* | moved | 2026-06-29", "a.cfg", port, false},
        {"IC041 | a.cfg | interface Ethernet2/*", "a.cfg", port, false},
        {"IC041 | * | system qos", "a.cfg", "", false},
    };
    const workspace_t here;
    for (const row_t &row : rows) {
        here.write("agreed", "# of the window\n\n" + std::string(row.line) + '\n');
        exceptions_t agreed({"@" + here.path("agreed").string()}, "2026-06-30");
        std::vector<finding_t> findings = {finding("IC041", row.stanza)};
        agreed.mark(row.configuration, findings);
        EXPECT_EQ(findings[0].accepted.has_value(), row.accepted) << row.line;
        EXPECT_EQ(agreed.idle().empty(), row.accepted) << row.line;
    }
}

TEST(exceptions, that_cannot_be_read_name_their_line) {
    const workspace_t here;
    const std::string file = here.path("agreed");
    for (const char *line :
         {"IC999", "marking moves", "IC041 | | | | tomorrow", "IC041 | | | | 2026-1-1"}) {
        here.write("agreed", std::string("\n") + line);
        try {
            exceptions_t({"@" + file}, "2026-06-30");
            ADD_FAILURE() << line;
        } catch (const input_error_t &e) {
            EXPECT_TRUE(contains(e.what(), "agreed, line 2: ")) << e.what();
        }
    }
    EXPECT_THROW(exceptions_t({"IC999"}, ""), usage_error_t);
    EXPECT_THROW(exceptions_t({"@none"}, ""), input_error_t);
}

constexpr const char *marks = "feature lldp\n"
                              "class-map voice\n  match cos 5\n"
                              "policy-map in\n  class voice\n    set qos-group 2\n"
                              "policy-map dc\n  class voice\n    priority\n"
                              "system qos\n  service-policy dc\n"
                              "interface Ethernet1/1\n  service-policy input in\n";

// One mechanism for every verb: what is agreed on is told and stops nothing.
TEST(exceptions, count_for_audit_preview_and_convert) {
    const workspace_t here;
    here.write("switch.cfg", marks);
    here.write("agreed", "IC041 | switch.cfg | interface * | marked elsewhere | 2099-12-31\n"
                         "IC041 | other.cfg\nIC010\n");
    const auto run = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--from", "4.1(2)", "--to", "5.0(3)", "switch.cfg"});
        return here.run(arguments);
    };
    EXPECT_EQ(run({"audit"}).status, 4);
    const auto audit = run({"audit", "--json", "--accept", "@agreed"});
    EXPECT_EQ(audit.status, 0) << audit.err;
    EXPECT_TRUE(contains(audit.err, "agreed, line 2: the exception IC041 for other.cfg meets "
                                    "nothing"));
    const json found = json::parse(audit.out)["configurations"][0]["findings"][1];
    EXPECT_EQ(found["place"], "interface Ethernet1/1");
    EXPECT_EQ(found["accepted"], json({{"reason", "marked elsewhere"}, {"until", "2099-12-31"}}));

    const auto preview = run({"preview", "--accept", "@agreed"});
    EXPECT_TRUE(contains(preview.err, "Agreed: marked elsewhere (until 2099-12-31)."))
        << preview.err;
    EXPECT_EQ(run({"convert"}).status, 4);
    EXPECT_EQ(here.read("switch.cfg"), marks);
    EXPECT_EQ(run({"convert", "--accept", "@agreed"}).status, 0);
    EXPECT_NE(here.read("switch.cfg"), marks);
}

// The stanza of a finding shows no more than its lines do.
TEST(exceptions, show_no_secret_with_mask) {
    const workspace_t here;
    here.write("switch.cfg",
               "snmp-server community s3cret group network-admin\nnpiv enable s3cret\n");
    const auto result = here.run(
        {"audit", "--mask", "--json", "--from", "4.1(2)", "--to", "4.1(3)K2(1)", "switch.cfg"});
    EXPECT_FALSE(json::parse(result.out)["configurations"][0]["findings"].empty()) << result.out;
    EXPECT_FALSE(contains(result.out, "s3cret")) << result.out;
}

} // namespace
