// The reader of plans. An input is a plan, or anything else.
//
// Whatever it holds, reading it ends with a plan or with an error that names the file and says what
// to do; what was read can be written and read again, and is the same then. So is a plan whose
// texts are pieces of the input.

#include "check.h"

#include "base/errors.h"
#include "window/plan.h"

#include <algorithm>
#include <fstream>
#include <optional>

using namespace infraconvert;

namespace {

std::string plan_file() {
    static const fuzz::place_t place;
    return place.path() + std::string("/window.json");
}

std::optional<plan_t> read(std::string_view text) {
    const std::string file = plan_file();
    std::ofstream(file, std::ios::binary) << text;
    try {
        return read_plan(file);
    } catch (const input_error_t &e) {
        const std::string_view told = e.what();
        fuzz::claim(told.find("window.json") != told.npos, "the error names the file");
        fuzz::claim(told.ends_with("; make it with infraconvert preview --save-plan"),
                    "the error says what to do");
        return std::nullopt;
    }
}

void read_again(const plan_t &plan) {
    const std::string written = plan_text(plan);
    const auto again = read(written);
    fuzz::claim(again && plan_text(*again) == written, "what is written is read as the same");
}

std::string piece(std::string_view &rest) {
    const size_t length = rest.empty() ? 0 : static_cast<unsigned char>(rest.front()) % 32;
    rest.remove_prefix(std::min<size_t>(rest.size(), 1));
    const std::string_view taken = rest.substr(0, length);
    rest.remove_prefix(taken.size());
    return std::string(taken);
}

// Names of files, what a system says of them, and what people write come from outside and hold any
// bytes; all other texts are words of the command.
plan_t plan_of(std::string_view bytes) {
    const auto number = [&] { return piece(bytes).size(); };
    const auto words = [&] { return std::vector<std::string>(number() % 4, "word"); };
    plan_t plan;
    plan.services = words();
    plan.keep_going = number() % 2;
    plan.mend = number() % 2 ? "all" : "";
    plan.key_digest = "ef56";
    while (!bytes.empty()) {
        planned_t planned;
        planned.path = piece(bytes);
        planned.problem = piece(bytes);
        planned.state = static_cast<planned_state_t>(number() % 6);
        planned.route = {"4.1(2)", "5.0(3)"};
        planned.rules = words();
        planned.failed_services = words();
        planned.findings = {number(), number(), number(), number()};
        planned.agreed = {{"IC041", piece(bytes), "2027-03-31", number()}};
        planned.refused = words();
        planned.mended = number() % 2;
        planned.input_digest = "ab12";
        planned.result_digest = "cd34";
        plan.configurations.push_back(planned);
    }
    return plan;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string_view input(reinterpret_cast<const char *>(data), size);
    if (const auto plan = read(input))
        read_again(*plan);
    const plan_t composed = plan_of(input);
    read_again(composed);
    const auto read_back = read(plan_text(composed));
    for (size_t i = 0; i < composed.configurations.size(); i++) {
        const planned_t &one = composed.configurations[i], &other = read_back->configurations[i];
        fuzz::claim(one.path == other.path && one.problem == other.problem &&
                        one.agreed[0].reason == other.agreed[0].reason,
                    "texts come back byte for byte");
    }
    return 0;
}
