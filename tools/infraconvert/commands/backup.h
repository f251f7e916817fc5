// A second file that keeps what a file was before its conversion.
#pragma once

#include <string>
#include <string_view>

namespace infraconvert {

// Throws usage_error when `backup` exists: an earlier backup may be the only copy of an original.
void refuse_existing_backup(const std::string &backup);

// Makes `backup`, which must not exist, with `bytes` and with the owner, mode, access list,
// extended attributes and times of `file`. Where the owner cannot be given, the backup is for its
// own owner alone. It is on stable storage on return. Throws run_error; no `backup` is left then.
void make_backup(const std::string &file, std::string_view bytes, const std::string &backup);

} // namespace infraconvert
