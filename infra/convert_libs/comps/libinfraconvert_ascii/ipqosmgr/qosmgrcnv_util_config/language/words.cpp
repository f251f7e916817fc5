// Small steps that every pass takes.

#include "ipqosmgr/qosmgrcnv_util_config/language/words.h"

#include <algorithm>
#include <cstring>

using engine::area_length;

const char *qoscnv_type_words(uint8_t type) {
    return type == QOSCNV_TYPE_QUEUING ? "type queuing" : "type network-qos";
}

position qoscnv_end_of_text(position from) { return qoscnv_engine.text->end(from); }

position qoscnv_line_after(position cp) {
    const position line = qoscnv_nextline(cp);
    return line == nowhere ? qoscnv_end_of_text(cp) : line;
}

position qoscnv_stanza_after(position cp) {
    const position stanza = qoscnv_goto_nextstanza(cp);
    return stanza == nowhere ? qoscnv_end_of_text(cp) : stanza;
}

bool qoscnv_text_ended(position cp) { return cp >= qoscnv_end_of_text(cp); }

bool qoscnv_in_body(position cp) { return !qoscnv_text_ended(cp) && !qoscnv_nextstanza(cp); }

position qoscnv_past_empty_lines(position cp) {
    while (qoscnv_engine.text->at(cp) == '\n')
        cp++;
    return cp;
}

position qoscnv_behind_last_stanza(engine::last_hits_t &headers, size_t ending) {
    const position section = qoscnv_file_start_qossection();
    if (section == nowhere)
        return nowhere;
    const position last = headers.find(ending);
    if (last == nowhere || last <= section)
        return nowhere;
    return qoscnv_goto_nextstanza(headers.beginning.front() == '\n' ? last + newline_length : last);
}

std::string qoscnv_linebuf(position cp) { return qoscnv_getline(cp, engine::area_size); }

bool qoscnv_fits(const char *pass, std::string_view text, uint32_t most) {
    if (text.size() <= most)
        return true;
    engine::log(qoscnv_engine, pass, "Unexpected text: %s\n",
                std::string(text.substr(0, area_length)).c_str());
    return false;
}

bool qoscnv_words_fit(const char *pass, const words_t &words) {
    const std::string *too_long = words.too_long();
    return !too_long || qoscnv_fits(pass, *too_long);
}

bool qoscnv_body_line_fits(const char *pass, position cp) {
    return qoscnv_fits(pass, qoscnv_getline(cp, engine::area_size + newline_length),
                       area_length - newline_length);
}

bool qoscnv_is_class_line(std::string_view line) { return line.starts_with("  class"); }

bool qoscnv_write(const char *pass, position &at, const std::string &composed) {
    if (!qoscnv_fits(pass, composed) || !qoscnv_insert_text(at, composed))
        return false;
    at += length(composed);
    return true;
}

bool qoscnv_overwrite(const char *pass, position &at, uint32_t size, const std::string &composed) {
    if (!qoscnv_fits(pass, composed) || !engine::replace_text(qoscnv_engine, at, size, composed))
        return false;
    at += length(composed);
    return true;
}

const char *qoscnv_behind_mtu(const char *action) {
    constexpr const char *keyword = "mtu";
    const char *found = strstr(action, keyword);
    return found ? found + strlen(keyword) : nullptr;
}

std::string qoscnv_convert_mtu(const char *behind_mtu, bool upgrade) {
    constexpr int64_t shift = 38, least = 1500, most = 9216;
    const std::optional<int32_t> number = engine::scan_number(behind_mtu);
    if (!number)
        return "";
    int64_t value = *number;
    if (value != most)
        value = upgrade ? std::max(value - shift, least) : std::min(value + shift, most);
    return "    mtu " + std::to_string(value) + "\n";
}
