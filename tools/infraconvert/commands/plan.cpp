// plan: which rule applies to a pair of releases, without any configuration.

#include "base/errors.h"
#include "base/messages.h"
#include "commands/common.h"
#include "reports/command_json.h"
#include "reports/summary.h"

#include <memory>

namespace infraconvert {

namespace {

struct plan_options_t {
    route_options_t releases;
    std::vector<std::string> services;
    bool json = false;
};

int run(const plan_options_t &options) {
    check_release("--from", options.releases.from);
    check_release("--to", options.releases.to);
    const route_t route = checked_route(options.releases);
    const auto chosen = services_named(options.services);
    write_output(options.json ? plan_json(chosen, route) : plan_table(chosen, route));
    return exit_done;
}

std::function<int()> declare(CLI::App &arguments) {
    const auto options = std::make_shared<plan_options_t>();
    declare_route(arguments, options->releases);
    declare_services(arguments, options->services);
    declare_json(arguments, options->json);
    return [options] { return run(*options); };
}

} // namespace

const command_t plan_command = {
    .name = "plan",
    .summary = "Tell which conversion rules apply to a pair of releases",
    .examples = "infraconvert plan --from '4.0(1)' --to '5.0(2)'\n"
                "infraconvert plan --from '5.0(3)U2(1)' --to '5.0(3)U1(1)' --service qos --json\n",
    .declare = declare,
};

} // namespace infraconvert
