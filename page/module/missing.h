// What the C++ library of this compiler lacks, and the code of the library and the command uses.
// Included ahead of every file of the module; the other builds have their own.
#pragma once

#include <algorithm>
#include <compare>
#include <functional>
#include <iterator>
#include <string>
#include <system_error>
#include <thread>

// Names of Linux that this platform has no use for; the calls are refused, see system_calls.cpp.
#define RENAME_NOREPLACE (1 << 0)
#define RENAME_EXCHANGE (1 << 1)
extern "C" int renameat2(int, const char *, int, const char *, unsigned int);

namespace std {

inline strong_ordering operator<=>(const string &left, const string &right) {
    return left.compare(right) <=> 0;
}

// There are no threads; whoever starts one does its work himself then.
struct jthread {
    template<class Work> explicit jthread(Work &&) {
        throw system_error(make_error_code(errc::resource_unavailable_try_again));
    }
};

namespace ranges {

template<class Range, class Test> auto find_if(Range &&range, Test test) {
    return std::find_if(std::begin(range), std::end(range), test);
}

template<class Range, class Test> bool all_of(Range &&range, Test test) {
    return std::all_of(std::begin(range), std::end(range), test);
}

template<class Range, class Value, class Before = std::less<>, class Member>
auto upper_bound(Range &&range, const Value &value, Before before, Member member) {
    return std::upper_bound(std::begin(range), std::end(range), value,
                            [&](const Value &v, const auto &element) {
                                return before(v, std::invoke(member, element));
                            });
}

} // namespace ranges

} // namespace std
