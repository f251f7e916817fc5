// Over all golden conversions: patch with the preview's diff, the command, and the installer's own
// call give the same bytes.

#include "include/libinfraconvertascii.h"
#include "infraconvert/workspace.h"
#include "support/converter_process.h"
#include "support/golden.h"

#include <gtest/gtest.h>

namespace {

using support::golden_t;
using support::workspace_t;

// Converts switch.cfg, and once more with the codes accepted for which the command refuses to.
support::result_t convert_knowingly(const workspace_t &here, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "convert");
    arguments.emplace_back("switch.cfg");
    const std::string original = here.read("switch.cfg");
    const auto first = here.run(arguments);
    if (first.status != 4)
        return first;
    EXPECT_EQ(here.read("switch.cfg"), original);
    const std::string option = "--accept ";
    const size_t codes = first.err.rfind(option) + option.size();
    arguments.emplace_back("--accept");
    arguments.push_back(first.err.substr(codes, first.err.find('\n', codes) - codes));
    return here.run(arguments);
}

TEST(each_conversion, patch_and_convert_give_the_expected_bytes) {
    workspace_t here;
    const auto cases = support::golden_cases();
    EXPECT_FALSE(cases.empty());
    for (const golden_t &c : cases) {
        here.write("switch.cfg", c.before());
        const auto preview = here.run(
            {"preview", "--service", c.service, "--from", c.from, "--to", c.to, "switch.cfg"});
        EXPECT_EQ(preview.status, c.fails() ? 1 : 0) << c.folder << preview.err;
        here.input = preview.out;
        const auto patch = here.run_program({"patch", "--silent", "-p0"});
        EXPECT_TRUE(patch.status == 0 || preview.out.empty()) << c.folder << patch.out;
        EXPECT_EQ(here.read("switch.cfg"), c.after()) << c.folder;

        here.write("switch.cfg", c.before());
        const auto convert =
            convert_knowingly(here, {"--service", c.service, "--from", c.from, "--to", c.to});
        EXPECT_EQ(convert.status, c.fails() ? 1 : 0) << c.folder << convert.err;
        EXPECT_EQ(here.read("switch.cfg"), c.after()) << c.folder;
        EXPECT_EQ(here.names(), std::vector<std::string>{"switch.cfg"}) << c.folder;
    }
}

TEST(each_conversion, the_installers_call_for_all_services_gives_the_same) {
    workspace_t here;
    for (const golden_t &c : support::golden_cases()) {
        here.write("installed/ascii/system.cfg", c.before());
        here.write("switch.cfg", c.before());
        const auto call = support::run_in_process([&] {
            const std::string installed = here.path("installed");
            const infraconvertascii_args_t args = {installed.c_str(), "package", c.to.c_str(),
                                                   c.from.c_str()};
            return static_cast<int>(infraconvertascii_startup_all(&args));
        });
        EXPECT_FALSE(call.crashed) << c.folder;
        const auto convert =
            convert_knowingly(here, {"--keep-going", "--from", c.from, "--to", c.to});
        EXPECT_EQ(here.read("switch.cfg"), here.read("installed/ascii/system.cfg")) << c.folder;
        const bool failed = support::contains(call.errors, "returned error");
        EXPECT_EQ(convert.status, failed ? 1 : 0) << c.folder << convert.err;
    }
}

} // namespace
