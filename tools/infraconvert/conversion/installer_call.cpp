#include "conversion/installer_call.h"

#include "base/child.h"
#include "base/errors.h"

#include <fstream>
#include <unistd.h>

namespace infraconvert {

namespace {

namespace fs = std::filesystem;

constexpr const char *runner_name = "infraconvert-run";

// Beside this program in a build, in ../libexec/infraconvert once installed.
fs::path find_runner() {
    const fs::path here = fs::read_symlink("/proc/self/exe").parent_path();
    for (const fs::path &directory : {here, here / "../libexec/infraconvert"}) {
        if (access((directory / runner_name).c_str(), X_OK) == 0)
            return directory / runner_name;
    }
    throw run_error(std::string(runner_name) + " stands neither in " + here.string() +
                    " nor in its ../libexec/infraconvert");
}

std::string first_line(const fs::path &file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

} // namespace

call_result_t call_installer(const call_t &call) {
    const std::string name = call.service.name;
    const fs::path status_file = call.logs / "status", error_file = call.logs / (name + ".stderr");
    fs::remove(status_file);
    std::vector<std::string> command = {find_runner(),
                                        "--path",
                                        call.directory,
                                        "--logs",
                                        call.logs,
                                        "--from",
                                        call.releases.from,
                                        "--to",
                                        call.releases.to,
                                        "--service",
                                        std::to_string(call.service.uuid),
                                        "--scratch"};
    if (call.quiet)
        command.emplace_back("--quiet");
    const std::string trouble = run_child(command, call.logs / (name + ".stdout"), error_file);
    std::ifstream status(status_file);
    call_result_t result;
    uint32_t uuid = 0;
    result.came_back =
        trouble.empty() && status >> uuid >> result.status && uuid == call.service.uuid;
    if (!result.came_back) {
        result.trouble = trouble.empty() ? "gave no status" : trouble;
        if (const std::string said = first_line(error_file); said.starts_with(runner_name))
            result.trouble += " (" + said + ")";
    }
    return result;
}

} // namespace infraconvert
