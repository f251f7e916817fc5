// A change window in a folder of its own, with the real command.
#pragma once

#include "infraconvert/workspace.h"

#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

namespace support {

using arguments_t = std::vector<std::string>;

// On the way down the result is shorter, so that a file written in place can be torn.
inline const std::string original = "feature npiv\nvlan 1\n";
inline const std::string converted = "npiv enable\nvlan 1\n";
inline const std::string lossy = "interface Ethernet1/1\n  service-policy type qos input p\n"
                                 "policy-map type qos p\n  class c\n    set dscp 3\n"
                                 "class-map type qos match-all c\n  match cos 3\n";

// In memory, where syncing takes no time.
inline void go_to_memory() {
    if (std::filesystem::exists("/dev/shm"))
        setenv("TMPDIR", "/dev/shm", 1);
}

class change_window_t : public ::testing::Test {
  protected:
    change_window_t() { here = (go_to_memory(), std::make_unique<workspace_t>()); }

    result_t preview(const arguments_t &more) const {
        arguments_t arguments = {"preview", "--from", "4.1(3)K2(1)", "--to", "4.1(2)"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return here->run(arguments);
    }
    result_t save_plan() const { return preview({"--save-plan", "w.json", "site"}); }
    result_t with_plan(const char *verb, const arguments_t &more = {}) const {
        arguments_t arguments = {verb, "--plan", "w.json"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return here->run(arguments);
    }

    // "converted! stale", by the JSON of a command with "--json"; "!" for what was done now.
    static std::string states(const result_t &result) {
        std::string text;
        const auto document = nlohmann::json::parse(result.out);
        for (const auto &each : document["configurations"])
            text += (text.empty() ? "" : " ") + each["state"].get<std::string>() +
                    (each["done"] == true ? "!" : "");
        return text;
    }

    // How often the journal says so of each path.
    std::map<std::string, int> said(const std::string &what) const {
        std::map<std::string, int> count;
        std::istringstream journal(here->read("w.json.private/journal"));
        for (std::string line; std::getline(journal, line);) {
            const auto entry = nlohmann::json::parse(line);
            if (entry["what"] == what)
                count[entry["path"]]++;
        }
        return count;
    }

    // Names outside the private folder that a save has left behind.
    arguments_t left_behind() const {
        arguments_t names;
        for (const std::string &name : here->names()) {
            if (contains(name, ".infraconvert-") && !contains(name, ".private/"))
                names.push_back(name);
        }
        return names;
    }

    std::unique_ptr<workspace_t> here;
};

} // namespace support
