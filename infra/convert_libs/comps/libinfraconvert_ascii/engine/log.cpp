// "npiv_read_ascii_file(): failed to open ...": one message of an instance's log.

#include "engine/log_list.h"
#include "engine/operation.h"

namespace engine {

namespace {

struct function_name_t {
    const char *prefix, *separator, *name;
};

void write_message(const engine_t &e, const function_name_t &function, const char *format,
                   va_list arguments) {
    if (!log_is_on(e))
        return;
    FILE *stream = *e.log_stream;
    if (e.log_names_function)
        fprintf(stream, "%s%s%s(): ", function.prefix, function.separator, function.name);
    vfprintf(stream, format, arguments);
    if (e.log_names_function)
        fflush(stream);
}

} // namespace

bool log_is_on(const engine_t &e) {
    return (!e.debug_switch || *e.debug_switch == 1) && *e.log_stream;
}

void log(const engine_t &e, const char *function, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    log_list(e, function, format, arguments);
    va_end(arguments);
}

void log_list(const engine_t &e, const char *function, const char *format, va_list arguments) {
    write_message(e, {"", "", function}, format, arguments);
}

void log_operation(const engine_t &e, const char *operation, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    write_message(e, {e.prefix, "_", operation}, format, arguments);
    va_end(arguments);
}

void log_init(engine_t &e) {
    if (e.debug_switch && *e.debug_switch != 1)
        return;
    if (*e.log_stream) {
        if (e.log_names_function)
            log_operation(e, "log_init", "file already opened\n");
        return;
    }
    *e.log_stream = fopen(e.log_path, e.log_mode);
    log_operation(e, "log_init", "file opened sucessfully\n");
}

void log_cleanup(engine_t &e) {
    if (e.log_names_function) // the log stays open for the next conversion of this process
        return;
    if (*e.log_stream)
        fclose(*e.log_stream);
    *e.log_stream = nullptr;
}

} // namespace engine
