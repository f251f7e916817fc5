// Configurations out of the lists of lines with secrets (tests/infraconvert/secrets/lists), with
// one secret in all of its places, masked. An input is
//
//     how many entries of the lists, and two bytes for each: which
//     the secret
//
// Whatever the secret is, what shows must be the same: then nothing of it shows.

#include "check.h"

#include "infraconvert/secrets/lists.h"
#include "secrets/harmless_table.h"
#include "secrets/mask.h"
#include "secrets/masked_text.h"
#include "secrets/own_words.h"
#include "secrets/words.h"

#include <set>

using namespace infraconvert;

namespace {

constexpr std::string_view reference = "Zq7topXsecret";

const std::vector<std::string> &entries() {
    static const auto all = support::entries_with_secrets(SECRETS_DIRECTORY "/lists");
    return all;
}

std::string configuration_of(const uint8_t *choices, size_t count) {
    std::string text = "interface Ethernet1/1\n  switchport access vlan 10\n";
    for (size_t i = 0; i < count; i++)
        text += entries()[(choices[2 * i] * 256u + choices[2 * i + 1]) % entries().size()];
    return text + "policy-map gold\n  class voice\n    priority\n";
}

// A word that ends no text of several lines.
std::string secret_of(const uint8_t *bytes, size_t size) {
    constexpr std::string_view ends = "#@%$^/\"\x03\x7f";
    std::string secret;
    for (size_t i = 0; i < size; i++) {
        const char c = static_cast<char>(bytes[i]);
        const bool usable = (bytes[i] > ' ' || bytes[i] >= 0x80) && ends.find(c) == ends.npos;
        secret += usable ? c : static_cast<char>('a' + bytes[i] % 26);
    }
    return secret;
}

// Words of the tables, which may stand where they do by themselves, ends of texts, and numbers too
// small to be secrets; with what a message may put around them.
bool is_known_word(std::string_view word) {
    constexpr std::string_view around = "\"'()<>[]-=>:,.;!?";
    const size_t first = std::min(word.find_first_not_of(around), word.size());
    word = word.substr(first, word.find_last_not_of(around) + 1 - first);
    static const std::set<std::string, std::less<>> known = [] {
        std::set<std::string, std::less<>> words = {"XX", "EOF", "quit", "end-job", "gold"};
        for (const std::string_view table :
             {harmless_maps, harmless_table, harmless_everywhere, own_words}) {
            std::string text(table);
            for (char &c : text)
                c = std::string_view("|[]{}\n").find(c) == std::string_view::npos ? c : ' ';
            for (const std::string_view each : words_of(text))
                words.emplace(each);
        }
        return words;
    }();
    std::string small(word);
    for (char &c : small)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const bool tiny = word.size() <= 2 && word.find_first_not_of("0123456789") == word.npos;
    return tiny || known.contains(word) || known.contains(small);
}

std::string everything_told(const std::string &configuration) {
    mask_t mask;
    mask.learn(configuration);
    return masked_text(configuration) + mask.logs(configuration);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    constexpr size_t most_entries = 4;
    const size_t count = size > 0 ? 1 + data[0] % most_entries : 0;
    if (size < 2 + 2 * count)
        return 0;
    const std::string text = configuration_of(data + 1, count);
    const std::string secret = secret_of(data + 1 + 2 * count, size - 1 - 2 * count);
    if (is_known_word(secret) || text.find(secret) != text.npos)
        return 0;
    fuzz::claim(everything_told(support::with_secret(text, secret)) ==
                    everything_told(support::with_secret(text, reference)),
                "what shows is the same whatever the secret is");
    return 0;
}
