// What looks like a configuration is told by its lines: a folder of them also holds notes, scripts
// and reports, and none of these is a switch.

#include "window/configurations.h"

#include "base/files.h"
#include "base/lines.h"
#include "base/quoting.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace infraconvert {

namespace {

namespace fs = std::filesystem;
using why_t = passed_by_t::why_t;

constexpr size_t shown_names = 3;

struct why_words_t {
    const char *one, *many;
};
constexpr why_words_t why_words[] = {
    {"hidden entry", "hidden entries"},
    {"link to a folder", "links to folders"},
    {"backup", "backups"},
    {"file that is no configuration", "files that are no configurations"},
    {"second name of a file", "second names of files"}};

constexpr std::string_view backup_ends[] = {".bak", ".orig", ".old", ".rej", ".save", ".swp", "~"};

// A folder beside a plan, with the originals of its window.
constexpr std::string_view private_end = ".private";

// How lines begin that are in every saved configuration.
constexpr std::string_view first_words[] = {
    "aaa ",           "banner ",      "boot ",           "class-map ",  "control-plane",
    "fc-port-secur",  "fcoe ",        "feature ",        "fex ",        "hostname ",
    "interface ",     "ip route ",    "line ",           "logging ",    "mac address-table",
    "mac-address-",   "no feature ",  "npiv enable",     "ntp server ", "policy-map ",
    "port-security",  "snmp-server ", "switchname ",     "system ",     "username ",
    "vlan ",          "vsan ",        "vrf context ",    "zone ",       "ip access-list",
    "spanning-tree ", "fcdomain ",    "ip domain-lookup"};

bool is_link(const fs::path &file) {
    std::error_code ignored;
    return fs::is_symlink(fs::symlink_status(file, ignored));
}

bool is_backup(const std::string &name) {
    return std::any_of(std::begin(backup_ends), std::end(backup_ends),
                       [&](std::string_view end) { return name.ends_with(end); });
}

bool begins_like_a_configuration(std::string_view line) {
    constexpr std::string_view version = "version "; // of a release, which begins with a digit
    if (line.starts_with(version) && line.size() > version.size())
        return std::isdigit(static_cast<unsigned char>(line[version.size()])) != 0;
    return std::any_of(std::begin(first_words), std::end(first_words),
                       [&](std::string_view words) { return line.starts_with(words); });
}

// Prose may begin a line with such a word too; a configuration names its features early, and has
// nothing above them but comments. An empty file may be a switch whose backup went wrong.
bool may_be_a_configuration(const fs::path &file) {
    constexpr size_t looked_at = size_t{256} * 1024; // bytes: what is no text may have no lines
    std::ifstream stream(file, std::ios::binary);
    std::string beginning(looked_at, '\0');
    stream.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
    beginning.resize(static_cast<size_t>(stream.gcount()));
    if (beginning.empty())
        return true;
    const lines_t lines = split_lines(beginning);
    return std::any_of(lines.begin(), lines.end(), begins_like_a_configuration);
}

class finder_t {
  public:
    void add(const std::string &path) {
        std::error_code ignored;
        const bool folder = path != standard_stream && fs::is_directory(path, ignored);
        if (folder && !fs::exists(fs::path(path) / configuration_in_directory, ignored))
            add_below(path);
        else
            take(configuration_file(path));
    }

    // A file goes by a name of its own rather than by that of a link which was come upon.
    configurations_t result() && {
        std::set<identity_t> with_name, seen;
        for (const name_t &name : names) {
            if (name.identity && !name.by_link)
                with_name.insert(*name.identity);
        }
        for (const name_t &name : names) {
            const bool first =
                !name.identity || ((!name.by_link || !with_name.contains(*name.identity)) &&
                                   seen.insert(*name.identity).second);
            if (first)
                found.files.push_back(name.file);
            else
                found.passed_by.add(why_t::repeated, name.file);
        }
        return std::move(found);
    }

  private:
    using identity_t = std::pair<dev_t, ino_t>;
    struct name_t {
        std::string file;
        bool by_link;                       // found in a folder
        std::optional<identity_t> identity; // of what can be looked at
    };

    void take(const std::string &file, bool by_link = false) {
        struct stat status = {};
        std::optional<identity_t> identity;
        if (file == standard_stream)
            identity = identity_t{}; // of no file
        else if (stat(file.c_str(), &status) == 0)
            identity = {status.st_dev, status.st_ino};
        names.push_back({file, by_link, identity});
    }

    void add_below(const fs::path &folder) {
        std::error_code error;
        std::vector<fs::path> entries;
        auto entry = fs::directory_iterator(folder, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error))
            entries.push_back(entry->path());
        if (error)
            names.push_back({folder, false, {}}); // reading it tells why not
        std::sort(entries.begin(), entries.end());
        for (const fs::path &each : entries)
            look_at(each);
    }

    void look_at(const fs::path &entry) {
        const std::string name = entry.filename().string();
        std::error_code error;
        const fs::file_type type = fs::status(entry, error).type();
        const bool folder = type == fs::file_type::directory;
        if (name.starts_with(".") || (folder && name.ends_with(private_end)))
            found.passed_by.add(why_t::hidden, entry);
        else if (folder && is_link(entry))
            found.passed_by.add(why_t::link, entry); // it may lead out of the folder, or round
        else if (folder)
            add_below(entry);
        else
            look_at_file(entry, type);
    }

    void look_at_file(const fs::path &file, fs::file_type type) {
        const bool readable = type != fs::file_type::none && type != fs::file_type::not_found &&
                              type != fs::file_type::unknown;
        if (is_backup(file.filename().string()))
            found.passed_by.add(why_t::backup, file);
        else if (readable && (type != fs::file_type::regular || !may_be_a_configuration(file)))
            found.passed_by.add(why_t::no_configuration, file);
        else
            take(file, is_link(file));
    }

    configurations_t found;
    std::vector<name_t> names;
};

} // namespace

void passed_by_t::add(why_t why, const std::string &name) {
    passed_t &those = passed[why];
    those.count++;
    if (those.examples.size() < shown_names)
        those.examples.push_back(quoted_name(name));
}

std::string passed_by_t::in_words() const {
    std::string text;
    for (const auto &[why, those] : passed) {
        const why_words_t &words = why_words[static_cast<size_t>(why)];
        text += (text.empty() ? "" : "; ") + std::to_string(those.count) + ' ' +
                (those.count == 1 ? words.one : words.many) + " (";
        for (size_t i = 0; i < those.examples.size(); i++)
            text += (i > 0 ? ", " : "") + those.examples[i];
        text += those.count > those.examples.size() ? ", ...)" : ")";
    }
    return text;
}

configurations_t find_configurations(const std::vector<std::string> &paths) {
    finder_t finder;
    for (const std::string &path : paths)
        finder.add(path);
    return std::move(finder).result();
}

std::vector<std::string> listed_paths(const std::string &list) {
    const std::string text = read_file(list == standard_stream ? "/dev/stdin" : list);
    const char separator = text.find('\0') == text.npos ? '\n' : '\0';
    std::vector<std::string> paths;
    for (size_t from = 0; from < text.size();) {
        const size_t end = std::min(text.find(separator, from), text.size());
        std::string path = text.substr(from, end - from);
        if (separator == '\n' && path.ends_with('\r'))
            path.pop_back();
        if (!path.empty())
            paths.push_back(std::move(path));
        from = end + 1;
    }
    return paths;
}

} // namespace infraconvert
