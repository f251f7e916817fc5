// A second file that keeps what a file was before its conversion.
#pragma once

#include <string>
#include <string_view>

namespace infraconvert {

// Throws usage_error_t when `backup` exists and is not a file with `original`: an earlier backup
// may be the only copy of another original. With the same bytes it is as good as a new one, such as
// after a conversion that failed later.
void refuse_other_backup(const std::string &backup, std::string_view original);

// Makes `backup` with `bytes` and with the owner, mode, access list, extended attributes and times
// of the open file `file`, unless it exists with the same bytes. Where the owner cannot be given,
// it is for its own owner alone. It is whole and on stable storage on return. Throws run_error_t,
// or usage_error_t where there can be no such file.
void make_backup(int file, std::string_view bytes, const std::string &backup);

} // namespace infraconvert
