#include "base/quoting.h"

#include "base/exact_text.h"

#include <gtest/gtest.h>

namespace {

using namespace infraconvert;

TEST(quoting, names_and_lines) {
    const struct {
        const char *bytes, *name, *line;
    } rows[] = {
        {"switch.cfg", "switch.cfg", "switch.cfg"},
        {"with blank 'and' \xc3\xbc \xe2\x82\xac \xf0\x9f\x98\x80",
         "with blank 'and' \xc3\xbc \xe2\x82\xac \xf0\x9f\x98\x80",
         "with blank 'and' \xc3\xbc \xe2\x82\xac \xf0\x9f\x98\x80"},
        {"a\n+++ b\t\"\\", "\"a\\n+++ b\\t\\\"\\\\\"", "a\n+++ b\t\"\\"},
        {"\033[31m\r\a\x7f", "\"\\033[31m\\r\\a\\177\"", "^[[31m^M^G^?"},
        {"\x9b\xc2\x9b", "\"\\233\\302\\233\"", "<9B><C2><9B>"}, // the same to some terminals
        {"\xff\xc3", "\"\\377\\303\"", "<FF><C3>"},
        {"\xc0\xaf\xe0\x80\xaf", "\"\\300\\257\\340\\200\\257\"", "<C0><AF><E0><80><AF>"},
        {"\xed\xa0\x80\xf4\x90\x80\x80", "\"\\355\\240\\200\\364\\220\\200\\200\"",
         "<ED><A0><80><F4><90><80><80>"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(quoted_name(row.bytes), row.name);
        EXPECT_EQ(visible(row.bytes), row.line);
    }
}

TEST(quoting, what_is_said_of_a_file_without_its_name) {
    const struct {
        const char *file, *said, *of_all;
    } rows[] = {
        {"a.cfg", "a.cfg: is empty", "is empty"},
        {"a", "cannot write a: No space", "cannot write it: No space"},
        {"a b", "a b is locked: wait", "it is locked: wait"},
        {"\x9b", "cannot write \"\\233\"", "cannot write it"},
        {"a.cfg", "cannot write a.cfg.bak: No space", "cannot write a.cfg.bak: No space"},
        {"a.cfg", "no memory", "no memory"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(without_name(row.file, row.said), row.of_all);
}

TEST(quoting, exact_bytes_of_a_text_in_json) {
    for (size_t length = 1; length < 8; length++) {
        const std::string bytes = "\xff" + std::string(length, 'x');
        nlohmann::json document = {{"list", nlohmann::json::array({{{"path", bytes}}})},
                                   {"path", "plain"}};
        add_exact_bytes(document);
        const auto read = nlohmann::json::parse(
            document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
        EXPECT_EQ(exact_bytes(read["list"][0], "path"), bytes);
        EXPECT_EQ(read["list"][0]["path"], "\xef\xbf\xbd" + std::string(length, 'x'));
        EXPECT_EQ(exact_bytes(read, "path"), "plain");
        EXPECT_FALSE(read.contains("path_base64"));
    }
}

} // namespace
