// What the command says when a converter crashes, and when it cannot run any.

#include "infraconvert/workspace.h"

#include <gtest/gtest.h>

namespace {

const std::string crash = "649 crash\n";

TEST(crash, is_reported_not_suffered) {
    support::workspace_t here;
    here.write("switch.cfg", crash);
    const auto result =
        here.run({"convert", "--from", "4.1(2)", "--to", "5.0(2)", "--json", "switch.cfg"});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(support::contains(
        result.err, "npiv failed: the converter was killed by signal 11 (Segmentation fault)\n"))
        << result.err;
    EXPECT_TRUE(support::contains(result.out, "was killed by signal 11")) << result.out;
    EXPECT_EQ(here.read("switch.cfg"), crash);
}

TEST(crash, of_an_installation_without_the_program_that_runs_the_converters) {
    support::workspace_t here;
    here.write("switch.cfg", crash);
    std::filesystem::copy_file(support::command_path(), here.path("infraconvert"));
    const auto result = here.run_program(
        {here.path("infraconvert"), "convert", "--from", "4.1(2)", "--to", "5.0(2)", "switch.cfg"});
    EXPECT_EQ(result.status, 6);
    EXPECT_TRUE(support::contains(result.err, "infraconvert: infraconvert-run stands neither in "));
    EXPECT_EQ(here.read("switch.cfg"), crash);
}

} // namespace
