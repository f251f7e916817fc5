#include "workspace.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <grp.h>
#include <iterator>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

namespace {

namespace fs = std::filesystem;

constexpr uid_t nobody = 65534;
constexpr int could_not_start = 126;

fs::path make_directory() {
    std::string name = fs::temp_directory_path() / "infraconvert-test-XXXXXX";
    if (!mkdtemp(name.data()))
        throw std::runtime_error("no temporary directory");
    return name;
}

std::string contents(const fs::path &file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void store(const fs::path &file, const std::string &bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

void redirect(int descriptor, const fs::path &file, int flags) {
    const int opened = open(file.c_str(), flags, 0644);
    if (opened < 0 || dup2(opened, descriptor) < 0)
        _exit(could_not_start);
}

} // namespace

std::string command_path() { return INFRACONVERT_COMMAND; }

std::string example() { return contents(INFRACONVERT_EXAMPLE); }

workspace_t::workspace_t() : directory(make_directory()), streams(make_directory()) {}

workspace_t::~workspace_t() {
    std::error_code ignored;
    fs::remove_all(directory, ignored);
    fs::remove_all(streams, ignored);
}

void workspace_t::write(const std::string &name, const std::string &bytes) const {
    fs::create_directories(path(name).parent_path());
    store(path(name), bytes);
}

std::string workspace_t::read(const std::string &name) const { return contents(path(name)); }

bool workspace_t::has(const std::string &name) const {
    return fs::exists(fs::symlink_status(path(name)));
}

std::vector<std::string> workspace_t::names() const {
    std::vector<std::string> result;
    for (const auto &entry : fs::recursive_directory_iterator(directory))
        result.push_back(entry.path().lexically_relative(directory));
    std::sort(result.begin(), result.end());
    return result;
}

void workspace_t::give_to_unprivileged() const {
    if (lchown(directory.c_str(), nobody, nobody) != 0)
        throw std::runtime_error("cannot give a directory away");
    for (const auto &entry : fs::recursive_directory_iterator(directory)) {
        if (lchown(entry.path().c_str(), nobody, nobody) != 0)
            throw std::runtime_error("cannot give a file away");
    }
}

result_t workspace_t::run(const std::vector<std::string> &arguments) const {
    std::vector<std::string> command = {command_path()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return run_program(command);
}

result_t workspace_t::run_program(const std::vector<std::string> &command) const {
    store(streams / "in", input);
    if (unprivileged)
        give_to_unprivileged();
    const pid_t child = fork();
    if (child == 0) {
        redirect(STDIN_FILENO, streams / "in", O_RDONLY);
        redirect(STDOUT_FILENO, output_file.empty() ? (streams / "out").string() : output_file,
                 O_WRONLY | O_CREAT | O_TRUNC);
        redirect(STDERR_FILENO, streams / "err", O_WRONLY | O_CREAT | O_TRUNC);
        for (const std::string &variable : environment)
            putenv(const_cast<char *>(variable.c_str()));
        if (chdir(directory.c_str()) != 0)
            _exit(could_not_start);
        if (unprivileged &&
            (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0))
            _exit(could_not_start);
        std::vector<char *> arguments;
        for (const std::string &argument : command)
            arguments.push_back(const_cast<char *>(argument.c_str()));
        arguments.push_back(nullptr);
        execvp(arguments[0], arguments.data());
        _exit(could_not_start);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status),
            contents(streams / "out"), contents(streams / "err")};
}

bool workspace_t::can_drop_rights() const {
    workspace_t other;
    other.unprivileged = geteuid() == 0;
    return other.run({"--version"}).status == 0;
}

} // namespace support
