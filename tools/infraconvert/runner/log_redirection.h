// Sends what the library writes below /mnt/pss/ and /bootflash/ to a directory of the caller's.
#pragma once

#include <string>

// From now on every fopen of this process, the library's included, of a file below those
// directories opens the file of the same name in `directory` instead; with an empty `directory`,
// one that keeps nothing.
void redirect_logs_to(const std::string &directory);
