// What the parts of the form check share. Each looks at one kind of line.
#pragma once

#include "meaning/form.h"

#include <map>

namespace infraconvert::meaning {

class form_check_t {
  public:
    explicit form_check_t(const model_t &checked) : model(checked), reads(checked.dialect) {}

    // Adds a line to the problem of this fault and subject; the words are those of its first line.
    problem_t &add(fault_t fault, const std::string &subject, const std::string &words,
                   uint32_t line, const problem_t::touched_t &touched = {});

    // True when the release reads maps or attachments of this type.
    bool knows_type(std::string_view type) const;
    // Tells that it does not; `what` is the map or attachment.
    problem_t &refuse_type(std::string_view type, const std::string &what, uint32_t line,
                           const problem_t::touched_t &touched);

    // What was found; the check is over.
    std::vector<problem_t> done();

    const model_t &model;
    const dialect_t &reads;

  private:
    std::vector<problem_t> problems;
    std::map<std::pair<fault_t, std::string>, size_t> known;
};

// "policy-map type qos marking"
std::string title(std::string_view keyword, std::string_view type, std::string_view name);

// True when policy-maps of this type take such actions.
bool may_say(std::string_view type, action_kind_t kind);

// In this order.
void check_maps(form_check_t &check);
void check_attachments(form_check_t &check);
void check_classes(form_check_t &check);
void check_lines(form_check_t &check);

} // namespace infraconvert::meaning
