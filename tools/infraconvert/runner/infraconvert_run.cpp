// infraconvert-run: runs the converters for the command that started it, which sends its requests
// over the socket that it leaves open. protocol.h tells of them.
//
// The program is small and loads the library once. Each call has a process of its own, because a
// converter keeps state from one run to the next, and because it may crash: a fork of this process,
// which costs a fraction of starting a program. What is private of all calls is kept in one place,
// which this process removes however the command ends.

#include "runner/converter_child.h"
#include "runner/private_place.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <list>
#include <map>
#include <memory>
#include <poll.h>
#include <set>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace runner {
namespace {

namespace fs = std::filesystem;

// A place in memory must have room for this many times the configuration: the converters let it
// grow to five times its size, and a save holds it twice.
constexpr uint64_t copies_of_text = 16, room_for_any = 1 << 20;

// The directories of the calls, used again and again.
class directories_t {
  public:
    // One that no other call uses. Throws std::runtime_error.
    fs::path take(uint64_t text_size) {
        const fs::path memory = directory_in_memory(room_for_any + copies_of_text * text_size);
        private_place_t &place = place_below(memory.empty() ? temporary_directory() : memory);
        for (auto free = unused.begin(); free != unused.end(); ++free) {
            if (free->parent_path() == place.path())
                return unused.extract(free).value();
        }
        fs::path directory = place.path() / std::to_string(++count);
        make(directory);
        return directory;
    }

    void give_back(const fs::path &directory, bool as_it_should_be) {
        if (as_it_should_be && unlink((directory / "ascii/system.cfg").c_str()) == 0) {
            unused.insert(directory);
            return;
        }
        std::error_code ignored;
        fs::remove_all(directory, ignored);
    }

  private:
    static void make(const fs::path &directory) {
        fs::create_directories(directory / "ascii");
        fs::create_directory(directory / "logs");
    }

    private_place_t &place_below(const fs::path &parent) {
        auto &place = places[parent];
        if (!place)
            place = std::make_unique<private_place_t>(parent);
        return *place;
    }

    std::map<fs::path, std::unique_ptr<private_place_t>> places; // by their parent
    std::set<fs::path> unused;
    size_t count = 0;
};

// A call, until its child has ended and the command has hung up.
struct running_t {
    call_t call;
    pid_t child = 0; // 0: it has ended
    bool exited_well = false;
};

// A packet on the control socket, and the descriptor that came with it.
struct arrival_t {
    enum { request, nothing, end } what = nothing;
    request_t asked = {};
    int socket = -1;
};

arrival_t next_arrival() {
    arrival_t arrival;
    iovec part = {&arrival.asked, sizeof arrival.asked};
    alignas(cmsghdr) char space[CMSG_SPACE(sizeof(int))];
    msghdr header = {};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    header.msg_control = space;
    header.msg_controllen = sizeof space;
    const ssize_t size = recvmsg(control_socket, &header, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
    if (size == 0 || (size < 0 && errno != EAGAIN && errno != EINTR))
        arrival.what = arrival_t::end;
    const cmsghdr *extra = size > 0 ? CMSG_FIRSTHDR(&header) : nullptr;
    if (!extra || extra->cmsg_type != SCM_RIGHTS)
        return arrival;
    memcpy(&arrival.socket, CMSG_DATA(extra), sizeof arrival.socket);
    arrival.what = arrival_t::request;
    return arrival;
}

[[noreturn]] void leave(int status) {
#ifdef INFRACONVERT_COVERAGE // keeps the counters
    exit(status);
#else
    _exit(status);
#endif
}

class server_t {
  public:
    server_t() {
        sigemptyset(&child_signal);
        sigaddset(&child_signal, SIGCHLD);
        sigprocmask(SIG_BLOCK, &child_signal, nullptr);
        children = signalfd(-1, &child_signal, SFD_CLOEXEC | SFD_NONBLOCK);
        if (children < 0)
            throw std::runtime_error(std::string("cannot watch its children: ") + strerror(errno));
    }
    server_t(const server_t &) = delete;
    server_t &operator=(const server_t &) = delete;
    ~server_t() {
        for (const running_t &running : calls)
            end(running);
        close(children);
    }

    // Until the command is gone.
    void serve() {
        for (;;) {
            const std::vector<pollfd> events = wait();
            if (events[1].revents)
                reap();
            forget_finished(events);
            if (events[0].revents) {
                const arrival_t arrival = next_arrival();
                if (arrival.what == arrival_t::end)
                    return;
                if (arrival.what == arrival_t::request)
                    begin(arrival);
            }
        }
    }

  private:
    // What happened on the control socket, to the children, and on the socket of each call.
    std::vector<pollfd> wait() const {
        std::vector<pollfd> events = {{control_socket, POLLIN, 0}, {children, POLLIN, 0}};
        for (const running_t &running : calls)
            events.push_back({running.call.socket, 0, 0}); // tells that the other end hung up
        while (poll(events.data(), events.size(), -1) < 0 && errno == EINTR)
            continue;
        return events;
    }

    void begin(const arrival_t &arrival) {
        running_t running = {{arrival.socket, arrival.asked, {}}};
        try {
            running.call.directory = directories.take(arrival.asked.text_size);
            running.child = fork_child(running.call);
        } catch (const std::exception &e) {
            send(arrival.socket, kind_t::refused, e.what());
            tell_end(running, 0);
        }
        calls.push_back(running);
    }

    pid_t fork_child(const call_t &call) const {
        const pid_t parent = getpid();
        const pid_t child = fork();
        if (child < 0)
            throw std::runtime_error(std::string("cannot start a process: ") + strerror(errno));
        if (child == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            if (getppid() != parent)
                _exit(EXIT_FAILURE);
            sigprocmask(SIG_UNBLOCK, &child_signal, nullptr);
            close(control_socket);
            close(children);
            leave(run_job(call));
        }
        return child;
    }

    void reap() {
        signalfd_siginfo ignored;
        while (read(children, &ignored, sizeof ignored) > 0)
            continue;
        int status = 0;
        for (pid_t child; (child = waitpid(-1, &status, WNOHANG)) > 0;) {
            for (running_t &running : calls) {
                if (running.child == child)
                    tell_end(running, status);
            }
        }
    }

    static void tell_end(running_t &running, int status) {
        running.child = 0;
        running.exited_well = WIFEXITED(status) && !running.call.request.wants_logs;
        send_record(running.call.socket, kind_t::child_ended, status);
    }

    static void end(const running_t &running) {
        if (running.child == 0)
            return;
        kill(running.child, SIGKILL);
        waitpid(running.child, nullptr, 0);
    }

    // The calls whose command has hung up: done, or given up because of a signal or a time limit.
    void forget_finished(const std::vector<pollfd> &events) {
        auto event = events.begin() + 2;
        for (auto running = calls.begin(); running != calls.end(); ++event) {
            if (!(event->revents & (POLLHUP | POLLERR))) {
                ++running;
                continue;
            }
            end(*running);
            close(running->call.socket);
            if (!running->call.directory.empty())
                directories.give_back(running->call.directory, running->exited_well);
            running = calls.erase(running);
        }
    }

    sigset_t child_signal;
    int children = -1; // tells of their ends
    directories_t directories;
    std::list<running_t> calls;
};

// The command ends these calls; a key that interrupts it reaches this process as well.
void ignore_interruptions() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE})
        ::signal(signal, SIG_IGN);
}

// What the library prints, it prints for nobody.
void silence() {
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(nothing, stream);
    close(nothing);
}

int run() {
    struct stat status;
    if (fstat(control_socket, &status) != 0 || !S_ISSOCK(status.st_mode)) {
        fprintf(stderr, "infraconvert-run: is started by infraconvert only\n");
        return EXIT_FAILURE;
    }
    ignore_interruptions();
    silence();
    umask(077);
    tzset(); // once for all children
    remove_left_places();
    server_t().serve();
    return EXIT_SUCCESS;
}

} // namespace
} // namespace runner

int main() try { return runner::run(); } catch (const std::exception &) {
    return EXIT_FAILURE; // the command tells how this process ended
}
