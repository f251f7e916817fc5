#include "support/golden.h"

#include "support/converter_process.h"

#include <algorithm>

namespace support {

namespace fs = std::filesystem;

bool golden_t::fails() const { return fs::exists(folder / "fails"); }

bool golden_t::is_trap() const { return folder.filename().string().starts_with("trap-"); }

std::string golden_t::before() const { return read_file(folder / "in.cfg"); }

std::string golden_t::after() const {
    return fs::exists(folder / "out.cfg") ? read_file(folder / "out.cfg") : before();
}

std::vector<golden_t> golden_cases() {
    std::vector<golden_t> cases;
    for (const auto &entry : fs::recursive_directory_iterator(GOLDEN_DIRECTORY)) {
        if (entry.path().filename() != "in.cfg")
            continue;
        const fs::path folder = entry.path().parent_path(), pair = folder.parent_path();
        const std::string releases = pair.filename();
        const size_t middle = releases.find("__");
        cases.push_back({folder, pair.parent_path().filename(), releases.substr(0, middle),
                         releases.substr(middle + 2)});
    }
    std::sort(cases.begin(), cases.end(),
              [](const golden_t &a, const golden_t &b) { return a.folder < b.folder; });
    return cases;
}

} // namespace support
