// What the page asks beside the verbs of the command: which of the files that it was given are
// configurations, what releases wrote them, and what there is to choose from.

#include "base/exact_text.h"
#include "base/files.h"
#include "base/messages.h"
#include "conversion/border_releases.h"
#include "conversion/services.h"
#include "conversion/version_line.h"
#include "window/configurations.h"

#include <emscripten.h>
#include <nlohmann/json.hpp>

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

// null where the configuration does not tell; whoever converts it says why not.
json release_in(const std::string &file) try {
    return release_of_version_line(*read_configuration(file));
} catch (const std::exception &) {
    return nullptr;
}

json overview(const std::vector<std::string> &paths) {
    const configurations_t found = find_configurations(paths);
    json document = {{"configurations", json::array()}, {"passed_by", found.passed_by.in_words()}};
    for (const std::string &file : found.files)
        document["configurations"].push_back({{"path", file}, {"release", release_in(file)}});
    document["border_releases"] = border_releases;
    document["services"] = json::array();
    for (const service_t &service : services())
        document["services"].push_back({{"name", service.name}, {"title", service.title}});
    return document;
}

} // namespace

} // namespace infraconvert

// Prints a JSON object about the files that the arguments name or that stand below them.
extern "C" EMSCRIPTEN_KEEPALIVE int look_around(int argc, char **argv) {
    const std::vector<std::string> paths(argv + 1, argv + argc);
    infraconvert::write_output(infraconvert::dumped(infraconvert::overview(paths)));
    return 0;
}
