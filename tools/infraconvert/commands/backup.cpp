// A hard link would be simpler, but a file with a second link is not replaced by the safe save: it
// is written in place, and the backup with it.

#include "commands/backup.h"

#include "base/errors.h"
#include "base/files.h"
#include "base/outputs.h"
#include "base/quoting.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace infraconvert {

namespace {

bool exists(const std::string &path) {
    struct stat ignored;
    return lstat(path.c_str(), &ignored) == 0;
}

// A link is another file's name, which may come to hold something else.
bool keeps(const std::string &backup, std::string_view original) {
    const engine::file_t file =
        engine::open_at(AT_FDCWD, backup.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    struct stat status;
    return file.is_open() && fstat(file.descriptor(), &status) == 0 && S_ISREG(status.st_mode) &&
           holds(file.descriptor(), original);
}

} // namespace

void refuse_other_backup(const std::string &backup, std::string_view original) {
    if (exists(backup) && !keeps(backup, original))
        throw usage_error_t("the backup " + quoted_name(backup) +
                            " exists already; move it away or choose another --backup=SUFFIX");
}

void make_backup(int file, std::string_view bytes, const std::string &backup) {
    if (keeps(backup, bytes))
        return;
    write_whole(backup, bytes,
                {.rights = engine::replace_rules_t::rights_t::of_source,
                 .source = file,
                 .keeps_times = true,
                 .must_be_new = true,
                 .follows_link = false});
}

} // namespace infraconvert
