// Puts "switchport mode fex-fabric" ahead of "fex associate" in every interface that has them the
// other way round, on the way up across 5.0(3).

#include "satmgr/satcnv_converter.h"

#include "engine/length.h"
#include "include/libinfraconvertascii.h"
#include "satmgr/satcnv_engine.h"

#include <algorithm>

using engine::length;
using engine::nowhere;
using engine::position_t;

namespace {

constexpr std::string_view interface_word = "interface ";
constexpr std::string_view fex_line = "fex associate";
constexpr std::string_view switchport_line = "switchport mode fex-fabric";

constexpr uint32_t line_copy_size = 63; // with the newline
constexpr uint32_t indentation = 2;     // of a line of an interface

position_t satcnv_file_end_offset() { return satcnv_engine.text->size(); }

// The line at `from`, up to a newline or an end marker, at most `size` - 1 bytes, and a newline.
std::string satcnv_getline(position_t from, uint32_t size) {
    std::string line = satcnv_engine.text->copy(from, size - 1);
    const auto ends_line = [](char c) { return c == '\n' || c == engine::end_marker; };
    line.erase(std::find_if(line.begin(), line.end(), ends_line), line.end());
    return line + '\n';
}

// True when a copy of the line at `from` would be cut, or would end at a zero byte.
bool does_not_fit(position_t from) {
    const std::string line = satcnv_getline(from, line_copy_size + 1);
    return line.size() > line_copy_size || line.find('\0') != line.npos;
}

// Swaps the fex line at `fex` and the switchport line at `switchport` behind it. Positions are
// those of the keywords, so the indentations stay where they are.
syserr_t swap_lines(const char *pass, position_t fex, position_t switchport) {
    const std::string fex_copy = satcnv_getline(fex, line_copy_size);
    const std::string switchport_copy = satcnv_getline(switchport, line_copy_size);
    engine::log(satcnv_engine, pass, "str :%s\nstr1 :%s\n", fex_copy.c_str(),
                switchport_copy.c_str());
    satcnv_delete_text(fex, length(fex_copy));
    satcnv_delete_text(switchport - length(fex_copy), length(switchport_copy));
    const position_t behind_switchport = fex + length(switchport_copy) + indentation;
    const bool inserted =
        satcnv_insert_text(fex, switchport_copy) && satcnv_insert_text(behind_switchport, fex_copy);
    return inserted ? 0 : engine::failure;
}

// Handles the interface whose text is [start, end).
syserr_t order_interface(const char *pass, position_t start, position_t end) {
    const position_t fex = satcnv_find(fex_line, start, end);
    const position_t switchport = satcnv_find(switchport_line, start, end);
    if (fex == nowhere || switchport == nowhere)
        return 0;
    engine::log(satcnv_engine, pass, "found fex entry %d switchport mode %d bytes\n",
                static_cast<int>(fex), static_cast<int>(switchport));
    if (fex >= switchport)
        return 0;
    if (does_not_fit(fex) || does_not_fit(switchport)) {
        engine::log(satcnv_engine, pass, "line too long; interface left unchanged\n");
        return 0;
    }
    engine::log(satcnv_engine, pass, "interchange fex associate and switchport mode\n");
    return swap_lines(pass, fex, switchport);
}

syserr_t satcnv_swap_switchport_mode() {
    satcnv_log("%s: entered\n", __func__);
    position_t found = satcnv_find(interface_word, 0);
    while (found != nowhere) {
        const position_t start = found + 1;
        const position_t next = satcnv_find(interface_word, start);
        const position_t end = next == nowhere ? satcnv_file_end_offset() : next;
        if (order_interface(__func__, start, end) != 0)
            return engine::failure;
        found = satcnv_find(interface_word, start);
    }
    return 0;
}

constexpr engine::rule_t rules[] = {
    {.id = "IC-FEX-01",
     .plain_words = "puts \"switchport mode fex-fabric\" ahead of \"fex associate\" in every "
                    "interface",
     .applies = satcnv_swithport_swap_needed,
     .pipeline = satcnv_swap_switchport_mode},
};

} // namespace

constinit const engine::conversion_t satcnv_conversion = {
    .engine = satcnv_engine,
    .start_function = "satmgr_infra_convert_startup",
    .invoked = "satmgr convert_startup invoked",
    .same_release = satcnv_ver_same,
    .same_release_message = "from and to versions are exactly the same; no conversion required",
    .routing_function = "satmgr_convert_ascii_btw_diff_versions",
    .rules = rules,
};

syserr_t satmgr_infra_convert_startup(const char *path, const char *pkg_name,
                                      const char *to_pkg_version, const char *from_pkg_version) {
    return engine::convert(satcnv_conversion, {path, pkg_name, to_pkg_version, from_pkg_version});
}
