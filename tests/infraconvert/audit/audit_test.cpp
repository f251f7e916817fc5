// What the audit finds: each code on a small configuration, and not on its neighbour.

#include "infraconvert/workspace.h"
#include "support/converter_process.h"
#include "support/golden.h"

#include "audit/audit.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <set>

namespace {

namespace fs = std::filesystem;

using arguments_t = std::vector<std::string>;
using nlohmann::json;
using support::contains;
using support::workspace_t;

json audit(const workspace_t &here, const arguments_t &arguments) {
    arguments_t all = {"audit", "--json"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return json::parse(here.run(all).out);
}

std::set<std::string> codes_of(const json &configuration) {
    std::set<std::string> codes;
    for (const json &finding : configuration["findings"])
        codes.insert(finding["code"].get<std::string>());
    return codes;
}

std::string joined(const std::set<std::string> &codes) {
    std::string text;
    for (const std::string &code : codes)
        text += code + ' ';
    return text;
}

// ---- one code each

struct row_t {
    const char *code, *from, *to, *service;
    std::string raises, neighbour;
};

// Untyped maps with two classes, of which the policy under "system qos" has both.
const std::string two_classes = "class-map a\n  match cos 1\nclass-map b\n  match cos 2\n";
const std::string system_policy = "policy-map s\n  class a\n    priority\n  class b\n"
                                  "    bandwidth percent 10\n";
const std::string attached = "system qos\n  service-policy s\n";
const std::string port = "interface Ethernet1/1\n";

// A typed network-qos policy whose only class has this MTU.
std::string network_policy(const std::string &action) {
    return "class-map type network-qos a\n  match qos-group 2\npolicy-map type network-qos n\n"
           "  class type network-qos a\n    " +
           action + "\n" + port;
}

std::string typed_policy(const std::string &name, const std::string &type,
                         const std::string &body) {
    return "policy-map type " + type + ' ' + name + '\n' + body;
}

const std::string typed_class = "class-map type queuing a\n  match qos-group 2\n";
const std::string queuing_body = "  class type queuing a\n    priority\n";
const std::string marking_body = "  class a\n    set qos-group 2\n";
const std::string default_body = "  class type queuing class-default\n    bandwidth percent 50\n";

std::string attached_to(const std::string &policy) {
    return "system qos\n  service-policy " + policy + '\n';
}

// Two classes whose queues match these qos-groups, where they are in 2 and 3.
std::string crossed(const std::string &a, const std::string &b) {
    return "class-map type qos a\n  match cos 1\nclass-map type qos b\n  match cos 2\n"
           "class-map type queuing a\n  match qos-group " +
           a + "\nclass-map type queuing b\n  match qos-group " + b +
           "\npolicy-map type qos s\n  class a\n    set qos-group 2\n  class b\n    set qos-group "
           "3\n"
           "policy-map type queuing s\n  class type queuing a\n    priority\n"
           "  class type queuing b\n    bandwidth percent 10\n"
           "system qos\n  service-policy type qos input s\n  service-policy type queuing input s\n"
           "  service-policy type queuing output s\n";
}

const std::string control_class = "class-map type control-plane copp-a\n";

const std::vector<row_t> &rows() {
    static const std::vector<row_t> table = {
        {"IC001", "4.1(3)", "5.0(2)", "assoc",
         port + "  switchport trunk allowed vlan 10\n  fcoe\n",
         port + "  switchport trunk allowed vlan 10\n"},
        // A policy is attached to the system, an interface and the control plane only.
        {"IC001", "4.0(1)", "4.1(3)", "qos",
         two_classes + system_policy + attached + "no switchport\n  service-policy output s\n",
         two_classes + system_policy + attached + port + "  service-policy output s\n"},
        {"IC001", "4.2(1)", "4.1(2)", "qos",
         typed_class + typed_policy("q", "queuing", queuing_body) +
             attached_to("type queuing input q") +
             "vlan 5\n  service-policy type queuing input q\n",
         typed_class + typed_policy("q", "queuing", queuing_body) +
             attached_to("type queuing input q") + "vlan 5\n  name q\n"},
        {"IC004", "4.1(2)", "5.0(2)", "npiv", port + "  description npiv enable later\n",
         "npiv enable\n"},
        {"IC010", "4.0(1)", "4.1(3)", "qos",
         "class-map a\n  match cos 1\npolicy-map s\n  class a\n    priority\n" + attached,
         two_classes + system_policy + attached},
        {"IC011", "4.1(3)", "4.2(1)", "qos", typed_policy("q", "queuing", queuing_body),
         typed_class + typed_policy("q", "queuing", queuing_body)},
        {"IC013", "4.1(3)", "4.2(1)", "qos",
         typed_class + typed_policy("q", "queuing", queuing_body) + port +
             "  service-policy type queuing output other\n",
         typed_class + typed_policy("q", "queuing", queuing_body) + port +
             "  service-policy type queuing output q\n"},
        {"IC020", "5.0(2)", "4.0(1)", "qos",
         typed_class + typed_policy("q", "queuing", queuing_body) +
             "class-map type qos b\n  match cos 2\n" + typed_policy("m", "qos", marking_body) +
             "class-map type qos c\n  match cos 3\nsystem qos\n",
         typed_class + typed_policy("q", "queuing", queuing_body) +
             "class-map type qos b\n  match cos 2\nclass-map type qos c\n  match cos 3\n" +
             typed_policy("m", "qos", marking_body) + "system qos\n"},
        {"IC021", "5.0(2)", "4.0(1)", "qos",
         typed_class + typed_policy("p", "queuing", "") + typed_policy("q", "queuing", "") +
             "system qos\n",
         typed_class + typed_policy("p", "queuing", "") + "system qos\n"},
        {"IC024", "4.1(3)", "5.0(2)", "qos",
         "class-map type qos match-all a\n  match cos 1\n" + port,
         "class-map type qos a\n  match cos 1\n" + port},
        {"IC025", "4.2(1)", "4.1(3)", "qos",
         "class-map type qos a\n  description old\n  match cos 1\n" + port,
         "class-map type qos a\n  match cos 1\n" + port + "  description old\n"},
        {"IC026", "5.0(2)", "4.0(1)", "qos",
         typed_class + "class-map type queuing b\n  match qos-group 3\n" +
             typed_policy("q", "queuing", queuing_body) + "system qos\n",
         typed_class + typed_policy("q", "queuing", queuing_body) + "system qos\n"},
        {"IC018", "5.0(3)U2(1)", "5.0(3)U1(1)", "qos",
         typed_class +
             "policy-map type control-plane p\n  class class-default\n    police cir 64\n",
         typed_class + "policy-map type control-plane p\n  class copp-a\n    police pps 64\n"},
        {"IC027", "5.0(3)U2(1)", "5.0(3)U1(1)", "qos", typed_class + control_class, typed_class},
        {"IC040", "5.0(2)", "4.0(1)", "qos",
         typed_class + typed_policy("q", "queuing", queuing_body) +
             typed_policy("r", "queuing", queuing_body) +
             "system qos\n  service-policy type queuing output q\n"
             "  service-policy type queuing input r\n",
         typed_class + typed_policy("q", "queuing", queuing_body) +
             "system qos\n  service-policy type queuing output q\n"
             "  service-policy type queuing input q\n"},
        {"IC041", "4.0(1)", "4.1(3)", "qos",
         two_classes + "policy-map m\n  class a\n    set qos-group 2\n" + port +
             "  service-policy input m\n",
         two_classes +
             "policy-map m\n  class a\n    set qos-group 2\nsystem qos\n"
             "  service-policy m\n" +
             port + "  service-policy input m\n"},
        {"IC043", "4.0(1)", "4.1(3)", "qos",
         port + "  service-policy output s\n" + two_classes + system_policy + attached,
         two_classes + system_policy + attached + port + "  service-policy output s\n"},
        {"IC044", "4.2(1)", "4.1(2)", "fwm", port + "mac address-table aging-time 9\n",
         port + "mac-address-table aging-time 9\n"},
        {"IC046", "5.0(2)", "4.0(1)", "qos",
         "class-map type qos match-any a\n  match cos 1\n" + port,
         "class-map type qos a\n  match cos 1\n" + port},
        {"IC051", "5.0(2)", "4.0(1)", "qos", network_policy("mtu 2158"),
         network_policy("mtu 9216")},
        {"IC052", "4.1(3)", "4.2(1)", "qos", network_policy("mtu 1537"),
         network_policy("mtu 1538")},
        {"IC060", "4.0(1)", "4.1(3)", "qos", typed_class, two_classes},
        {"IC061", "4.1(3)", "4.2(1)", "qos", two_classes, typed_class},
        {"IC064", "4.1(2)", "5.0(2)", "npiv", "version 4.0(1)\n", "version 4.1(2)\n"},
        {"IC065", "4.1(2)", "5.0(2)", "npiv", "npiv enable", "npiv enable\n"},
        {"IC066", "4.1(3)", "5.0(2)", "assoc", "vlan 5,,7\n  fcoe\n", "vlan 5,7\n  fcoe\n"},
        {"IC067", "4.1(3)", "5.0(2)", "assoc", "vlan 5 7\n  fcoe\n", "vlan 5-7\n  fcoe\n"},
        {"IC068", "5.0(2)", "5.0(3)", "npiv",
         port + "  fex associate 101\n  switchport mode fex-fabric\n",
         port + "  switchport mode fex-fabric\n  fex associate 101\n"},
        {"IC090", "4.0(1)", "4.1(3)", "qos", attached + two_classes, two_classes},
        {"IC003", "5.0(3)U2(1)", "5.0(3)U1(1)", "qos", port + control_class + "  match exception\n",
         port + control_class},
        {"IC014", "4.0(1)", "4.1(3)", "qos",
         two_classes + system_policy + port + "  service-policy output s\n",
         two_classes + system_policy + attached + port + "  service-policy output s\n"},
        {"IC030", "4.0(1)", "4.1(3)", "qos",
         two_classes + "policy-map s\n  class a\n    priority\n    shape 10\n" + attached,
         two_classes + "policy-map s\n  class a\n    priority\n" + attached},
        {"IC032", "4.0(1)", "4.1(3)", "qos",
         two_classes + system_policy +
             "policy-map t\n  class a\n    set qos-group 3\n    priority\n" + attached + port +
             "  service-policy input t\n",
         two_classes + system_policy + "policy-map t\n  class a\n    priority\n" + attached + port +
             "  service-policy input t\n"},
        {"IC034", "5.0(3)U2(1)", "5.0(3)U1(1)", "qos",
         typed_policy("m", "qos", marking_body) +
             "policy-map type control-plane p\n  class class-default\n    police cir 64\n",
         typed_policy("m", "qos", marking_body) +
             "policy-map type control-plane p\n  class copp-a\n    police pps 64\n"},
        {"IC035", "4.0(1)", "4.1(3)", "qos",
         two_classes + system_policy +
             "policy-map t\n  class a\n    priority\n    set qos-group 4\n" + attached,
         two_classes + system_policy + "policy-map t\n  class a\n    priority\n" + attached},
        {"IC036", "5.0(2)", "4.0(1)", "qos",
         typed_class + typed_policy("q", "queuing", default_body) +
             "system qos\n  service-policy type queuing output q\n",
         typed_class + typed_policy("q", "queuing", default_body) +
             "system qos\n  service-policy type queuing output q\n"
             "  service-policy type queuing input q\n"},
        {"IC038", "5.0(2)", "4.0(1)", "qos", crossed("3", "2"), crossed("2", "3")},
        {"IC043", "4.1(3)", "4.1(2)", "qos", typed_class, ""},
        {"IC044", "4.1(2)", "5.0(2)", "fwm", "npiv enable\n", "feature lldp\n"},
        {"IC047", "5.0(3)U2(1)", "5.0(2)", "qos", control_class, typed_class},
        {"IC049", "4.0(1)", "4.1(3)", "qos", two_classes + system_policy + port,
         two_classes + system_policy + attached},
        {"IC058", "4.1(2)", "5.0(2)", "npiv", "vlan 5 6\n", "vlan 5\n"},
        {"IC069", "4.1(3)", "5.0(2)", "npiv", "vlan 10-12\n  fcoe\n", "vlan 10\n  fcoe\n"},
        {"IC091", "4.0(1)", "4.1(3)", "qos",
         two_classes + "policy-map p\n  class a\n    pause\n" + port + "  service-policy input p\n",
         two_classes + "policy-map p\n  class a\n    pause\n" + attached_to("p")},
    };
    return table;
}

TEST(audit, finds_each_code_and_spares_the_neighbour) {
    for (const row_t &row : rows()) {
        workspace_t here;
        // The maps of a configuration that a switch saved never stand at its very start.
        const std::string start = row.service == std::string("qos") ? "feature lldp\n" : "";
        here.write("raises.cfg", start + row.raises);
        here.write("neighbour.cfg", start + row.neighbour);
        const json found = audit(here, {"--from", row.from, "--to", row.to, "--service",
                                        row.service, "raises.cfg", "neighbour.cfg"});
        const auto raised = codes_of(found["configurations"][0]);
        const auto spared = codes_of(found["configurations"][1]);
        EXPECT_TRUE(raised.contains(row.code)) << row.code << " not in " << joined(raised) << '\n'
                                               << row.raises;
        EXPECT_FALSE(spared.contains(row.code)) << row.code << " for\n" << row.neighbour;
    }
}

// ---- results that no conversion gives

struct judged_t {
    const char *code, *from, *to;
    std::string original, raises, neighbour;
};

const std::string queue = "class-map type qos a\n  match cos 1\nclass-map type queuing a\n"
                          "  match qos-group 2\npolicy-map type qos s\n  class a\n"
                          "    set qos-group 2\npolicy-map type queuing s\n  class type queuing a\n"
                          "    bandwidth percent 10\nsystem qos\n"
                          "  service-policy type qos input s\n"
                          "  service-policy type queuing input s\n";

std::string with(std::string text, const std::string &what, const std::string &instead) {
    const size_t at = text.find(what);
    EXPECT_NE(at, text.npos) << what;
    return text.replace(at, what.size(), instead);
}

const std::vector<judged_t> &judged() {
    static const std::string two = "class-map type qos a\n  match cos 1\nclass-map type qos b\n"
                                   "  match cos 1\npolicy-map type qos s\n  class a\n"
                                   "    set qos-group 2\n  class b\n    set qos-group 3\n"
                                   "system qos\n  service-policy type qos input s\n";
    static const std::string network = "class-map type network-qos a\n  match qos-group 2\n"
                                       "policy-map type network-qos n\n  class type network-qos a\n"
                                       "    mtu 9000\n";
    // Class a of type qos is not the one whose traffic the queue a gets.
    static const std::string hidden = with(
        with(queue, "  match cos 1\n", "  match dscp 46\nclass-map type qos b\n  match cos 1\n"),
        "  class a\n", "  class b\n");
    static const std::string shadowed = with(two, "    set qos-group 2\n", "");
    static const std::string member = "  fex associate 101\n",
                             fabric = "  switchport mode fex-fabric\n";
    static const std::string apart = with(two, "b\n  match cos 1", "b\n  match cos 2");
    static const std::vector<judged_t> table = {
        {"IC002", "5.0(2)", "5.0(3)", port, port + "  shutdown\n", port + port},
        {"IC006", "5.0(2)", "5.0(3)", port, port + "\r\n", port + "\n"},
        {"IC005", "5.0(2)", "5.0(3)", port + "  shutdown\n", port + "    shutdown\n",
         port + "  shutdown\n! remark\n"},
        {"IC012", "5.0(2)", "5.0(3)", queue,
         with(queue, "type queuing input s", "type queuing input t"), queue},
        {"IC015", "5.0(2)", "5.0(3)", queue, with(queue, "bandwidth percent 10", "pause"), queue},
        {"IC016", "5.0(2)", "5.0(3)", queue, with(queue, "queuing input s", "queuing s"), queue},
        {"IC017", "5.0(2)", "5.0(3)", queue, queue + "  service-policy type queuing input s\n",
         queue},
        {"IC019", "5.0(2)", "5.0(3)", "vlan 5\n", "vlan 5 6\n", "vlan  5\n"},
        {"IC023", "5.0(2)", "5.0(3)", "class-map type qos a\n  match cos 1\n",
         "class-map type qos a\n  match cos 2\n", "class-map type qos a\n  match  cos 1\n"},
        {"IC030", "5.0(2)", "5.0(3)", network, with(network, "    mtu 9000\n", ""), network},
        // Of an action that nobody knows, several may stand side by side.
        {"IC030", "5.0(2)", "5.0(3)", network + "    shape 1\n    shape 2\n",
         network + "    shape 2\n", network + "    shape 1\n    shape 2\n"},
        // Attached nowhere, under the name of what is attached, with a class that others have too.
        {"IC030", "4.2(1)", "4.2(1)", queue + with(network, " n\n", " s\n"),
         with(queue, "queuing s\n  class", "queuing t\n  class") + network,
         queue + with(network, " n\n", " s\n")},
        {"IC037", "5.0(2)", "5.0(3)", queue, with(queue, "match qos-group 2", "match qos-group 3"),
         with(with(queue, "match qos-group 2", "match qos-group 4"), "set qos-group 2",
              "set qos-group 4")},
        // A class-map of one type is not said by the row of its namesake of another type.
        {"IC023", "5.0(2)", "5.0(3)", hidden, with(hidden, "match dscp 46", "match dscp 8"),
         hidden},
        {"IC020", "4.2(1)", "4.1(2)", "class-map type qos a\n", "", "class-map a\n"},
        {"IC020", "4.2(1)", "4.1(2)", typed_class + "class-map type qos a\n", "", "class-map a\n"},
        {"IC059", "5.0(2)", "5.0(3)", apart, with(apart, "qos-group 3", "qos-group 2"),
         with(apart, "qos-group 3", "qos-group 4")},
        {"IC059", "5.0(2)", "5.0(3)", apart, with(apart, "    set qos-group 3\n", ""), apart},
        // "no fcoe" takes back what stands in front of it.
        {"IC067", "4.1(2)", "5.0(2)", "vlan 5\n  no fcoe\n  fcoe\n", "vlan 5\n  fcoe\n  no fcoe\n",
         "vlan 5\n  no fcoe\n  fcoe\n"},
        {"IC040", "5.0(2)", "5.0(3)", "system qos\n  service-policy type queuing input built-in\n",
         "system qos\n", "system qos\n  service-policy type queuing input built-in\n"},
        {"IC039", "5.0(2)", "5.0(3)", queue, with(queue, "percent 10", "percent 20"), queue},
        {"IC048", "5.0(2)", "4.1(2)", "feature npiv\n", "no npiv enable\n", "npiv enable\n"},
        {"IC053", "4.1(3)", "4.2(1)", network, with(network, "9000", "8900"),
         with(network, "9000", "8962")},
        {"IC055", "5.0(2)", "5.0(3)", two,
         with(two, "  class a\n    set qos-group 2\n  class b\n    set qos-group 3\n",
              "  class b\n    set qos-group 3\n  class a\n    set qos-group 2\n"),
         two},
        {"IC055", "5.0(2)", "5.0(3)", two,
         with(two, "  class b\n    set qos-group 3\n", "    set qos-group 3\n"), two},
        // A class that does nothing keeps its packets from those behind it.
        {"IC055", "5.0(2)", "5.0(3)", shadowed, with(shadowed, "  class a\n", ""),
         with(shadowed, "  class b\n", "  class b\n    set qos-group 3\n")},
        {"IC055", "5.0(2)", "5.0(3)", with(shadowed, "  class a\n", ""), shadowed,
         with(shadowed, "  class a\n", "")},
        // A word was rewritten in a banner; its lines are still its own.
        {"IC003", "4.2(1)", "4.1(2)", "banner motd #feature npiv\n  hello\n",
         "vrf context x\n  hello\nbanner motd #npiv enable\n",
         "banner motd #npiv enable\n  hello\n"},
        {"IC001", "5.0(2)", "5.0(2)", "vrf context x\n" + member + fabric,
         "vrf context x\n" + fabric + member, "vrf  context x\n" + member + fabric},
        {"IC056", "5.0(2)", "5.0(3)", "vlan 5-7\n", "vlan 5-8\n", "vlan 5\nvlan 6-7\n"},
    };
    return table;
}

std::string codes_in(const std::vector<infraconvert::finding_t> &findings) {
    std::string codes;
    for (const auto &finding : findings)
        codes += finding.kind->code + std::string(" ");
    return codes;
}

TEST(audit, judges_any_result) {
    for (const judged_t &row : judged()) {
        const infraconvert::release_pair_t pair = {row.from, row.to};
        const std::string raised =
            codes_in(infraconvert::judge(row.original, row.raises, {pair.from, pair.to}));
        const std::string spared =
            codes_in(infraconvert::judge(row.original, row.neighbour, {pair.from, pair.to}));
        EXPECT_TRUE(contains(raised, row.code)) << row.code << " not in " << raised << row.raises;
        EXPECT_FALSE(contains(spared, row.code)) << row.code << " for\n" << row.neighbour;
    }
}

// What no converter knows, and a switch takes all the same, must not pass unread.
TEST(audit, reads_words_that_were_cut_short) {
    const struct {
        const char *code, *from, *to;
        std::string text;
    } rows[] = {
        {"IC043", "4.1(2)", "4.1(3)", "policy-m p\n  class class-default\n    priority\n"},
        {"IC043", "4.1(2)", "4.1(3)", "sys qos\n  service-pol p\n"},
        {"IC044", "4.1(2)", "4.2(1)", "npiv en\n"},
        {"IC044", "4.2(1)", "4.1(3)", "mac addr aging-time 600\n"},
        {"IC044", "4.1(2)", "4.2(1)", "port-sec database vsan 2\n"},
        {"IC043", "4.1(2)", "4.1(3)", "policy-map p\nint Ethernet1/1\n  service-policy output p\n"},
        {"IC068", "5.0(2)", "5.0(3)", "int Ethernet1/1\n  fex assoc 101\n  switchp mode fex\n"},
        {"IC069", "4.1(2)", "5.0(2)", "vl 10-11\n  fcoe\n"},
    };
    for (const auto &row : rows) {
        const std::string found =
            codes_in(infraconvert::judge(row.text, row.text, {row.from, row.to}));
        EXPECT_TRUE(contains(found, row.code)) << row.code << " not in " << found << row.text;
        EXPECT_FALSE(contains(
            codes_in(infraconvert::judge(row.text, row.text, {row.from, row.from})), row.code))
            << row.text;
    }
}

// What the original has wrong already is one warning, however the conversion writes it.
TEST(audit, tells_no_error_of_what_was_wrong_before) {
    const struct {
        const char *codes, *from, *to;
        std::string original, result;
    } rows[] = {
        // The MTU pass writes the policy-map a second time.
        {"IC011 ", "4.1(3)", "4.2(1)",
         "policy-map type network-qos p\n  class type network-qos b\n    mtu 9000\n",
         "policy-map type network-qos p\n  class type network-qos b\n    mtu 9000\n"
         "policy-map type network-qos p\n  class type network-qos b\n    mtu 8962\n"},
        // An attachment alone does not make the text one of the other model.
        {"IC058 ", "4.2(1)", "5.0(2)", port + "  service-policy input nowhere\n",
         port + "  service-policy input nowhere\n"},
        {"IC058 ", "5.0(2)", "5.1(1)", "control-plane\n  service-policy input p\n",
         "control-plane\n  service-policy input p\n"},
        {"IC058 ", "4.1(2)", "4.1(3)", "class-map v\n  match cos 5\n  match qos-group 3\n",
         "class-map type qos v\n  match cos 5\n  match qos-group 3\n"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(codes_in(infraconvert::judge(row.original, row.result, {row.from, row.to})),
                  row.codes)
            << row.original;
}

TEST(audit, tells_of_every_code_and_tests_it) {
    const workspace_t here;
    // Those of other commands: a route, and a configuration as it is.
    std::set<std::string> tested = {"IC054", "IC057"};
    for (const row_t &row : rows())
        tested.insert(row.code);
    for (const judged_t &row : judged())
        tested.insert(row.code);
    for (const auto &kind : infraconvert::finding_kinds()) {
        EXPECT_TRUE(tested.contains(kind.code)) << kind.code;
        EXPECT_TRUE(contains(here.run({"explain", kind.code}).out, kind.title)) << kind.code;
    }
    EXPECT_TRUE(contains(here.run({"explain", "ic080"}).out, "not found any more"));
    EXPECT_EQ(here.run({"explain", "IC099"}).status, 2);
}

// ---- golden conversions

// The findings of a configuration, one "CODE LINE" a line; the line is that of the original where
// it has one, else "+" and that of the result.
std::string listed(const json &configuration) {
    std::string text;
    for (const json &finding : configuration["findings"]) {
        const std::string code = finding["code"];
        std::string line;
        if (!finding["before"].empty())
            line = ' ' + finding["before"][0]["number"].dump();
        else if (!finding["after"].empty())
            line = " +" + finding["after"][0]["number"].dump();
        text += code + line + '\n';
    }
    return text;
}

bool has_error(const json &configuration) {
    const json &findings = configuration["findings"];
    return std::any_of(findings.begin(), findings.end(),
                       [](const json &finding) { return finding["severity"] == "error"; });
}

// Errors are found in the cases that are called traps, and in no others. GOLDEN_ACCEPT in the
// environment makes the findings the expectation.
TEST(golden_findings, are_as_expected) {
    const workspace_t here;
    for (const support::golden_t &golden : support::golden_cases()) {
        const json found = audit(here, {"--from", golden.from, "--to", golden.to, "--service",
                                        golden.service, golden.folder / "in.cfg"});
        const std::string findings = listed(found["configurations"][0]);
        const fs::path expected = golden.folder / "findings";
        if (getenv("GOLDEN_ACCEPT")) {
            std::ofstream(expected) << findings;
            continue;
        }
        EXPECT_TRUE(fs::exists(expected)) << golden.folder;
        EXPECT_EQ(findings, support::read_file(expected)) << golden.folder;
        EXPECT_EQ(has_error(found["configurations"][0]), golden.is_trap()) << golden.folder;
    }
}

} // namespace
