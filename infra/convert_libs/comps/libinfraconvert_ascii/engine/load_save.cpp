// The configuration file to text, and back.

#include "engine/operation.h"
#include "engine/replace_file.h"
#include "engine/watchers.h"

#include <cerrno>
#include <cinttypes>
#include <cstring>
#include <memory>
#include <new>
#include <sys/stat.h>

namespace engine {

namespace {

constexpr const char *configuration_file = "/ascii/system.cfg";

// Positions are also traced as signed numbers of 32 bits.
constexpr int64_t largest_capacity = INT32_MAX;

using path_t = char[area_size];

// Builds the path of the configuration file in `file`, cut to the area. Returns false, with a
// message, when there is none.
bool path_to_asciicfg(const engine_t &e, const char *path, path_t &file) {
    errno = EINVAL;
    if (path && snprintf(file, sizeof file, "%s%s", path, configuration_file) >= 0)
        return true;
    log_operation(e, "path_to_asciicfg",
                  "failed to expand path into ASCII configuration location: %s\n", strerror(errno));
    return false;
}

void drop_text(engine_t &e) {
    if (!e.text)
        return;
    const uint32_t size = e.text->size();
    delete e.text;
    e.text = nullptr;
    tell_watchers(e, {.at = 0, .removed = size, .inserted = 0});
}

// Allocates the room for a file of `size` bytes as the instance's text.
bool allocate_text(engine_t &e, int64_t size) {
    drop_text(e);
    if (size > (largest_capacity - e.capacity_extra) / e.capacity_factor)
        errno = ENOMEM;
    else
        e.text = new (std::nothrow)
            text_t(static_cast<uint32_t>(size),
                   static_cast<uint32_t>(size) * e.capacity_factor + e.capacity_extra);
    if (e.text && !e.text->holds_memory())
        drop_text(e);
    log_operation(e, "read_ascii_file", "Allocating block of memory at %p\n",
                  static_cast<const void *>(e.text ? e.text->memory() : nullptr));
    return e.text;
}

struct closer_t {
    void operator()(FILE *file) const { fclose(file); }
};

// Reads the whole file into the text that was made for it.
syserr_t read_text(engine_t &e, const char *file, int64_t size) {
    std::unique_ptr<FILE, closer_t> stream(fopen(file, "r"));
    if (!stream) {
        log_operation(e, "read_ascii_file", "failed to open %s: %s\n", file, strerror(errno));
        return failure;
    }
    errno = 0; // a file that became shorter sets none
    if (fread(e.text->memory(), static_cast<size_t>(size), 1, stream.get()) != 1) {
        log_operation(e, "read_ascii_file", "failed to read %" PRId64 " bytes from %s: %s\n", size,
                      file, strerror(errno));
        return failure;
    }
    e.text->loaded(static_cast<uint32_t>(size));
    tell_watchers(e, {.at = 0, .removed = 0, .inserted = e.text->size()});
    if (fclose(stream.release()) != 0) {
        log_operation(e, "read_ascii_file", "failed to close %s: %s\n", file, strerror(errno));
        return failure;
    }
    return 0;
}

// Takes one step of a save. Where memory runs out, it fails with an error number like any other.
template<class Step> bool taken(Step step) {
    try {
        return step();
    } catch (const std::bad_alloc &) {
        errno = ENOMEM;
        return false;
    }
}

// Writes the bytes to be saved, many short runs at once.
bool write_text(replace_file_t &file, const text_t &text) {
    constexpr size_t block_size = 1 << 16;
    std::string block;
    const position_t end = text.saved_end();
    for (position_t from = 0; from < end;) {
        const std::string_view run = text.run(from, end);
        from += static_cast<position_t>(run.size());
        if (block.size() + run.size() <= block_size) {
            block += run;
            continue;
        }
        if (!file.write(block) || !file.write(run))
            return false;
        block.clear();
    }
    return file.write(block);
}

// Calls `show` with the runs of [0, end). What is saved is saved: showing it takes no memory, so
// that it cannot fail the conversion any more.
template<class Show> void for_each_run(const text_t &text, position_t end, Show show) {
    for (position_t from = 0; from < end;) {
        const std::string_view run = text.run(from, end);
        show(run);
        from += static_cast<position_t>(run.size());
    }
}

void show(std::string_view bytes, FILE *stream) { fwrite(bytes.data(), bytes.size(), 1, stream); }

// Each byte also becomes a message of its own, flushed together.
void show_and_log_each_byte(const engine_t &e, std::string_view bytes) {
    for (const char byte : bytes) {
        putc(byte, stdout);
        fprintf(*e.log_stream, "%s_print_ascii_file(): %c", e.prefix, byte);
    }
    fflush(*e.log_stream);
}

// Up to the first zero byte, the marker included.
void log_up_to_zero(const engine_t &e) {
    const position_t end = e.text->end(0);
    for_each_run(*e.text, end, [&](std::string_view run) { show(run, *e.log_stream); });
    if (end == e.text->size())
        putc(end_marker, *e.log_stream);
}

} // namespace

syserr_t read_ascii_file(engine_t &e, const char *path) {
    e.edit_refused = false;
    if (e.traces_path)
        log_operation(e, "read_ascii_file", "Reading ASCII file %s...\n", text_or_null(path));
    else
        log_operation(e, "read_ascii_file", "Reading ASCII file ...\n");

    path_t file;
    if (!path_to_asciicfg(e, path, file)) {
        log_operation(e, "read_ascii_file", "failed to write out uncompress command: %s\n",
                      strerror(errno));
        return failure;
    }
    struct stat status;
    if (stat(file, &status) != 0) {
        log_operation(e, "read_ascii_file", "failed to get file size for %s: %s\n", file,
                      strerror(errno));
        return failure;
    }
    if (e.traces_path)
        log_operation(e, "read_ascii_file", "got file %s\n", file);
    const int64_t size = status.st_size; // wider than a long, where that has 32 bits
    if (size <= 0) {
        log_operation(e, "read_ascii_file", "file size for %s unexpectedly %" PRId64 "\n", file,
                      size);
        return failure;
    }
    if (e.traces_size)
        log_operation(e, "read_ascii_file", "file size %" PRId64 "\n", size);
    if (!allocate_text(e, size)) {
        log_operation(e, "read_ascii_file", "failed to allocate memory for file %s: %s\n", file,
                      strerror(errno));
        return failure;
    }
    return read_text(e, file, size);
}

syserr_t write_ascii_file(engine_t &e, const char *path) {
    log_operation(e, "write_ascii_file", "Writing ASCII file to %s ...\n", text_or_null(path));
    path_t file;
    if (!path_to_asciicfg(e, path, file))
        return failure;
    replace_file_t replacement;
    if (!taken([&] { return replacement.begin(file); })) {
        log_operation(e, "write_ascii_file", "failed to open %s: %s\n", file, strerror(errno));
        return failure;
    }
    if (e.traces_path)
        log_operation(e, "write_ascii_file", "writing file %s\n", file);
    if (!taken([&] { return write_text(replacement, *e.text); })) {
        log_operation(e, "write_ascii_file", "failed to write byteto %s: %s\n", file,
                      strerror(errno));
        return failure;
    }
    if (!taken([&] { return replacement.commit(); })) {
        log_operation(e, "write_ascii_file", "failed to close %s: %s\n", file, strerror(errno));
        return failure;
    }
    log_operation(e, "write_ascii_file", "Wrote ASCII file succesfully!\n");
    print_ascii_file(e);
    if (e.traces_release)
        log_operation(e, "write_ascii_file", "Freeing block of memory at %p\n",
                      static_cast<const void *>(e.text->memory()));
    drop_text(e); // nobody looks at it any more, and the other converters need room too
    return 0;
}

void print_ascii_file(const engine_t &e) {
    log_operation(e, "print_ascii_file", "Printing ASCII file ...\n");
    if (e.dump == dump_t::log) {
        if (log_is_on(e))
            log_up_to_zero(e);
        return;
    }
    const bool logs_each_byte = e.dump == dump_t::output_and_log && log_is_on(e);
    for_each_run(*e.text, e.text->saved_end(), [&](std::string_view run) {
        if (logs_each_byte)
            show_and_log_each_byte(e, run);
        else
            show(run, stdout);
    });
}

} // namespace engine
