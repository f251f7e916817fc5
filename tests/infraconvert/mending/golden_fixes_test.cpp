// The golden conversions that lose something, mended: mended.cfg beside their out.cfg where there
// are fixes, and by-hand with the reasons of what has none. GOLDEN_ACCEPT in the environment makes
// the results the expectation.

#include "infraconvert/workspace.h"
#include "support/converter_process.h"
#include "support/golden.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <set>

namespace {

namespace fs = std::filesystem;
using arguments_t = std::vector<std::string>;
using nlohmann::json;
using support::golden_t;
using support::read_file;
using support::workspace_t;

arguments_t with(const golden_t &trap, const arguments_t &words) {
    arguments_t all = words;
    all.insert(all.end(), {"--from", trap.from, "--to", trap.to, trap.folder / "in.cfg"});
    return all;
}

struct mended_trap_t {
    std::string text, by_hand; // empty: nothing is mended; nothing is left
};

mended_trap_t mended(const workspace_t &here, const golden_t &trap) {
    const json audit = json::parse(here.run(with(trap, {"audit", "--json"})).out);
    mended_trap_t result;
    std::string left;
    std::set<std::string> reasons;
    bool fixes = false;
    for (const json &finding : audit["configurations"][0]["findings"]) {
        fixes |= !finding["fixes"].empty();
        if (!finding["by_hand"].is_string())
            continue;
        const std::string code = finding["code"], reason = finding["by_hand"];
        reasons.insert(code + ": " + reason + '\n');
        left += (left.empty() ? "" : ",") + code;
    }
    for (const std::string &reason : reasons)
        result.by_hand += reason;
    arguments_t convert = {"convert", "--mend", "--output", "-"};
    if (!left.empty())
        convert.insert(convert.end(), {"--accept", left});
    if (fixes)
        result.text = here.run(with(trap, convert)).out;
    return result;
}

void accept(const fs::path &file, const std::string &text) {
    fs::remove(file);
    if (!text.empty())
        std::ofstream(file) << text;
}

TEST(golden_fixes, mend_what_golden_conversions_lose) {
    const workspace_t here;
    for (const golden_t &trap : support::golden_cases()) {
        if (!trap.is_trap())
            continue;
        const mended_trap_t result = mended(here, trap);
        const fs::path text = trap.folder / "mended.cfg", by_hand = trap.folder / "by-hand";
        EXPECT_FALSE(result.text.empty() && result.by_hand.empty()) << trap.folder;
        if (getenv("GOLDEN_ACCEPT")) {
            accept(text, result.text);
            accept(by_hand, result.by_hand);
            continue;
        }
        EXPECT_EQ(result.text, read_file(text)) << trap.folder;
        EXPECT_EQ(result.by_hand, read_file(by_hand)) << trap.folder;
        if (!result.by_hand.empty())
            continue;
        EXPECT_EQ(here.run(with(trap, {"audit", "--result", text})).status, 0) << trap.folder;
    }
}

} // namespace
