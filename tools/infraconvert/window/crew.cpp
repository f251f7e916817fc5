#include "window/crew.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <sched.h>
#include <system_error>
#include <thread>

namespace infraconvert {

namespace {

using task_t = std::function<void(size_t, size_t)>;

class crew_t {
  public:
    crew_t(size_t number, size_t jobs, const task_t &m, const task_t &t)
        : count(number), slots(jobs * tasks_ahead_of_each_job), make(m), take(t), done(slots) {}

    void run(size_t jobs) {
        {
            std::vector<std::jthread> threads;
            try {
                for (size_t i = 1; i < std::min(jobs, count); i++)
                    threads.emplace_back([this] { work(); });
            } catch (const std::system_error &) { // then fewer do it
            }
            lead();
        }
        if (trouble)
            std::rethrow_exception(trouble);
    }

  private:
    using lock_t = std::unique_lock<std::mutex>;

    bool may_start() const { return next < count && next < taken + slots; }
    bool is_ready() const { return taken < count && done[taken % slots]; }

    // Runs a task without the lock; what it throws ends the work of all.
    template<typename run_t> void unlocked(lock_t &guard, run_t run) {
        guard.unlock();
        std::exception_ptr thrown;
        try {
            run();
        } catch (...) {
            thrown = std::current_exception();
        }
        guard.lock();
        if (!thrown)
            return;
        if (!trouble)
            trouble = thrown;
        next = count;
    }

    void make_next(lock_t &guard) {
        const size_t number = next++;
        unlocked(guard, [&] { make(number, number % slots); });
        done[number % slots] = true;
        changed.notify_all();
    }

    void take_next(lock_t &guard) {
        const size_t number = taken;
        unlocked(guard, [&] { take(number, number % slots); });
        done[number % slots] = false;
        taken++;
        changed.notify_all();
    }

    // A thread that only makes.
    void work() {
        lock_t guard(lock);
        while (next < count) {
            if (may_start())
                make_next(guard);
            else
                changed.wait(guard);
        }
    }

    // The thread that called: it takes what is ready, and makes while nothing is.
    void lead() {
        lock_t guard(lock);
        while (taken < count && !trouble) {
            if (is_ready())
                take_next(guard);
            else if (may_start())
                make_next(guard);
            else
                changed.wait(guard);
        }
        next = count;
        changed.notify_all();
    }

    const size_t count, slots;
    const task_t &make, &take;
    std::mutex lock;
    std::condition_variable changed;
    size_t next = 0, taken = 0;
    std::vector<bool> done; // by slot
    std::exception_ptr trouble;
};

} // namespace

size_t usual_jobs() {
    cpu_set_t processors;
    if (sched_getaffinity(0, sizeof processors, &processors) != 0)
        return 1;
    return static_cast<size_t>(std::max(1, CPU_COUNT(&processors)));
}

void share_in_order(size_t count, size_t jobs, const task_t &make, const task_t &take) {
    crew_t(count, jobs, make, take).run(jobs);
}

} // namespace infraconvert
