// Two texts, compared by what they mean. An input is
//
//     FROM TO
//     text, and behind a zero byte another one (the same when there is none)
//
// Whatever they hold, the judgement ends, and a text loses nothing to itself; that it is not in the
// form of its release may be told.

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

bool is_loss(const meaning::difference_t &difference) {
    const finding_code_t wrong_form[] = {"IC060", "IC061"};
    return difference.is_error() && std::find(std::begin(wrong_form), std::end(wrong_form),
                                              difference.code) == std::end(wrong_form);
}

void judge(std::string_view from, std::string_view to, std::string_view before,
           std::string_view after) {
    (void)meaning::judge_form(before, from);
    (void)meaning::unsayable(before, from, to);
    (void)meaning::original_t(before, from).compare(after, std::vector{from, to});
    const auto with_itself =
        meaning::original_t(before, from).compare(before, std::vector{from, from});
    fuzz::claim(std::none_of(with_itself.begin(), with_itself.end(), is_loss),
                "a text loses nothing to itself");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string_view rest(reinterpret_cast<const char *>(data), size);
    std::string_view releases = up_to(rest, '\n');
    const std::string_view from = up_to(releases, ' ');
    const std::string_view before = up_to(rest, '\0');
    judge(from, releases, before, rest.empty() ? before : rest);
    return 0;
}
