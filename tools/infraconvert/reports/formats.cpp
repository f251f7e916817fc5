#include "reports/formats.h"

namespace infraconvert {

namespace {

constexpr format_t all_formats[] = {
    {"text", text_writer},   {"json", json_writer},     {"jsonl", jsonl_writer},
    {"sarif", sarif_writer}, {"junit", junit_writer},   {"codequality", codequality_writer},
    {"html", page_writer},   {"accept", accept_writer},
};

} // namespace

std::span<const format_t> formats() { return all_formats; }

std::string format_names() {
    std::string text;
    const size_t count = formats().size();
    for (size_t i = 0; i < count; i++)
        text += (i == 0 ? "" : i + 1 < count ? ", " : " or ") + std::string(formats()[i].name);
    return text;
}

std::unique_ptr<writer_t> writer_named(const std::string &name, output_t out) {
    for (const format_t &format : formats()) {
        if (format.name == name)
            return format.make(std::move(out));
    }
    return nullptr;
}

} // namespace infraconvert
