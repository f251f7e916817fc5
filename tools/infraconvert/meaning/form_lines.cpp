// What is no QoS, and the lines as lines: spelling, VLANs, fabric extender ports, line ends.

#include "meaning/form_parts.h"

namespace infraconvert::meaning {

namespace {

bool is_spelled_well(const dialect_t &reads, const spelled_t &spelled) {
    const words_t all = full_words(spelled.text, position_t::first_line);
    const auto words = std::span(all).subspan(all[0] == "no" ? 1 : 0);
    switch (spelled.command) {
    case spelled_t::npiv:
        return begins_with(words, {"feature"}) == reads.npiv_feature;
    case spelled_t::fc_feature:
        if (words[0] != "feature")
            return reads.fc_security == fc_security_t::enable;
        return reads.fc_security ==
               (words[1] == "port-security" ? fc_security_t::feature : fc_security_t::fc_feature);
    case spelled_t::fc_command:
        return (words[0] == "fc-port-security") == (reads.fc_security == fc_security_t::fc_feature);
    case spelled_t::mac:
        return words[0] == "mac-address-table" || reads.mac_by_blank;
    }
    return true;
}

void check_spelling(form_check_t &check) {
    constexpr const char *names[] = {"NPIV", "FC port security", "FC port security",
                                     "the MAC address table"};
    for (const spelled_t &spelled : check.model.spelled) {
        const std::string name = names[spelled.command];
        if (!is_spelled_well(check.reads, spelled))
            check.add(fault_t::spelling, name,
                      "commands of " + name + " in the spelling of other releases", spelled.line);
    }
}

void check_vlans(form_check_t &check) {
    for (const vlan_stanza_t &stanza : check.model.vlans) {
        const bool alone = stanza.vlans.count() == 1 && stanza.other.empty();
        if (check.reads.single_fcoe && !stanza.fcoe.empty() && !alone)
            check.add(fault_t::fcoe_not_alone, "",
                      "fcoe does not stand in a stanza of one VLAN with nothing else",
                      stanza.fcoe.front());
    }
}

void check_fabric(form_check_t &check, const block_t &block) {
    uint32_t mode = 0, associate = 0;
    for (const fabric_line_t &line : block.fabric) {
        uint32_t &first = line.text.starts_with("fex") ? associate : mode;
        first = first == 0 ? line.line : first;
    }
    if (mode == 0 || associate == 0 || mode < associate)
        return;
    for (const uint32_t line : {associate, mode})
        check.add(fault_t::fabric_order, "",
                  "\"fex associate\" stands ahead of \"switchport mode fex-fabric\"", line);
}

struct told_t {
    fault_t fault;
    const char *words;
};

told_t told(misfit_t::kind_t kind) {
    switch (kind) {
    case misfit_t::no_name:
        return {fault_t::no_name, "has no name"};
    case misfit_t::stray_line:
        return {fault_t::stray_line, "stands where no release reads it"};
    case misfit_t::taken_back:
        return {fault_t::taken_back, "takes something back, which no saved configuration does"};
    case misfit_t::odd_blank:
        return {fault_t::odd_blank, "holds a character that looks like a blank and is none"};
    case misfit_t::map_line:
        return {fault_t::map_line, "is no line of such a map"};
    case misfit_t::class_type:
        return {fault_t::class_line, "does not name the class as the type of its policy-map asks"};
    case misfit_t::vlan_list:
        return {fault_t::vlan_list, "is no list of VLANs"};
    case misfit_t::vlan_zero:
        return {fault_t::vlan_zero, "names VLAN 0 or leaves one out"};
    }
    return {fault_t::stray_line, ""};
}

void check_misfits(form_check_t &check) {
    for (const misfit_t &misfit : check.model.misfits) {
        const auto [fault, words] = told(misfit.kind);
        check.add(fault, misfit.subject, "\"" + misfit.subject + "\" " + words, misfit.line);
    }
}

void check_line_ends(form_check_t &check) {
    const reading_t &reading = check.model.reading;
    if (reading.carriage_returns > 0)
        check.add(fault_t::carriage_returns, "", "lines end with a carriage return",
                  reading.first_carriage_return);
    if (!reading.ends_with_newline)
        check.add(fault_t::no_last_newline, "", "the last line has no end", reading.last_line);
}

} // namespace

void check_lines(form_check_t &check) {
    check_spelling(check);
    check_vlans(check);
    for (const auto &[key, block] : check.model.blocks) {
        if (check.reads.fabric_order)
            check_fabric(check, block);
    }
    check_misfits(check);
    check_line_ends(check);
}

} // namespace infraconvert::meaning
