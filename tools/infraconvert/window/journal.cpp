#include "window/journal.h"

#include "base/clock.h"
#include "base/errors.h"
#include "base/exact_text.h"
#include "base/files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

constexpr const char *deed_names[] = {"begin", "converted", "undoing", "undone"};

deed_t deed_named(const std::string &name) {
    const auto *found = std::find(std::begin(deed_names), std::end(deed_names), name);
    if (found == std::end(deed_names))
        throw input_error_t("nothing that could be done is called " + quoted_name(name));
    return static_cast<deed_t>(found - std::begin(deed_names));
}

std::string line_of(deed_t deed, const planned_t &planned) {
    json entry = {{"time", now()},
                  {"what", deed_names[static_cast<size_t>(deed)]},
                  {"path", planned.path},
                  {"input", planned.input_digest},
                  {"result", planned.result_digest}};
    add_exact_bytes(entry);
    return dumped(entry) + '\n';
}

} // namespace

void last_deeds_t::read_line(const std::string &line) {
    const json entry = json::parse(line);
    by_path.insert_or_assign(exact_bytes(entry, "path"),
                             last_t{deed_named(entry.at("what")), entry.at("result")});
}

last_deeds_t::last_deeds_t(const plan_folder_t &folder) {
    read_file_of(folder);
    // The first original is kept behind the first line.
    if (whole_size == 0 && folder.keeps_originals())
        throw input_error_t(
            quoted_name(folder.journal()) +
            " has no line, but originals are kept beside it, so what was done "
            "before cannot be told; put the journal back, or the originals by hand");
}

void last_deeds_t::read_file_of(const plan_folder_t &folder) {
    const std::string file = folder.journal();
    std::error_code ignored;
    if (!std::filesystem::exists(std::filesystem::symlink_status(file, ignored)))
        return;
    const std::string text = read_file(file);
    size_t number = 0, from = 0;
    for (size_t end; (end = text.find('\n', from)) != text.npos; from = end + 1) {
        number++;
        try {
            read_line(text.substr(from, end - from));
        } catch (const std::exception &) {
            throw input_error_t(quoted_name(file) + ": line " + std::to_string(number) +
                                " is not one of a journal; nothing is done, because what was done "
                                "before cannot be told");
        }
    }
    whole_size = static_cast<off_t>(from);
}

bool last_deeds_t::stands(const planned_t &planned) const {
    const auto last = by_path.find(planned.path);
    return last != by_path.end() && last->second.deed != deed_t::undone &&
           last->second.result_digest == planned.result_digest;
}

bool last_deeds_t::is_open(const planned_t &planned) const {
    return stands(planned) && by_path.at(planned.path).deed != deed_t::converted;
}

size_t last_deeds_t::standing() const {
    return static_cast<size_t>(std::count_if(by_path.begin(), by_path.end(), [](const auto &last) {
        return last.second.deed != deed_t::undone;
    }));
}

journal_t::journal_t(const plan_folder_t &folder)
    : file(folder.journal()),
      opened(engine::open_at(AT_FDCWD, file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW,
                             S_IRUSR | S_IWUSR)) {
    if (!opened.is_open())
        throw run_error_t("cannot open " + quoted_name(file) + ": " + strerror(errno));
    if (!engine::lock(opened.descriptor()) && errno == EWOULDBLOCK)
        throw run_error_t("another run is at work with " + quoted_name(folder.plan()) +
                          "; this one changes nothing (infraconvert preview --plan tells where the "
                          "window stands)");
    deeds = std::make_unique<last_deeds_t>(folder);
    if (ftruncate(opened.descriptor(), deeds->size()) != 0)
        throw run_error_t("cannot write " + quoted_name(file) + ": " + strerror(errno));
}

// What is left of a line that found no room is taken back, so that the next one stands by itself.
void journal_t::add(deed_t deed, const planned_t &planned) {
    const std::string line = line_of(deed, planned);
    const std::lock_guard guard(lock);
    struct stat before;
    if (fstat(opened.descriptor(), &before) == 0 && engine::write_all(opened.descriptor(), line) &&
        engine::sync(opened.descriptor()))
        return;
    const int error = errno;
    if (ftruncate(opened.descriptor(), before.st_size) != 0)
        errno = error;
    throw run_error_t("cannot write " + quoted_name(file) + ": " + strerror(error));
}

} // namespace infraconvert
