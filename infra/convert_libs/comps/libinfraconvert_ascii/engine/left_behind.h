// The names of the files that stand beside a target until they replace it, and what is to be done
// about those whose writer was killed.
#pragma once

#include <string>
#include <sys/types.h>

namespace engine {

// A name that nobody can guess, ".NAME.infraconvert-" and 16 hexadecimal digits. A long NAME is
// cut, so that the whole is no longer than a name may be.
std::string name_beside(const std::string &target_name);

// Removes from the directory what former writers of the target left behind: files with such names
// that nobody holds a lock on, of the caller or of `target_owner`. Whatever hinders it is no reason
// not to go on.
void remove_left_behind(int directory, const std::string &target_name, uid_t target_owner);

} // namespace engine
