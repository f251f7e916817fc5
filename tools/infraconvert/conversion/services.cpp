#include "conversion/services.h"

#include "base/errors.h"
#include "base/suggest.h"

#include "assoc/assoc_converter.h"
#include "assoc/assoc_engine.h"
#include "fc_port_sec/fcportsec_converter.h"
#include "fwm/fwmcnv_converter.h"
#include "include/libinfraconvertascii.h"
#include "ipqosmgr/qosmgrcnv_4_1_3.h"
#include "npiv/npiv_converter.h"
#include "satmgr/satcnv_converter.h"

#include <algorithm>
#include <iterator>
#include <mutex>

namespace infraconvert {

namespace {

constexpr const char *no_rule = "no rule for this pair of releases";
constexpr const char *same_text = "the two releases are the same";
constexpr const char *same_release = "the two releases are the same to this converter";

// A service and its converter, whose questions about a pair of releases are asked of state that the
// converter has once. Whoever asks them comes through routing_of(), which lets in one at a time.
struct converter_t {
    service_t service;
    // Reads both releases into the converter. Returns why nothing can apply, or null.
    const char *(*why_not)(const release_pair_t &releases);
};

template<const engine::conversion_t &conversion>
const char *why_not(const release_pair_t &releases) {
    engine::engine_t &e = conversion.engine;
    e.from = e.to = {}; // as in the process of its own in which each conversion runs
    if (!engine::read_versions(e, releases.from.c_str(), releases.to.c_str()))
        return same_text;
    return conversion.same_release() ? same_release : nullptr;
}

const char *assoc_why_not(const release_pair_t &releases) {
    const bool needed = assoc_conversion_needed(releases.from.c_str(), releases.to.c_str());
    if (!needed && releases.from == releases.to)
        return same_text;
    return needed ? nullptr : no_rule;
}

template<const engine::conversion_t &conversion>
converter_t converter(const char *name, const char *title, const char *platform_name, uint32_t uuid,
                      const char *log_name) {
    return {{name, title, platform_name, uuid, log_name, conversion.rules}, why_not<conversion>};
}

std::vector<converter_t> in_registry_order() {
    const converter_t known[] = {
        converter<qoscnv_conversion>("qos", "QoS", "SRVUUID_IPQOS_MGR", SRVUUID_IPQOS_MGR,
                                     "qoscnv.log"),
        converter<fcportsec_conversion>("fcportsec", "FC port security", "SRVUUID_PSM", SRVUUID_PSM,
                                        "fcportsec.log"),
        converter<npiv_conversion>("npiv", "NPIV", "SRVUUID_NPIVP", SRVUUID_NPIVP, "npiv.log"),
        converter<fwmcnv_conversion>("fwm", "MAC address table", "SRVUUID_FWM", SRVUUID_FWM,
                                     "fwmcnv.log"),
        {{"assoc", "VLAN-FCoE association", "SRVUUID_ASSOC_MGR", SRVUUID_ASSOC_MGR,
          "assoc_ascii_cnv.log", assoc_rules},
         assoc_why_not},
        converter<satcnv_conversion>("satmgr", "fabric extender", "SRVUUID_SATMGR", SRVUUID_SATMGR,
                                     "satcnv.log"),
    };
    // A converter that is registered and has no row here would run unseen.
    static_assert(std::size(known) + 1 == INFRA_CONVERTASCII_STARTUP_ROWS);

    std::vector<converter_t> result;
    for (const auto *row = infra_convertascii_startup_table; row->fn; row++) {
        for (const converter_t &each : known) {
            if (each.service.uuid == row->uuid)
                result.push_back(each);
        }
    }
    return result;
}

const std::vector<converter_t> &converters() {
    static const std::vector<converter_t> all = in_registry_order();
    return all;
}

std::vector<service_t> services_of(const std::vector<converter_t> &all) {
    std::vector<service_t> result;
    std::transform(all.begin(), all.end(), std::back_inserter(result),
                   [](const converter_t &each) { return each.service; });
    return result;
}

bool is_named(const service_t &service, const std::string &name) {
    return name == service.name || name == service.platform_name ||
           name == std::to_string(service.uuid);
}

const service_t *service_named(const std::string &name) {
    std::vector<std::string> names = {"all"};
    for (const service_t &s : services()) {
        if (is_named(s, name))
            return &s;
        names.insert(names.end(), {s.name, s.platform_name});
    }
    std::string known;
    for (const service_t &s : services())
        known += std::string(s.name) + ", ";
    throw usage_error_t("unknown service '" + name + "'" + suggestion(name, names) +
                        " (services: " + known + "all)");
}

} // namespace

const std::vector<service_t> &services() {
    static const std::vector<service_t> all = services_of(converters());
    return all;
}

std::vector<const service_t *> services_named(const std::vector<std::string> &names) {
    std::vector<const service_t *> chosen;
    for (const std::string &name : names) {
        if (name != "all")
            chosen.push_back(service_named(name));
    }
    const bool all = chosen.size() < names.size() || names.empty();
    std::vector<const service_t *> result;
    for (const service_t &s : services()) {
        if (all || std::find(chosen.begin(), chosen.end(), &s) != chosen.end())
            result.push_back(&s);
    }
    return result;
}

routing_t routing_of(const service_t &service, const release_pair_t &releases) {
    const auto asked =
        std::find_if(converters().begin(), converters().end(),
                     [&](const converter_t &c) { return c.service.uuid == service.uuid; });
    static std::mutex door;
    const std::lock_guard one_at_a_time(door);
    routing_t routing;
    if (const char *reason = asked->why_not(releases)) {
        routing.why_none = reason;
        return routing;
    }
    for (const engine::rule_t &rule : service.rules) {
        if (rule.applies())
            routing.rules.push_back(&rule);
    }
    if (routing.rules.empty())
        routing.why_none = no_rule;
    return routing;
}

std::string routing_t::ids() const {
    std::string text;
    for (const engine::rule_t *rule : rules)
        (text += text.empty() ? "" : ",") += rule->id;
    return text.empty() ? "-" : text;
}

std::string routing_t::words() const {
    std::string text;
    for (const engine::rule_t *rule : rules)
        (text += text.empty() ? "" : "; ") += rule->plain_words;
    return text.empty() ? why_none : text;
}

} // namespace infraconvert
