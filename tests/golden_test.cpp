// Whole conversions: golden/SERVICE/FROM__TO/CASE/in.cfg must become out.cfg, or stay as it is
// where there is no out.cfg, with the log in `log`. Where `fails` stands, the conversion must fail,
// the file stay, and the last line of the log be its text.
//
// With GOLDEN_ACCEPT set the results become the expectation; `./dev golden` shows what that
// changes.

#include "support/golden.h"
#include "support/services.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

using support::golden_t;

// Without the dump of the saved text: out.cfg shows that already.
std::string without_dump(const std::string &log) {
    constexpr std::string_view dump = "Printing ASCII file ...\n";
    const size_t at = log.find(dump);
    return at == log.npos ? log : log.substr(0, at + dump.size());
}

std::string last_line(const std::string &log) {
    if (log.empty())
        return log;
    const size_t before = log.rfind('\n', log.size() - 2);
    return log.substr(before == log.npos ? 0 : before + 1);
}

// A difference as a unified diff, which a failure prints.
std::string difference(const std::string &expected, const std::string &result) {
    if (expected == result)
        return "";
    const support::temporary_directory_t place;
    support::write_file(place.path() + "/expected", expected);
    support::write_file(place.path() + "/result", result);
    const std::string command = "cd " + place.path() + " && diff -u expected result > difference";
    if (std::system(command.c_str()) == -1)
        return "no diff";
    return support::read_file(place.path() + "/difference");
}

void accept(const fs::path &folder, const std::string &in, const support::conversion_t &result) {
    support::write_file(folder / "log", without_dump(result.log));
    fs::remove(folder / "out.cfg");
    fs::remove(folder / "fails");
    if (result.status != 0)
        support::write_file(folder / "fails", last_line(result.log));
    else if (result.file != in)
        support::write_file(folder / "out.cfg", result.file);
}

class golden_case : public testing::TestWithParam<golden_t> {};

TEST_P(golden_case, converts_as_expected) {
    const auto &[folder, service, from, to] = GetParam();
    const std::string in = GetParam().before(), expected = GetParam().after();
    const auto result =
        support::convert(support::service_named(service), in, from.c_str(), to.c_str());
    ASSERT_FALSE(result.process.crashed);
    if (std::getenv("GOLDEN_ACCEPT")) {
        accept(folder, in, result);
        return;
    }
    EXPECT_EQ(difference(expected, result.file), "");
    EXPECT_EQ(difference(support::read_file(folder / "log"), without_dump(result.log)), "");
    if (GetParam().fails()) {
        EXPECT_EQ(result.status, -1);
        EXPECT_EQ(last_line(result.log), support::read_file(folder / "fails"));
        EXPECT_EQ(result.process.output, "");
    } else {
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.process.output, service == "assoc" ? "" : expected);
    }
}

// The QoS passes search in another way while they need not trace what they pass.
TEST_P(golden_case, converts_the_same_without_a_log) {
    const golden_t &golden = GetParam();
    const auto result = support::convert(support::service_named(golden.service), golden.before(),
                                         golden.from.c_str(), golden.to.c_str(), 0);
    EXPECT_EQ(result.status, golden.fails() ? -1 : 0);
    EXPECT_EQ(result.file, golden.after());
}

std::string name_of(const testing::TestParamInfo<golden_t> &info) {
    std::string name = fs::relative(info.param.folder, GOLDEN_DIRECTORY);
    for (char &c : name)
        c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(golden, golden_case, testing::ValuesIn(support::golden_cases()), name_of);

} // namespace
