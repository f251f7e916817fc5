#include "audit/mask.h"

#include "diff.h"

#include <algorithm>
#include <cctype>
#include <regex>

namespace infraconvert {

namespace {

constexpr const char *replacement = "<masked>";

// Each has the secret as its second group, behind what has to stand in front of it. A secret may
// follow the number of the form in which it is written (0, 5, 6, 7).
const std::vector<std::regex> &secrets() {
    static const auto make = [](const char *text) {
        return std::regex(text, std::regex::icase | std::regex::optimize);
    };
    static const std::vector<std::regex> patterns = {
        make(
            R"re((\b(?:password|passwd|secret|passphrase|pre-shared-key|key-string|shared-secret)\s+(?:(?:encrypted|hash|level\s+\d+|\d)\s+)*)("[^"]*"|\S+))re"),
        make(
            R"re(((?:^|\s)(?:key|server-key|auth-key|hmac-key)\s+(?:[0678]\s+)?)("[^"]*"|(?!chain\b|\d{1,3}\s*$)\S+))re"),
        make(
            R"re((\b(?:authentication|authentication-key|message-digest-key|ospf\s+authentication-key)\s+(?:\d+\s+)?(?:md5|sha\S*|text)\s+(?:\d\s+)?)(\S+))re"),
        make(R"re((\bauth\s+(?:md5|sha\S*)\s+)(\S+))re"),
        make(R"re((\bpriv\s+(?:(?:aes|des|3des)\S*\s+)*)(\S+))re"),
        make(R"re((\bsnmp-server\s+community\s+)(\S+))re"),
        make(
            R"re((\bsnmp-server\s+host\s+\S+\s+(?:(?:traps|informs)\s+)?(?:version\s+(?:1|2c)\s+)?)(?!version\b|use-vrf\b|source-interface\b|udp-port\b|traps\b|informs\b)(\S+))re"),
    };
    return patterns;
}

// Most lines of a configuration hold none of these, and expressions are slow.
bool may_hold_secret(std::string_view line) {
    constexpr std::string_view words[] = {"pass", "secret", "key", "auth", "priv", "snmp"};
    std::string lower(line);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return std::any_of(std::begin(words), std::end(words),
                       [&](std::string_view word) { return lower.find(word) != lower.npos; });
}

} // namespace

std::string masked(std::string_view line) {
    std::string text(line);
    if (!may_hold_secret(line))
        return text;
    for (const std::regex &secret : secrets())
        text = std::regex_replace(text, secret, std::string("$1") + replacement);
    return text;
}

std::string masked_lines(std::string_view text) {
    std::string result;
    for (const std::string_view line : split_lines(text))
        result += masked(line);
    return result;
}

conversion_t masked_conversion(conversion_t conversion) {
    conversion.original = std::make_shared<const std::string>(masked_lines(*conversion.original));
    conversion.result = std::make_shared<const std::string>(masked_lines(*conversion.result));
    conversion.logs = masked_lines(conversion.logs);
    for (step_t &step : conversion.steps) {
        if (!step.failure)
            continue;
        step.failure->reason = masked(step.failure->reason);
        step.failure->log_line = masked(step.failure->log_line);
    }
    return conversion;
}

void mask_findings(std::vector<finding_t> &findings) {
    for (finding_t &finding : findings) {
        finding.detail = masked(finding.detail);
        for (auto *lines : {&finding.before, &finding.after}) {
            for (evidence_t &line : *lines)
                line.text = masked(line.text);
        }
    }
}

} // namespace infraconvert
