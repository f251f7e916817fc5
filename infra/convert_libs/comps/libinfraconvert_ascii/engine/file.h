// Open files, and the system calls on them: every result is looked at, an interrupted call is made
// again. Functions that return bool leave the reason in errno.
#pragma once

#include <cerrno>
#include <string_view>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace engine {

// An open file that is closed with its owner.
class file_t {
  public:
    file_t() = default;
    explicit file_t(int opened) : number(opened) {} // owns it from now on; below 0: not open
    file_t(file_t &&other) noexcept : number(std::exchange(other.number, -1)) {}
    file_t &operator=(file_t &&other) noexcept {
        std::swap(number, other.number);
        return *this;
    }
    ~file_t() { close(); }

    bool is_open() const { return number >= 0; }
    int descriptor() const { return number; }
    bool close(); // false when the system reports an error only now
    int release() { return std::exchange(number, -1); } // to another owner

  private:
    int number = -1;
};

// Calls until the call was not interrupted.
template<class Call> auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

// `directory` may be AT_FDCWD. The file is closed in programs that this one starts.
file_t open_at(int directory, const char *name, int flags, mode_t mode = 0);

bool write_all(int descriptor, std::string_view bytes);
bool sync(int descriptor);

// Hands the bytes of the file, from where it stands, to `consume` block by block, until that
// returns false; then so does read_all.
template<class Consume> bool read_all(int descriptor, Consume consume);

// Gives `to` all extended attributes of `from`; the access list is one of them.
bool copy_attributes(int from, int to);
bool has_access_list(int descriptor);
// A directory may have given a new file an access list.
bool remove_access_list(int descriptor);
// Gives `to` the flags of `from` that chattr sets, but for "immutable" and "append only": a file
// with these cannot be opened for writing.
bool copy_flags(int from, int to);

// Takes the lock of flock(2) on the whole file, at once or not at all (EWOULDBLOCK).
bool lock(int descriptor);

// Implementation of the template.
ssize_t read_block(int descriptor, std::vector<char> &block);

template<class Consume> bool read_all(int descriptor, Consume consume) {
    std::vector<char> block(size_t{1} << 16);
    for (;;) {
        const ssize_t count = read_block(descriptor, block);
        if (count <= 0)
            return count == 0;
        if (!consume(std::string_view(block.data(), static_cast<size_t>(count))))
            return false;
    }
}

} // namespace engine
