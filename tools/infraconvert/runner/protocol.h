// What the command and infraconvert-run, the program that holds the library, say to each other.
//
//     command                        infraconvert-run              a child of it, for this call
//     alone
//        | request_t, and a socket for     |                                    |
//        | this call                       |                                    |
//        |-------------------------------->| forks ---------------------------->|
//        | the job (releases, services, text), in pieces                        |
//        |--------------------------------------------------------------------->|
//        | for each service: the text after it, in pieces; step_ended           |
//        |<---------------------------------------------------------------------|
//        | child_ended                     |
//        |<--------------------------------|
//        | closes the socket               | removes what is private of the call
//
// Every message is one packet of a local socket: its kind in the first byte, then its bytes. So a
// child that dies leaves whole messages behind, and what its parent says of it can follow them.
// When the command is gone, whatever ended it, infraconvert-run reads the end of its socket, ends
// its children, removes what is private and ends too.
#pragma once

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/uio.h>

namespace runner {

// The socket that infraconvert-run finds open.
constexpr int control_socket = 3;

// The bytes of a message at most, without its kind; far below what a socket takes at once.
constexpr size_t piece_size = 1 << 15;

struct request_t {
    uint64_t job_size;  // of the whole job
    uint64_t text_size; // of the configuration in it
    uint32_t wants_logs;
};

// A job is these numbers, then the two releases, the services' identifiers and the configuration.
struct job_head_t {
    uint32_t from_size, to_size, services;
};

enum class kind_t : char {
    piece = 'p',       // of the job, or of the configuration after a service
    place = 'l',       // path of the directory with the logs, ahead of everything else
    step_ended = 's',  // step_ended_t
    child_ended = 'e', // the child's status as wait() gives it, an int
    refused = 'x',     // nothing could be converted: why, in words
};

struct step_ended_t {
    uint32_t status;  // of the converter
    uint32_t changed; // 0: the file is the one that it was before, and no piece of it was sent
};

struct message_t {
    kind_t kind;
    std::string bytes;
};

// Returns false, with errno, when nobody is there to read it.
inline bool send(int socket, kind_t kind, std::string_view bytes) {
    iovec parts[] = {{&kind, 1}, {const_cast<char *>(bytes.data()), bytes.size()}};
    msghdr header = {};
    header.msg_iov = parts;
    header.msg_iovlen = 2;
    ssize_t sent;
    do
        sent = sendmsg(socket, &header, MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR);
    return sent >= 0;
}

template<class Record> bool send_record(int socket, kind_t kind, const Record &record) {
    return send(socket, kind, {reinterpret_cast<const char *>(&record), sizeof record});
}

inline bool send_in_pieces(int socket, std::string_view bytes) {
    for (size_t at = 0; at < bytes.size(); at += piece_size) {
        if (!send(socket, kind_t::piece, bytes.substr(at, piece_size)))
            return false;
    }
    return true;
}

// The next message. Nothing at the end of the socket, with errno 0, and on an error, EAGAIN when
// none came within the socket's time.
inline std::optional<message_t> receive(int socket) {
    char packet[piece_size + 1];
    ssize_t size;
    do
        size = recv(socket, packet, sizeof packet, 0);
    while (size < 0 && errno == EINTR);
    if (size > 0)
        return message_t{static_cast<kind_t>(packet[0]),
                         std::string(packet + 1, static_cast<size_t>(size - 1))};
    if (size == 0)
        errno = 0;
    return {};
}

// False when the message holds something else.
template<class Record> bool read_record(const message_t &message, Record &record) {
    if (message.bytes.size() != sizeof record)
        return false;
    memcpy(&record, message.bytes.data(), sizeof record);
    return true;
}

} // namespace runner
