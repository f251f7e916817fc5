// What every pass of the QoS pipelines does: log under its own name, also from the functions that
// it is made of, refuse what does not fit, and write what it composed.
#pragma once

#include "ipqosmgr/qosmgrcnv_engine.h"

#include <string>
#include <string_view>

struct qoscnv_pass_t {
    const char *name;

    [[gnu::format(printf, 2, 3)]] void log(const char *format, ...) const;
    // Logs `message`, and a newline. Returns false.
    bool give_up(const char *message) const;
    // The same where there was no memory for `what`; errno tells why.
    bool no_memory_for(const char *what) const;

    // Refuses a text of more than `most` characters: logs "Unexpected text: %s\n" with its first
    // 199 and returns false.
    bool fits(std::string_view text, uint32_t most = engine::area_length) const;
    // The same for the words of a scan.
    bool fits(const engine::words_t &words) const;
    // The same for the body line at `cp`, which must fit with its newline.
    bool body_line_fits(engine::position_t cp) const;

    // Inserts a composed text at `at`, which moves behind it. Returns false, with a message, when
    // the text does not fit its area or the insertion was refused.
    [[nodiscard]] bool write(engine::position_t &at, const std::string &composed) const;
    // The same in the place of the `size` bytes at `at`, which hold no zero byte.
    [[nodiscard]] bool overwrite(engine::position_t &at, uint32_t size,
                                 const std::string &composed) const;
};
