#include "commands/progress.h"

#include "base/messages.h"

#include <string>
#include <unistd.h>

namespace infraconvert {

namespace {

constexpr std::chrono::milliseconds quiet{500}, between{100};

} // namespace

progress_t::progress_t(size_t number)
    : total(number), shows(number > 1 && isatty(STDERR_FILENO)), next(clock_t::now() + quiet) {}

void progress_t::step() {
    constexpr size_t width = 40;
    done++;
    if (!shows || clock_t::now() < next)
        return;
    next = clock_t::now() + between;
    const size_t filled = done * width / total;
    draw("\r[" + std::string(filled, '#') + std::string(width - filled, '.') + "] " +
         std::to_string(done) + '/' + std::to_string(total));
    drawn = true;
}

void progress_t::clear() {
    if (drawn)
        draw("\r\x1b[K");
    drawn = false;
}

} // namespace infraconvert
