#include "meaning/dialect.h"

#include <cctype>

namespace infraconvert::meaning {

namespace {

// Reads the parts of a release text from left to right, and stops at the first that is not there.
struct scanner_t {
    std::string_view text;
    bool good = true;

    int number() {
        int value = 0;
        size_t digits = 0;
        for (; digits < text.size() && digits < 9 && isdigit(byte(digits)); digits++)
            value = value * 10 + (text[digits] - '0');
        good = good && digits > 0;
        text.remove_prefix(digits);
        while (good && !text.empty() && islower(byte(0)))
            text.remove_prefix(1);
        return good ? value : 0;
    }
    void sign(char wanted) {
        good = good && text.starts_with(wanted);
        if (good)
            text.remove_prefix(1);
    }
    char letter() {
        good = good && !text.empty() && isupper(byte(0));
        const char found = good ? text[0] : '\0';
        if (good)
            text.remove_prefix(1);
        return found;
    }

  private:
    int byte(size_t at) const { return static_cast<unsigned char>(text[at]); }
};

// Across 4.1(3) the K train counts: 4.1(3) itself is older than its K1(1).
bool at_least_k(const release_t &release, int number) {
    if (triple(release) != first_typed)
        return triple(release) > first_typed;
    return release.letter == 'K' &&
           (release.number > number || (release.number == number && release.build >= 1));
}

fc_security_t fc_security_of(const release_t &release) {
    if (at_least_k(release, 2))
        return fc_security_t::fc_feature;
    return at_least_k(release, 1) ? fc_security_t::feature : fc_security_t::enable;
}

bool knows_control_plane(const release_t &release) {
    constexpr triple_t border = {5, 0, 3};
    return triple(release) > border ||
           (triple(release) == border && release.letter == 'U' && release.number >= 2);
}

} // namespace

release_t read_release(std::string_view text) {
    scanner_t scanner = {text};
    release_t release;
    release.major = scanner.number();
    scanner.sign('.');
    release.minor = scanner.number();
    scanner.sign('(');
    release.patch = scanner.number();
    scanner.sign(')');
    release.letter = scanner.letter();
    release.number = scanner.number();
    scanner.sign('(');
    release.build = scanner.number();
    return release;
}

triple_t triple(const release_t &release) { return {release.major, release.minor, release.patch}; }

dialect_t dialect_of(const release_t &release, const release_t &from) {
    const triple_t own = triple(release);
    return {.typed = own >= first_typed,
            .front_word = own >= first_front_word,
            .control_plane = knows_control_plane(release),
            .npiv_feature = at_least_k(release, 2),
            .mac_by_blank = own >= first_short_mtu,
            .fabric_order = own >= first_fabric_order,
            .single_fcoe = own.major == 5 && from.major == 4 && from.minor == 1,
            .fc_security = fc_security_of(release)};
}

} // namespace infraconvert::meaning
