// Originals written otherwise: each way on a text that has everything that it is about, and what
// it must leave alone.

#include "mending/respell.h"

#include "meaning/compare.h"

#include <gtest/gtest.h>

namespace {

using namespace infraconvert;
using namespace infraconvert::mending;

void expect_the_same_meaning(const std::string &text, const std::string &edited) {
    const std::string_view same[] = {"4.1(2)", "4.1(2)"};
    EXPECT_FALSE(meaning::has_errors(meaning::original_t(text, same[0]).compare(edited, same)))
        << edited;
}

TEST(respell, writes_as_the_switch_does) {
    const std::string text = "policy-map  p\n description x\n\n class  a\n  priority\n! one\n"
                             " class b\n   set  cos 1\n"
                             "\n"
                             "class-map a\n    match  cos 5\n#two\n"
                             "system   qos\n\tservice-policy  p\n! three\n"
                             "interface  Ethernet1/1\n service-policy   input p\n"
                             "   speed  1000\r\n\n! four\n fex  associate 101\n"
                             "    switchport  mode fex-fabric\n"
                             "vlan  5\n name x\nvlan 5  6\n name  y\n"
                             "feature   lldp\nnpiv  enable\nport-security   enable\n"
                             "hostname   sw1";
    EXPECT_EQ(in_written_form(text, "4.1(2)").text,
              "!\npolicy-map p\n  description x\n  class a\n    priority\n  class b\n"
              "    set cos 1\n"
              "class-map a\n  match cos 5\n"
              "system qos\n  service-policy p\n! three\n"
              "interface Ethernet1/1\n  service-policy input p\n"
              "   speed  1000\n\n! four\n  fex associate 101\n"
              "  switchport mode fex-fabric\n"
              "vlan 5\n  name x\nvlan 5  6\n name  y\n"
              "feature lldp\nnpiv enable\nport-security enable\n"
              "hostname   sw1\n");
    expect_the_same_meaning(text, in_written_form(text, "4.1(2)").text);
    for (const std::string good : {"hostname sw1\nclass-map a\n  match cos 5\n",
                                   "! x\nnpiv enable\n", "  lost\nclass-map a\n", ""})
        EXPECT_EQ(in_written_form(good, "4.1(2)").text, good);
    for (const std::string first : {"class-map a\n", "npiv enable\n", "mac address-table x\n"})
        EXPECT_EQ(in_written_form(first, "4.1(2)").text, "!\n" + first);
}

TEST(respell, gives_names_without_keywords) {
    const std::string text = "hostname mtu\nclass-map mtu\n  match cos 5\nclass-map m_tu\n"
                             "  match cos 4\nclass-map class-fcoe\nclass-map good\n"
                             "policy-map police-map\n  class mtu\n    mtu 9000\n"
                             "  class class-fcoe\n    priority\n  class good\n"
                             "policy-map service-policy\n  class typetype\n"
                             "system qos\n  service-policy police-map\n"
                             "interface Ethernet1/1\n  service-policy output service-policy\n";
    const respelling_t plain = with_plain_names(text, "4.1(2)");
    EXPECT_EQ(plain.text, "hostname mtu\nclass-map m_tu_2\n  match cos 5\nclass-map m_tu\n"
                          "  match cos 4\nclass-map class-fcoe\nclass-map good\n"
                          "policy-map p_olice-map\n  class m_tu_2\n    mtu 9000\n"
                          "  class class-fcoe\n    priority\n  class good\n"
                          "policy-map service_policy\n  class typetype\n"
                          "system qos\n  service-policy p_olice-map\n"
                          "interface Ethernet1/1\n  service-policy output service_policy\n");
    EXPECT_EQ(plain.words, "maps whose names hold a keyword get another name: mtu is m_tu_2, "
                           "police-map is p_olice-map, service-policy is service_policy");
    const std::string good = "class-map good\npolicy-map fine";
    EXPECT_EQ(with_plain_names(good, "4.1(2)").text, good);
    EXPECT_EQ(with_plain_names(good, "4.1(2)").words, "");
}

TEST(respell, leaves_out_descriptions_of_maps) {
    EXPECT_EQ(without_descriptions("class-map a\n  description x\n  match cos 5\n"
                                   "policy-map p\n  description y\n  class a\n"
                                   "interface Ethernet1/1\n  description z\n",
                                   "4.1(2)")
                  .text,
              "class-map a\n  match cos 5\npolicy-map p\n  class a\n"
              "interface Ethernet1/1\n  description z\n");
}

TEST(respell, puts_the_mode_of_a_port_ahead_of_its_extender) {
    const std::string good = "interface Ethernet1/3\n  switchport mode fex-fabric\n"
                             "  fex associate 103\n"
                             "interface Ethernet1/4\n  fex associate 104\n";
    EXPECT_EQ(with_fabric_order("interface Ethernet1/1\n  fex associate 101\n  shutdown\n"
                                "  switchport mode fex-fabric\n  mtu 9000\n"
                                "interface Ethernet1/2\n  fex associate 102\n"
                                "  fex associate 202\n  switchport mode fex-fabric\n" +
                                    good,
                                "4.1(2)")
                  .text,
              "interface Ethernet1/1\n  switchport mode fex-fabric\n  fex associate 101\n"
              "  shutdown\n  mtu 9000\n"
              "interface Ethernet1/2\n  switchport mode fex-fabric\n  fex associate 102\n"
              "  fex associate 202\n" +
                  good);
}

TEST(respell, puts_maps_between_everything_else_and_the_interfaces) {
    const std::string text = "  lost\ninterface Ethernet1/1\n  service-policy input p\n"
                             "hostname sw1\ncontrol-plane\n  x\nsystem  qos\n  service-policy p\n"
                             "policy-map p\n  class a\n    priority\n"
                             "class-map b\n  match cos 4\n"
                             "policy-map  p\n  class b\n    pause\n"
                             "interface Ethernet1/1\n  shutdown\n"
                             "class-map a\n  match cos 5\nsystem qos\n  x";
    const std::string ordered = in_written_order(text).text;
    EXPECT_EQ(ordered, "  lost\nhostname sw1\ncontrol-plane\n  x\n"
                       "system  qos\n  service-policy p\nsystem qos\n  x\n"
                       "class-map b\n  match cos 4\nclass-map a\n  match cos 5\n"
                       "policy-map p\n  class a\n    priority\n  class b\n    pause\n"
                       "interface Ethernet1/1\n  service-policy input p\n"
                       "interface Ethernet1/1\n  shutdown\n");
    expect_the_same_meaning(text, ordered);
}

} // namespace
