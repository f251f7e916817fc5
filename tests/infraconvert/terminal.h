// A terminal whose screen a test reads.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace support {

class terminal_t {
  public:
    terminal_t() : master(posix_openpt(O_RDWR | O_NOCTTY)) {
        EXPECT_TRUE(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
    }
    ~terminal_t() { close(master); }
    terminal_t(const terminal_t &) = delete;
    terminal_t &operator=(const terminal_t &) = delete;

    std::string name() const { return ptsname(master); }

    // All that was written, which arrives in pieces; ends once nobody writes any more.
    std::string read_screen() const {
        std::string screen;
        char piece[4096];
        for (ssize_t length; (length = read(master, piece, sizeof piece)) > 0;)
            screen.append(piece, static_cast<size_t>(length));
        return screen;
    }

  private:
    const int master;
};

} // namespace support
