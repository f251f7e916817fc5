#include "infraconvert/secrets/lists.h"
#include "support/converter_process.h"
#include "support/golden.h"

#include "base/diff.h"
#include "secrets/masked_text.h"

#include <gtest/gtest.h>

namespace {

using namespace infraconvert;

const std::filesystem::path directory = SECRETS_DIRECTORY;

// What may stand where a secret does: words, digests, and what looks like a harmless value or is
// one elsewhere.
constexpr std::string_view secrets[] = {"Zq7topXsecret",
                                        "$1$zQ8x$k0Vt5hAbCdEf/9.",
                                        "0x8b1a9953c4611296a827abf8c47804d7",
                                        "73915284",
                                        "7",
                                        "Ethernet7/77",
                                        "10.66.77.88",
                                        "2001:db8::77",
                                        "20:01:00:05:9b:aa:bb:cc",
                                        "0011.2233.aabb",
                                        "4.1(3)",
                                        "class-voice",
                                        "voice",
                                        "cos",
                                        "af11",
                                        "any",
                                        "log",
                                        "zq!x:y",
                                        "\"zqone zqtwo\""};

TEST(masked_text, shows_nothing_of_a_secret) {
    const auto entries = support::entries_with_secrets(directory / "lists");
    ASSERT_GT(entries.size(), 700u);
    size_t lines = 0;
    for (const std::string &entry : entries) {
        const std::string expected = masked_text(support::with_secret(entry, secrets[0]));
        EXPECT_EQ(split_lines(expected).size(), split_lines(entry).size()) << entry;
        lines += split_lines(entry).size();
        for (const std::string_view secret : secrets)
            EXPECT_EQ(masked_text(support::with_secret(entry, secret)), expected) << entry;
        EXPECT_EQ(expected.find(secrets[0]), expected.npos) << entry;
    }
    EXPECT_GT(lines, 1200u);
}

// Behind every secret the configuration is readable again, unless it is a text without an end.
TEST(masked_text, hides_no_more_than_the_text_with_the_secret) {
    const std::string behind = "interface Ethernet1/1\n  switchport access vlan 10\nnpiv enable\n";
    for (const std::string &entry : support::entries_with_secrets(directory / "lists")) {
        const std::string text = support::with_secret(entry, secrets[0]) + behind;
        EXPECT_TRUE(masked_text(text).ends_with(behind)) << entry;
    }
}

TEST(masked_text, shows_harmless_lines) {
    const std::string text = support::read_file(directory / "harmless.cfg");
    ASSERT_GT(split_lines(text).size(), 250u);
    EXPECT_EQ(masked_text(text), text);
}

bool is_free_text(std::string_view line) {
    return line.find("description") != line.npos || line.starts_with('!');
}

// A difference of a conversion is of use only when its lines can be read.
TEST(masked_text, shows_all_lines_that_conversions_touch) {
    size_t touched = 0;
    for (const support::golden_t &golden : support::golden_cases()) {
        const std::string in = golden.before(), out = golden.after();
        const std::string masked_in = masked_text(in), masked_out = masked_text(out);
        for (const script_line_t &line : difference(split_lines(in), split_lines(out))) {
            const bool added = line.edit == line_edit_t::add;
            const size_t number = added ? line.after : line.before;
            const std::string_view text = split_lines(added ? out : in)[number];
            if (line.edit == line_edit_t::keep || is_free_text(text))
                continue;
            EXPECT_EQ(split_lines(added ? masked_out : masked_in)[number], text) << golden.folder;
            touched++;
        }
    }
    EXPECT_GT(touched, 800u);
}

TEST(masked_text, keeps_what_a_line_is_made_of) {
    struct row_t {
        const char *text, *masked;
    };
    const row_t rows[] = {
        {"", ""},
        {"\n \n\t\n", "\n \n\t\n"},
        {"vlan  10 \r\n  fcoe\r\n", "vlan  10 \r\n  fcoe\r\n"},
        {"username  a password b", "username  a <masked>"},
        {"interface Ethernet1/1\n    description a b  \n\tshutdown\n",
         "interface Ethernet1/1\n    description <masked>\n\tshutdown\n"},
        {"no username a password b\n", "no username a <masked>\n"},
        {"no unknown\n", "<masked>\n"},
        // A secret that is a keyword, where a keyword may stand.
        {"interface Ethernet1/1\n  switchport voice\n",
         "interface Ethernet1/1\n  switchport <masked>\n"},
        {"policy-map p\n  class c\n    priority 12\n",
         "policy-map p\n  class c\n    priority <masked>\n"},
        // Lines under a stanza that is not known do not show, even those that show elsewhere.
        {"unknown\n  mtu 1500\nvlan 1\n  mtu 1500\n", "<masked>\n  <masked>\nvlan 1\n  mtu 1500\n"},
        // What a conversion left under the wrong stanza.
        {"feature fex\n  match cos 5\n  interface Ethernet1/32\n    shutdown\n",
         "feature fex\n  match cos 5\n  interface Ethernet1/32\n    shutdown\n"},
        // Texts end where they end.
        {"banner motd #a\nvlan 1\nb# c\nvlan 1\n", "banner <masked>\n<masked>\n<masked>\nvlan 1\n"},
        {"banner motd #a#\nvlan 1\n", "banner <masked>\nvlan 1\n"},
        {"banner motd ^Ca\nvlan 1\n^C\nvlan 1\n", "banner <masked>\n<masked>\n<masked>\nvlan 1\n"},
        {"banner motd #a\nvlan 1\n", "banner <masked>\n<masked>\n"},
        {"-----BEGIN KEY-----\nvlan 1\n-----END KEY-----\nvlan 1\n",
         "<masked>\n<masked>\n<masked>\nvlan 1\n"},
        {"crypto ca x\n certificate 1\n  30\nvlan 1\n  quit\nvlan 1\n",
         "crypto <masked>\n <masked>\n  <masked>\n<masked>\n  <masked>\nvlan 1\n"},
        {"crypto ca x\n certificate 1\nvlan 1\n", "crypto <masked>\n <masked>\nvlan 1\n"},
        {"banner motd END\nvlan 1\n END \nvlan 1\n",
         "banner <masked>\n<masked>\n <masked>\nvlan 1\n"},
        {"BANNER MOTD #a\nvlan 1\n#\nvlan 1\n", "<masked>\n<masked>\n<masked>\nvlan 1\n"},
        {"banner motd q\nvlan 1\nthe end q\nvlan 1\n",
         "banner <masked>\n<masked>\n<masked>\nvlan 1\n"},
        {"vacant-message #a\nvlan 1\nb#\nvlan 1\n", "<masked>\n<masked>\n<masked>\nvlan 1\n"},
        {"unknown text @\nvlan 1\n@\nvlan 1\n", "<masked>\n<masked>\n<masked>\nvlan 1\n"},
        // What does not come to an end is none, nor is what ends on its line.
        {"unknown text #\nvlan 1\n", "<masked>\nvlan 1\n"},
        {"a-prompt \"text\"\nvlan 1\na-prompt \"text\"\n", "<masked>\nvlan 1\n<masked>\n"},
        {"banner motd # a #\nvlan 1\n! #\n", "banner <masked>\nvlan 1\n<masked>\n"},
        {"! #\nvlan 1\n! #\n", "<masked>\nvlan 1\n<masked>\n"},
        // An end that came earlier is none.
        {"quit\nEND\ncrypto ca x\n certificate 1\nbanner motd END\nvlan 1\n",
         "<masked>\n<masked>\ncrypto <masked>\n <masked>\nbanner <masked>\nvlan 1\n"},
    };
    for (const row_t &row : rows)
        EXPECT_EQ(masked_text(row.text), row.masked);
}

} // namespace
