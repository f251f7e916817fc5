// From the installer's call to the saved file.

#include "engine/conversion.h"

namespace engine {

namespace {

syserr_t load_convert_save(const conversion_t &c, const char *path) {
    const syserr_t loaded = read_ascii_file(c.engine, path);
    if (loaded != 0)
        return loaded;
    const syserr_t converted = guarded([&] { return route(c); });
    log(c.engine, c.start_function, "Called %s(): returned 0x%x\n", c.routing_function, converted);
    return converted != 0 ? converted : save_converted(c.engine, path);
}

syserr_t start(const conversion_t &c, const request_t &request) {
    engine_t &e = c.engine;
    log(e, c.start_function, "%s\n", c.invoked);
    log(e, c.start_function, "pkg_name: %s\npath: %s\n", text_or_null(request.pkg_name),
        text_or_null(request.path));
    if (!read_versions(e, request.from_pkg_version, request.to_pkg_version))
        return 0;
    if (c.same_release()) {
        log(e, c.start_function, "%s\n", c.same_release_message);
        return 0;
    }
    return load_convert_save(c, request.path);
}

} // namespace

syserr_t run_rules(std::span<const rule_t> rules) {
    syserr_t status = 0;
    for (const rule_t &rule : rules) {
        if (rule.applies())
            status = rule.pipeline();
    }
    return status;
}

syserr_t route(const conversion_t &c) {
    log(c.engine, c.routing_function, "Calling %s() ...\n", c.routing_function);
    if (c.before_routing)
        c.before_routing();
    return run_rules(c.rules);
}

syserr_t save_converted(engine_t &e, const char *path) {
    return e.edit_refused ? failure : write_ascii_file(e, path);
}

syserr_t convert(const conversion_t &c, const request_t &request) {
    log_init(c.engine);
    const syserr_t status = guarded([&] { return start(c, request); });
    log_cleanup(c.engine);
    return status;
}

} // namespace engine
