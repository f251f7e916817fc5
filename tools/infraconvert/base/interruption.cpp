// A handler ends the process itself instead of leaving a note: whatever the command does or waits
// for then, it ends at once. So that nothing half done is left, those who write files hold the
// signals off. `holders` counts them, and is `ending` from the moment that a signal has won: nobody
// begins to write after that.

#include "base/interruption.h"

#include <atomic>
#include <csignal>
#include <cstring>
#include <unistd.h>

namespace infraconvert {

namespace {

constexpr int ending = -1;

std::atomic<int> holders = 0;
std::atomic<int> waiting_signal = 0; // that came while somebody held it off
std::atomic<void (*)()> last_steps[2] = {};
std::atomic<const char *> last_words = nullptr;

static_assert(std::atomic<int>::is_always_lock_free); // or a handler could not use it

[[noreturn]] void end_by(int signal) {
    const char *words = last_words;
    if (words && write(STDERR_FILENO, words, strlen(words)) < 0)
        last_words = nullptr; // nobody listens
    for (const auto &last : last_steps) {
        if (const auto step = last.load())
            step();
    }
    ::signal(signal, SIG_DFL);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    raise(signal);
    pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    _exit(128 + signal); // what the signal's own end looks like to a shell
}

// The note comes first: either the last holder sees it when he lets go, or nobody holds any more.
void end_unless_held() {
    const int signal = waiting_signal;
    int nobody = 0;
    if (signal != 0 && holders.compare_exchange_strong(nobody, ending))
        end_by(signal);
}

void handle(int signal) {
    waiting_signal = signal;
    end_unless_held();
}

} // namespace

void handle_interruptions() {
    constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP};
    struct sigaction action = {};
    action.sa_handler = handle;
    action.sa_flags = SA_RESTART;
    sigfillset(&action.sa_mask);
    for (const int signal : signals) {
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

void before_ending(void (*step)()) {
    for (auto &last : last_steps) {
        void (*there)() = nullptr;
        if (last.compare_exchange_strong(there, step) || there == step)
            return;
    }
}

void say_when_ending(const char *words) { last_words = words; }

uninterrupted_t::uninterrupted_t(bool really) : holds(really) {
    for (int count = holders; holds;) {
        if (count == ending)
            pause();
        else if (holders.compare_exchange_weak(count, count + 1))
            return;
    }
}

uninterrupted_t::~uninterrupted_t() {
    if (!holds)
        return;
    holders--;
    end_unless_held();
}

void uninterrupted_t::last_call() {
    if (waiting_signal != 0)
        throw interrupted_t{};
}

void uninterrupted_t::committed() { holders++; } // for good

} // namespace infraconvert
