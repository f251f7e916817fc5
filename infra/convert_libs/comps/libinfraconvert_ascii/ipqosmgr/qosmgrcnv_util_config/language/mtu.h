// The MTU rule. Typed releases count 38 bytes less than the older ones: on the way up a value is
// lowered by that, to no less than 1500; on the way down it is raised, to no more than 9216. 9216
// stays.
#pragma once

#include <string>

// The text behind the first "mtu" of an action, or null when there is none.
const char *qoscnv_behind_mtu(const char *action);
// The number at the start of `behind_mtu` converted, as the line "    mtu %d\n"; empty when there
// is no number: the action then stays as it is.
std::string qoscnv_convert_mtu(const char *behind_mtu, bool upgrade);
