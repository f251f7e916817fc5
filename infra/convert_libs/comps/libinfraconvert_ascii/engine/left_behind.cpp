#include "engine/left_behind.h"

#include "engine/file.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace engine {

namespace {

constexpr size_t random_digits = 16;
constexpr size_t longest_kept_name = 200; // of the 255 bytes of a name

std::string stem_of(const std::string &target_name) {
    return '.' + target_name.substr(0, longest_kept_name) + ".infraconvert-";
}

bool is_name_beside(std::string_view name, const std::string &stem) {
    return name.size() == stem.size() + random_digits && name.starts_with(stem) &&
           std::all_of(name.begin() + static_cast<std::ptrdiff_t>(stem.size()), name.end(),
                       [](unsigned char c) { return std::isxdigit(c); });
}

// The clock is what is left on a system that cannot give random bytes yet; the file is made only
// where the name is free.
unsigned long long random_number() {
    unsigned long long number = 0;
    if (getrandom(&number, sizeof number, GRND_NONBLOCK) == sizeof number)
        return number;
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<unsigned long long>(now.tv_sec) * 1'000'000'000u +
           static_cast<unsigned long long>(now.tv_nsec) * 4096u +
           static_cast<unsigned long long>(getpid());
}

// A second name may be what somebody saved the file by.
bool is_left_behind(const file_t &file, uid_t target_owner) {
    struct stat status;
    return file.is_open() && fstat(file.descriptor(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_nlink == 1 && (status.st_uid == geteuid() || status.st_uid == target_owner) &&
           lock(file.descriptor());
}

} // namespace

std::string name_beside(const std::string &target_name) {
    char digits[random_digits + 1];
    snprintf(digits, sizeof digits, "%016llx", random_number());
    return stem_of(target_name) + digits;
}

void remove_left_behind(int directory, const std::string &target_name, uid_t target_owner) {
    file_t list = open_at(directory, ".", O_RDONLY | O_DIRECTORY);
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(fdopendir(list.descriptor()), closedir);
    if (!entries)
        return;
    list.release();
    const std::string stem = stem_of(target_name);
    while (const dirent *entry = readdir(entries.get())) {
        if (!is_name_beside(entry->d_name, stem))
            continue;
        const file_t file =
            open_at(directory, entry->d_name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
        if (is_left_behind(file, target_owner))
            unlinkat(directory, entry->d_name, 0);
    }
}

} // namespace engine
