// The releases at which rules begin and end to apply, or at which what they do changes.
#pragma once

namespace infraconvert {

// Oldest first. A release that is not here has the rules of the last of these that is not newer;
// the K and U releases of a release are newer than it and older than the next. A few that are no
// border stand here because people look for them. The last is the newest release that is known.
inline constexpr const char *border_releases[] = {
    "3.1(1)",      "4.0(1)",      "4.1(1)",      "4.1(2)", "4.1(3)", "4.1(3)K1(1)",
    "4.1(3)K2(1)", "4.1(4)",      "4.2(1)",      "5.0(1)", "5.0(2)", "5.0(3)",
    "5.0(3)U1(1)", "5.0(3)U2(1)", "5.0(3)U3(1)", "5.1(1)", "6.0(1)"};

// Where the same rules do something else from this release on.
struct inner_border_t {
    const char *release, *change;
};
inline constexpr inner_border_t inner_borders[] = {
    {"5.0(2)", "type qos class-maps are written with \"match-any\" from here on"},
};

} // namespace infraconvert
