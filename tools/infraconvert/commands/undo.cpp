// undo: what was converted with a plan, put back.

#include "commands/common.h"
#include "commands/window.h"

#include "base/errors.h"

#include <memory>

namespace infraconvert {

namespace {

std::function<int()> declare(CLI::App &arguments) {
    const auto options = std::make_shared<window_options_t>();
    declare_plan(arguments, options->plan, "The plan that was applied");
    declare_json(arguments, options->json);
    arguments
        .add_option("PATH", options->paths,
                    "Only these of its configurations, or those below these folders")
        ->type_name("")
        ->check(not_empty);
    declare_jobs(arguments, options->jobs);
    return [options] {
        if (options->plan.empty())
            throw usage_error_t("missing --plan FILE, the plan that was applied");
        return undo_plan(*options);
    };
}

} // namespace

const command_t undo_command = {
    .name = "undo",
    .summary = "Put back what was converted with a plan, byte for byte",
    .examples = "infraconvert undo --plan window.json\n"
                "infraconvert undo --plan window.json configurations/leaf-17.cfg\n",
    .declare = declare,
};

} // namespace infraconvert
