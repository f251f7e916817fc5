#include "reports/parts.h"

#include "base/errors.h"
#include "base/messages.h"
#include "base/quoting.h"
#include "reports/record_json.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <tuple>

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

// The lines of a part, one at a time.
class part_t {
  public:
    explicit part_t(const std::string &part_name) : file(part_name), stream(part_name) {
        if (!stream)
            throw input_error_t(quoted_name(file) + ": " + strerror(errno));
        if (!std::filesystem::is_regular_file(file))
            throw input_error_t(quoted_name(file) +
                                " is no file, and a part is read twice; keep it in one");
    }

    // False at the end. A line without an end is one that was cut off.
    bool next() {
        if (!std::getline(stream, line))
            return false;
        number++;
        cut_off = stream.eof();
        return true;
    }

    [[noreturn]] void refuse(const std::string &why) const {
        throw input_error_t(quoted_name(file) + ", line " + std::to_string(number) + ": " + why);
    }

    [[noreturn]] void refuse_as_not_whole(size_t records) const {
        throw input_error_t(quoted_name(file) + " is not whole: it ends after " +
                            counted(records, "configuration") + "; make this part again");
    }

    template<typename read_t> auto read(read_t read_line) const {
        try {
            return read_line(json::parse(line));
        } catch (const json::exception &) {
            refuse("no line of infraconvert audit --format jsonl");
        } catch (const input_error_t &e) {
            refuse(e.what());
        }
    }

    std::string file, line;
    size_t number = 0;
    bool cut_off = false;

  private:
    std::ifstream stream;
};

bool is_end(const std::string &line) {
    return line.starts_with(std::string(R"({"kind":")") + totals_kind + '"');
}

header_t header_of(part_t &part) {
    if (!part.next())
        part.refuse_as_not_whole(0);
    return part.read(header_from);
}

// What two parts must have in common.
auto making_of(const header_t &header) {
    return std::tie(header.tool_version, header.route, header.services, header.masked,
                    header.keep_going);
}

std::string making_text(const header_t &header) {
    std::string text = "infraconvert " + header.tool_version + ", " + route_text(header.route);
    for (const std::string &service : header.services)
        text += ", " + service;
    return text + (header.keep_going ? ", past services that fail" : "") +
           (header.masked ? ", masked" : ", not masked");
}

// The name of the configuration as it stands in the line, which begins with it.
uint64_t path_in(const std::string &line) {
    return std::hash<std::string_view>{}(
        std::string_view(line).substr(0, line.find(R"(,"state":)")));
}

} // namespace

parts_t::parts_t(std::vector<std::string> part_files) : files(std::move(part_files)) {
    for (const std::string &file : files)
        look_at(file);
    whole.count = paths.size();
}

void parts_t::look_at(const std::string &file) {
    part_t part(file);
    const header_t header = header_of(part);
    if (file == files.front())
        whole = header;
    if (making_of(header) != making_of(whole))
        part.refuse("it was made otherwise than " + quoted_name(files.front()) + ": by " +
                    making_text(header) + ", and not by " + making_text(whole));
    whole.date = std::min(whole.date, header.date);
    const size_t others = paths.size();
    while (part.next() && !part.cut_off && !is_end(part.line))
        paths.push_back(path_in(part.line));
    if (part.cut_off || !is_end(part.line))
        part.refuse_as_not_whole(paths.size() - others);
    const auto [count, said] = part.read([](const json &end) {
        return std::pair<size_t, std::vector<std::string>>(end.at("count"),
                                                           end.at("idle_exceptions"));
    });
    if (count != paths.size() - others)
        part.refuse_as_not_whole(paths.size() - others);
    take_idle(said, file == files.front());
    if (part.next())
        part.refuse("more stands behind the end of the part; name each part by itself");
}

// An exception is idle when no part has met it.
void parts_t::take_idle(std::vector<std::string> said, bool is_first) {
    if (is_first)
        idle_in_all = std::move(said);
    else
        std::erase_if(idle_in_all, [&](const std::string &one) {
            return std::find(said.begin(), said.end(), one) == said.end();
        });
}

void parts_t::for_each(const std::function<void(audited_t)> &take) const {
    for (const std::string &file : files) {
        part_t part(file);
        header_of(part);
        while (part.next() && !is_end(part.line))
            take(part.read(record_from));
    }
}

std::string parts_t::repeated() const {
    std::vector<uint64_t> sorted = paths;
    std::sort(sorted.begin(), sorted.end());
    const auto unique =
        static_cast<size_t>(std::unique(sorted.begin(), sorted.end()) - sorted.begin());
    const size_t more = paths.size() - unique;
    if (more == 0)
        return "";
    return std::to_string(more) + (more == 1 ? " configuration stands" : " configurations stand") +
           " in more than one part under the same name, and counts each time; if a part was made "
           "twice, give it once";
}

} // namespace infraconvert
