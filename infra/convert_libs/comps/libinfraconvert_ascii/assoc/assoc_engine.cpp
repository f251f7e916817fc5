#include "assoc/assoc_engine.h"

static FILE *log_fp = nullptr;

constinit engine::engine_t assoc_engine = {
    .prefix = "assoc",
    .log_path = "/bootflash/assoc_ascii_cnv.log",
    .log_mode = "w+",
    .log_stream = &log_fp,
    .log_names_function = false,
    .capacity_factor = 1,
    .capacity_extra = 76000,
    .traces_size = true,
    .traces_release = true,
    .dump = engine::dump_t::log,
};

void assoc_log_init() { engine::log_init(assoc_engine); }
void assoc_log_cleanup() { engine::log_cleanup(assoc_engine); }
syserr_t assoc_read_ascii_file(const char *path) {
    return engine::read_ascii_file(assoc_engine, path);
}

void assoc_delete_text(engine::position_t from, uint32_t size) {
    engine::delete_text(assoc_engine, from, size);
}
bool assoc_insert_text(engine::position_t from, std::string_view text) {
    return engine::insert_text(assoc_engine, from, text);
}

engine::position_t assoc_find(std::string_view wanted, engine::position_t from) {
    return engine::find(assoc_engine, wanted, from);
}

assoc_line_t assoc_getline(engine::position_t from) {
    constexpr uint32_t longest_line = 2047;
    const engine::text_t &text = *assoc_engine.text;
    engine::position_t start = from;
    while (text.at(start) == '\n')
        start++;
    if (text.at(start) == '\0')
        return {.text = "", .newlines_in_front = start - from, .length = 0, .found = false};
    std::string line = text.line(start, longest_line);
    // A zero byte ends what is shown of the line, not the line.
    while (start + line.size() <= text.size() && line.size() < longest_line) {
        const char c = text.at(start + static_cast<uint32_t>(line.size()));
        if (c == '\n')
            break;
        line += c;
    }
    return {.text = line.c_str(),
            .newlines_in_front = start - from,
            .length = static_cast<uint32_t>(line.size()),
            .found = true};
}

bool assoc_ver_from_4_1_to_5() {
    return assoc_engine.from.major == 4 && assoc_engine.from.minor == 1 &&
           assoc_engine.to.major == 5;
}

bool assoc_conversion_needed(const char *from_ver, const char *to_ver) {
    if (!from_ver || !to_ver)
        return false;
    assoc_log("to_ver = %s, from_ver = %s\n", to_ver, from_ver);
    assoc_engine.from = assoc_engine.to = {};
    engine::read_release(assoc_engine.from, engine::release_format_t::k_train, from_ver);
    engine::read_release(assoc_engine.to, engine::release_format_t::k_train, to_ver);
    assoc_log("from_major = %d, from_minor = %d, to_major = %d, to_minor = %d\n",
              assoc_engine.from.major, assoc_engine.from.minor, assoc_engine.to.major,
              assoc_engine.to.minor);
    return assoc_ver_from_4_1_to_5();
}
