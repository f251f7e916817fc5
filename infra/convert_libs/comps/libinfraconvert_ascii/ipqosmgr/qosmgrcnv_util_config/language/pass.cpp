#include "ipqosmgr/qosmgrcnv_util_config/language/pass.h"

#include "engine/log_list.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/keywords.h"

#include <cerrno>
#include <cstring>

using engine::area_length;

void qoscnv_pass_t::log(const char *format, ...) const {
    va_list arguments;
    va_start(arguments, format);
    engine::log_list(qoscnv_engine, name, format, arguments);
    va_end(arguments);
}

bool qoscnv_pass_t::give_up(const char *message) const {
    log("%s\n", message);
    return false;
}

bool qoscnv_pass_t::no_memory_for(const char *what) const {
    log("could not allocate memory for %s: %s\n", what, strerror(errno));
    return false;
}

bool qoscnv_pass_t::fits(std::string_view text, uint32_t most) const {
    if (text.size() <= most)
        return true;
    log("Unexpected text: %s\n", std::string(text.substr(0, area_length)).c_str());
    return false;
}

bool qoscnv_pass_t::fits(const engine::words_t &words) const {
    if (const std::string *too_long = words.too_long())
        return fits(*too_long);
    return true;
}

bool qoscnv_pass_t::body_line_fits(engine::position_t cp) const {
    return fits(qoscnv_getline(cp, engine::area_size + newline_length),
                area_length - newline_length);
}

bool qoscnv_pass_t::write(engine::position_t &at, const std::string &composed) const {
    if (!fits(composed) || !qoscnv_insert_text(at, composed))
        return false;
    at += engine::length(composed);
    return true;
}

bool qoscnv_pass_t::overwrite(engine::position_t &at, uint32_t size,
                              const std::string &composed) const {
    if (!fits(composed) || !engine::replace_text(qoscnv_engine, at, size, composed))
        return false;
    at += engine::length(composed);
    return true;
}
