// What must hold for every upgrade of an untyped QoS configuration: a failure leaves the file, and
// a success gives typed text whose names all lead somewhere.

#include "support/processor_time.h"
#include "support/services.h"

#include <gtest/gtest.h>
#include <random>
#include <set>
#include <sstream>

namespace {

class generator_t {
  public:
    // An `odd` configuration has policy-maps without a body, and names that come again.
    explicit generator_t(unsigned seed, bool odd = false) : random(seed), is_odd(odd) {}

    std::string configuration() {
        std::string text = "hostname switch\nvlan 1\n";
        // With a single class-map there is nothing for the typed ones to go behind: none is
        // written.
        const int maps = 2 + below(4);
        for (int i = 0; i < maps; i++)
            text += "class-map c" + std::to_string(i) + "\n  match cos " + std::to_string(i) + "\n";
        if (below(2))
            text += "class-map class-fcoe\n  match cos 3\n";
        const int policies = 1 + below(3);
        for (int i = 0; i < policies; i++)
            text += policy(is_odd ? below(policies) : i, maps);
        if (below(5))
            text += "system qos\n  service-policy p" + std::to_string(below(policies)) + "\n";
        for (int i = 1; i <= below(4); i++)
            text += "interface Ethernet1/" + std::to_string(i) + "\n  service-policy " +
                    (below(2) ? "input" : "output") + " p" + std::to_string(below(policies)) + "\n";
        return text + "line vty\n";
    }

  private:
    int below(int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); }

    std::string policy(int number, int maps) {
        static const char *const actions[] = {
            "bandwidth percent 10", "priority",        "mtu 9000",
            "pause no-drop",        "set qos-group 2", "queue-limit 9"};
        static const char *const predefined[] = {"class-default", "class-fcoe",
                                                 "class-ip-multicast", "class-all-flood"};
        std::string text = "policy-map p" + std::to_string(number) + "\n";
        for (int i = 0; i < (is_odd ? 0 : 1) + below(5); i++) {
            text += "  class ";
            text += below(3) ? 'c' + std::to_string(below(maps)) : predefined[below(4)];
            text += '\n';
            for (int action = 0; action < below(4); action++)
                text += std::string("    ") + actions[below(std::size(actions))] + "\n";
        }
        return text;
    }

    std::mt19937 random;
    const bool is_odd;
};

const std::set<std::string> types = {"qos", "queuing", "network-qos"};

// Reads a typed text line by line, and collects what does not hold.
struct typed_text_t {
    std::set<std::string> class_maps, policy_maps; // "TYPE NAME"
    std::vector<std::string> used_classes, used_policies;
    std::vector<std::string> untyped;

    explicit typed_text_t(const std::string &text) {
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            std::istringstream words(line);
            std::string keyword, type_word, type, name;
            words >> keyword >> type_word >> type;
            if (keyword != "class-map" && keyword != "policy-map" && keyword != "class" &&
                keyword != "service-policy")
                continue;
            while (words >> name) {
            } // the last word
            if (type_word != "type" || !types.contains(type) || name.empty())
                untyped.push_back(line);
            note(keyword, type + ' ' + name);
        }
    }

  private:
    void note(const std::string &keyword, const std::string &what) {
        if (keyword == "class-map")
            class_maps.insert(what);
        else if (keyword == "policy-map")
            policy_maps.insert(what);
        else if (keyword == "class")
            used_classes.push_back(what);
        else
            used_policies.push_back(what);
    }
};

bool is_predefined(const std::string &class_of_type) {
    return class_of_type.ends_with(" class-default") || class_of_type.ends_with(" class-fcoe");
}

} // namespace

TEST(qos_upgrade, result_is_typed_and_its_names_exist) {
    const auto &qos = support::service_named("qos");
    int converted = 0, failed = 0;
    for (unsigned seed = 0; seed < 400; seed++) {
        const std::string before = generator_t(seed).configuration();
        const auto result = support::convert(qos, before, "4.0(1)", "4.1(3)", 0);
        if (result.status != 0) {
            EXPECT_EQ(result.file, before) << "seed " << seed;
            failed++;
            continue;
        }
        converted++;
        const typed_text_t after(result.file);
        EXPECT_EQ(after.untyped, std::vector<std::string>()) << "seed " << seed;
        for (const std::string &used : after.used_classes)
            EXPECT_TRUE(is_predefined(used) || after.class_maps.contains(used))
                << "seed " << seed << ": class " << used << "\n"
                << result.file;
        for (const std::string &used : after.used_policies)
            EXPECT_TRUE(after.policy_maps.contains(used))
                << "seed " << seed << ": policy " << used << "\n"
                << result.file;
    }
    EXPECT_GT(converted, 100);
    EXPECT_GT(failed, 20);
}

// Without a log the passes go on from what they found last, instead of looking from the start.
TEST(qos_upgrade, is_the_same_with_a_log_and_without) {
    const auto &qos = support::service_named("qos");
    int converted = 0;
    for (unsigned seed = 0; seed < 150; seed++) {
        const std::string before = generator_t(seed, true).configuration();
        const auto one = support::convert(qos, before, "4.0(1)", "4.1(3)", 0);
        const auto other = support::convert(qos, before, "4.0(1)", "4.1(3)", 1);
        ASSERT_EQ(one.status, other.status) << before;
        ASSERT_EQ(one.file, other.file) << before;
        converted += one.status == 0;
    }
    EXPECT_GT(converted, 30);
}

namespace {

// The first of the policy-maps with a body is the last header without one.
std::string many_maps(int count) {
    std::string class_maps, headers, bodies, attachments;
    for (int i = 0; i < count; i++) {
        const std::string number = std::to_string(i);
        const std::string policy = std::to_string((i + count - 1) % count);
        class_maps += "class-map c" + number + "\n  match cos 1\n";
        headers += "policy-map p" + number + "\n";
        bodies += "policy-map p" + policy + "\n  class c" + policy + "\n    priority\n";
        attachments += "interface 1/" + number + "\n  service-policy input p" + number + "\n";
    }
    return "hostname a\n" + class_maps + headers + bodies + "system qos\n  service-policy p0\n" +
           attachments + "line vty\n";
}

// Of all the maps only the last one gets a description.
double seconds_up_and_down(int maps) {
    const auto &qos = support::service_named("qos");
    std::string text = many_maps(maps);
    const double start = support::processor_seconds();
    for (const auto &[from, to] : {std::pair("4.0(1)", "4.1(3)"), std::pair("4.1(3)", "5.0(2)"),
                                   std::pair("5.0(2)", "4.1(3)"), std::pair("5.0(2)", "4.0(1)")}) {
        const auto result = support::convert(qos, text, from, to, 0);
        EXPECT_EQ(result.status, 0) << from;
        EXPECT_NE(result.file, text) << from;
        text = result.file;
        const size_t last = text.find(" c" + std::to_string(maps - 1) + '\n');
        text.insert(text.find('\n', last) + 1, "  description x\n");
    }
    return support::processor_seconds() - start;
}

} // namespace

// Looking at all maps for each of them would take sixty times as long.
TEST(qos_size, eight_times_the_maps_take_about_eight_times_as_long) {
    const double few = seconds_up_and_down(1000), many = seconds_up_and_down(8000);
    EXPECT_LT(many, 20 * few) << few;
}
