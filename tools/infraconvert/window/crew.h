// Several threads that share a number of tasks, whose results come in order.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace infraconvert {

// As many threads as the machine has processors for this process.
size_t usual_jobs();

// How far ahead of the oldest task that is not done yet others may be: enough that a slow one does
// not keep the others waiting, and little enough that their results need no memory to speak of.
constexpr size_t tasks_ahead_of_each_job = 16;

// Calls `make` with each number below `count`, in `jobs` threads at most, and `take` with each
// number in order, in the thread that called. Both are given a slot, a number below
// `jobs * tasks_ahead_of_each_job` that is nobody else's until the number is taken. Where a thread
// cannot be started, those that could do its work. What is thrown by either ends the work, after
// the tasks at hand, and is thrown again.
void share_in_order(size_t count, size_t jobs, const std::function<void(size_t, size_t)> &make,
                    const std::function<void(size_t, size_t)> &take);

// The same for tasks that make something, which is handed over as it comes.
template<typename result_t>
void make_in_order(size_t count, size_t jobs, const std::function<result_t(size_t)> &make,
                   const std::function<void(size_t, result_t)> &take) {
    std::vector<std::optional<result_t>> slots(jobs * tasks_ahead_of_each_job);
    share_in_order(
        count, jobs, [&](size_t number, size_t slot) { slots[slot] = make(number); },
        [&](size_t number, size_t slot) {
            result_t result = std::move(*slots[slot]);
            slots[slot].reset();
            take(number, std::move(result));
        });
}

} // namespace infraconvert
