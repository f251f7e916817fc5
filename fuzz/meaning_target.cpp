// Two texts, compared by what they mean. An input is
//
//     FROM TO
//     text, and behind a zero byte another one (the same when there is none)
//
// Whatever they hold, the judgement ends, in proportion to their length, and a text loses nothing
// to itself; that it is not in the form of its release may be told.

#include "check.h"

#include "meaning/compare.h"

#include <algorithm>

using namespace infraconvert;

namespace {

std::string_view up_to(std::string_view &rest, char end) {
    const size_t at = std::min(rest.find(end), rest.size());
    const std::string_view part = rest.substr(0, at);
    rest.remove_prefix(std::min(at + 1, rest.size()));
    return part;
}

using differences_t = std::vector<meaning::difference_t>;

// What the form check says of a text by itself may be told again of the text as a result.
bool is_told_by(const differences_t &form, const meaning::difference_t &difference) {
    return std::any_of(form.begin(), form.end(), [&](const meaning::difference_t &told) {
        return told.is_error() && told.code == difference.code && told.before == difference.after;
    });
}

void judge(std::string_view from, std::string_view to, std::string_view before,
           std::string_view after) {
    (void)meaning::unsayable(before, from, to);
    (void)meaning::original_t(before, from).compare(after, std::vector{from, to});
    const differences_t form = meaning::judge_form(before, from);
    for (const auto &difference :
         meaning::original_t(before, from).compare(before, std::vector{from, from}))
        fuzz::claim(!difference.is_error() || is_told_by(form, difference),
                    "a text loses nothing to itself");
}

// A text many times one behind the other: what stands in it, stands in it often.
std::string repeated(std::string_view text) {
    constexpr size_t wanted = 64 * 1024;
    std::string whole;
    while (whole.size() < wanted)
        (whole += text) += '\n';
    return whole;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string_view rest(reinterpret_cast<const char *>(data), size);
    std::string_view releases = up_to(rest, '\n');
    const std::string_view from = up_to(releases, ' ');
    const std::string_view before = up_to(rest, '\0');
    const std::string_view after = rest.empty() ? before : rest;
    judge(from, releases, before, after);
    if (size % 32 == 0) {                  // a sample, for it takes longer
        constexpr double most_seconds = 5; // a hundred times what it takes, with sanitizers
        const double begun = fuzz::processor_time();
        judge(from, releases, repeated(before), repeated(after));
        fuzz::claim(fuzz::processor_time() - begun < most_seconds,
                    "it takes its time in proportion");
    }
    return 0;
}
