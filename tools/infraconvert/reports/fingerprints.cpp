#include "reports/fingerprints.h"

#include "base/digest.h"

namespace infraconvert {

std::string fingerprints_t::of(const finding_t &finding) {
    return next(std::string(finding.kind->code) + '\n' + finding.place + '\n' + finding.detail);
}

std::string fingerprints_t::next(const std::string &said) {
    constexpr size_t enough = 32; // hexadecimal digits
    return sha256(file + '\n' + said + '\n' + std::to_string(seen[said]++)).substr(0, enough);
}

} // namespace infraconvert
