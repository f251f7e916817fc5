// The table of what can be found in a configuration and its conversion. The codes are part of the
// interface: a code keeps its meaning for good, and new findings take new codes.
#pragma once

#include <compare>
#include <string_view>

namespace infraconvert {

enum class severity_t { error, warning, note };

struct finding_kind_t {
    const char *code;
    severity_t severity;
    const char *title;
    const char *explanation;
    const char *advice;
};

inline constexpr finding_kind_t finding_kind_table[] = {
    {"IC001", severity_t::error, "A line is missing or changed",
     "Every line that is no QoS, feature, VLAN or MAC address command must come out under the "
     "same stanza as it went in. This one did not. Usually a converter took a text in it for a "
     "command, or removed a range of lines in which it stood.",
     "Compare the line in the difference, and restore it after the conversion."},
    {"IC002", severity_t::error, "A line appeared",
     "The result holds a line that the original does not have under this stanza.",
     "Remove the line after the conversion, or find out in the difference where it comes from."},
    {"IC003", severity_t::error, "A line stands under the wrong stanza",
     "A line that belonged to one stanza now stands under another, because the first line of its "
     "own stanza was removed and the line itself was not. The switch would take it for a part of "
     "the stanza above it.",
     "Remove the line from the result."},
    {"IC004", severity_t::warning, "A text inside a line was rewritten",
     "The converters of features replace their keywords wherever they stand, so also in "
     "descriptions and banners.",
     "Check the line; restore the original text where it is not a command of the feature."},
    {"IC005", severity_t::warning, "Lines are indented to another depth",
     "The lines are the same, below the same stanza, with more or fewer blanks in front.",
     "Check that the lines still belong to the line above them."},
    {"IC006", severity_t::warning, "Lines end with a carriage return",
     "The configuration went through a system that ends lines with CR LF. The judgement here "
     "reads past it; the converters may not, and pass over commands or leave the character in "
     "what they write.",
     "Convert the line ends first, for example with dos2unix."},
    {"IC010", severity_t::error, "A class without its class-map",
     "A policy-map names a class for which there is no class-map of that type. The switch "
     "refuses the class.",
     "Write the class-map, or take the class out of the policy-map."},
    {"IC011", severity_t::warning, "A class that has no class-map in the original either",
     "A policy-map of the original names a class for which there is no class-map.",
     "Repair the original before the conversion, or remove the class."},
    {"IC012", severity_t::error, "An attachment without its policy-map",
     "A policy-map is attached that is not defined with this type. The switch refuses the "
     "attachment.",
     "Write the policy-map, or remove the attachment."},
    {"IC013", severity_t::warning, "An attachment that has no policy-map in the original either",
     "A policy-map is attached that the original does not define.",
     "Repair the original before the conversion, or remove the attachment."},
    {"IC014", severity_t::error, "A class-map that matches nothing",
     "A class of an attached policy-map has a class-map without a match line, so no traffic "
     "reaches the class. Queuing and network-qos class-maps match qos-groups, and only classes "
     "of the policy attached under \"system qos\" get one.",
     "Give the class a qos-group: add \"match qos-group\" to the class-map and \"set qos-group\" "
     "to the class in the type qos policy-map under \"system qos\"."},
    {"IC015", severity_t::error, "A line that belongs into a map of another type",
     "A typed class-map matches, or a typed policy-map has an action, that the release reads in "
     "maps of another type only: \"set qos-group\" in type qos, \"bandwidth\" and \"priority\" "
     "in type queuing, the others in type network-qos; qos-groups are matched in type queuing "
     "and network-qos.",
     "Move the line to the map of the right type."},
    {"IC016", severity_t::error, "A form that the release does not read",
     "A map, a class or an attachment lacks its name or its direction, has one too many, or a "
     "type that may not stand there.",
     "Write the line in the form of the release."},
    {"IC017", severity_t::error, "A second policy where there can be one",
     "Two policy-maps of one type are attached in one direction at one place. The switch takes "
     "one of them.",
     "Remove one of the two attachments."},
    {"IC018", severity_t::error, "A line stands where no release reads it",
     "A match line, a class or an attachment stands outside the stanza that could hold it, or a "
     "map holds a line that such maps do not have.",
     "Remove the line, or put it where it belongs."},
    {"IC019", severity_t::error, "A list of VLANs that does not read",
     "A list is numbers from 1 to 4094 and ranges of them, low to high, between commas and "
     "without blanks.",
     "Correct the list of VLANs."},
    {"IC020", severity_t::error, "A class-map vanished",
     "The original defines a class-map whose name no class-map of the result has.",
     "Write the class-map again in the form of the new release."},
    {"IC021", severity_t::error, "A policy-map vanished",
     "The original defines a policy-map whose name no policy-map of the result has.",
     "Write the policy-map again in the form of the new release."},
    {"IC023", severity_t::error, "A class-map changed its match lines",
     "The match lines of a class-map differ between original and result, so it selects other "
     "traffic. A qos-group is not counted where only one of the two forms has it.",
     "Restore the match lines."},
    {"IC024", severity_t::error, "A class-map has contradicting match criteria",
     "The conversion puts \"match-any\" in front of every name of a type qos class-map, also "
     "where one of \"match-any\" and \"match-all\" stands already. The switch refuses the line.",
     "Leave one of the two words."},
    {"IC025", severity_t::note, "A description is gone",
     "The conversion removes descriptions that stand right below the first line of a class-map "
     "or a policy-map.",
     "Keep the text elsewhere if it matters."},
    {"IC026", severity_t::warning, "A class-map without match lines of its own is gone",
     "It matched a qos-group or nothing. The older form has no qos-groups to match, so nothing "
     "was left of it.",
     "Check that the policies say what they should; see the class in the policy-map."},
    {"IC027", severity_t::warning, "Control-plane maps are gone",
     "The older release has no control-plane policies, and these were attached nowhere.",
     "Keep the original, to write them again after a later upgrade."},
    {"IC030", severity_t::error, "An action disappeared",
     "A class of the original has an action that it has in no policy-map of that name in the "
     "result. Actions are lost when they belong to no type (qos, queuing, network-qos), and "
     "\"set qos-group\" is lost in policies that are not attached under \"system qos\" and hold "
     "actions of other types too.",
     "Add the action to the policy-map of the right type."},
    {"IC032", severity_t::error, "Marking is gone",
     "The older form is written without \"set qos-group\", and the newer one numbers the classes "
     "of the policy under \"system qos\" only. Elsewhere nothing marks the traffic any more.",
     "Add the \"set qos-group\" actions again after the conversion where they are needed."},
    {"IC034", severity_t::error, "An action or class appeared",
     "A class of the result has an action, or the result a policy-map, that the original does "
     "not have. A line was taken for a part of a map to which it does not belong.",
     "Remove it from the policy-map."},
    {"IC035", severity_t::warning, "Marking of a policy that is attached nowhere is gone",
     "The \"set qos-group\" actions of these policy-maps are not written. No traffic meets them "
     "today.",
     "Add the actions again before the policy-map is attached."},
    {"IC036", severity_t::error, "An effect is new",
     "The result does something with traffic that the original does not do, such as scheduling "
     "in both directions what was scheduled in one.",
     "Remove the attachment, or attach the policy-map as the original does."},
    {"IC037", severity_t::error, "An effect has lost its traffic",
     "The action is still there, but no traffic meets it: its class-map matches a qos-group that "
     "nothing sets, or its class has no traffic any more.",
     "Let the class match the qos-group of its traffic, or give the traffic that group in the "
     "type qos policy-map."},
    {"IC038", severity_t::error, "An effect meets other traffic",
     "The same action now applies to other packets than before: qos-groups are crossed, or match "
     "lines changed.",
     "Compare the qos-groups that the type qos policy-map sets with those that the class-maps "
     "match."},
    {"IC039", severity_t::error, "Traffic meets another effect",
     "The same packets meet an action with another value, or share the queue with other traffic "
     "than before.",
     "Restore the value, or the qos-group."},
    {"IC040", severity_t::error, "An attachment disappeared",
     "A policy-map that is attached in the original, and has an effect there, is not attached in "
     "the result.",
     "Attach the policy-map again by its type. Before 4.1(3) a place takes one policy: put the "
     "actions into that."},
    {"IC041", severity_t::error, "A policy that only marks is not attached any more",
     "The conversion writes type qos attachments only for the policy under \"system qos\", and "
     "none for older releases. A policy-map that classifies and marks is kept, but where it was "
     "attached elsewhere the attachment is gone, and traffic there is no longer marked.",
     "Attach it again by hand: \"service-policy type qos input NAME\", before 4.1(3) without "
     "\"type qos\". Check first that its qos-groups are those that the classes under \"system "
     "qos\" have now."},
    {"IC043", severity_t::error, "Text stayed in the form of the old release",
     "A map or an attachment came out without a type for a release that needs one, or with a "
     "type for a release that knows none. For some pairs of releases no rule rewrites them; "
     "attachments ahead of the first class-map or policy-map, and lines that are indented in "
     "another way than the switch writes, are passed over.",
     "Convert the service qos too, or choose another release on the way, or put the "
     "configuration in the order in which the switch saves it, or rewrite the lines by hand."},
    {"IC044", severity_t::error, "A command stays in the form of the other release",
     "The two releases spell this command differently, and the result has it in a form that its "
     "release does not read: no rule rewrites it for this pair, or its service was not chosen.",
     "Rewrite the command by hand after the conversion; see infraconvert explain for the rules."},
    {"IC046", severity_t::error, "A match criterion that the release does not read",
     "Releases from 5.0(2) on write \"match-any\" or \"match-all\" in front of a class-map's "
     "name. Older ones refuse the line or take the word for the name. The conversion takes "
     "\"match-any\" away for 4.1(3) only.",
     "Take the word out of the line. For \"match-all\" split the class, for the older release "
     "knows no other criterion than any."},
    {"IC047", severity_t::error, "Control-plane policies that the release does not know",
     "Class-maps and policy-maps of type control-plane are read from 5.0(3)U2 on.",
     "Remove the control-plane maps and what attaches them."},
    {"IC048", severity_t::error, "A feature is on or off that was not",
     "The result switches other features on or off than the original, each in the spelling of "
     "its own release.",
     "Restore the line of the feature."},
    {"IC049", severity_t::warning, "Classes that are attached nowhere have lost their traffic",
     "Their policy-maps are attached nowhere, so nothing changes on the switch; once attached, "
     "no traffic would meet them.",
     "Give the classes qos-groups before the policy-map is attached."},
    {"IC051", severity_t::warning, "An MTU keeps its number and is another size",
     "Releases before 4.1(3) count 38 bytes of headers that later ones do not. The way down does "
     "not raise the number, so the MTU is smaller than it was before an upgrade.",
     "Compare the value with the one from before the upgrade and correct it."},
    {"IC052", severity_t::warning, "An MTU met a limit",
     "The converted MTU was outside 1500 to 9216 and was set to the limit.",
     "Check that the value fits the traffic of the class."},
    {"IC053", severity_t::error, "An MTU is wrong",
     "The MTU of the result is not the size that the original has, as the two releases count it.",
     "Correct the value."},
    {"IC054", severity_t::warning, "An MTU was converted more than once",
     "On the way through several releases the number was changed by more than the difference "
     "between the first and the last.",
     "Correct the value, or take a way that converts it once."},
    {"IC055", severity_t::error, "Packets that several classes match belong to another one",
     "A packet belongs to the first class that matches it. These classes share a match line, and "
     "they changed places, or the one in front is gone or new.",
     "Give the classes their former order."},
    {"IC056", severity_t::error, "A VLAN is gone or new",
     "The result defines other VLANs than the original.", "Correct the list of VLANs."},
    {"IC057", severity_t::note, "A map is not used",
     "No policy-map names the class-map, or nothing attaches the policy-map.",
     "Remove the map if it is not meant for later."},
    {"IC058", severity_t::warning, "A line that the original's release does not read either",
     "The original holds a line that its own release refuses, so it has no effect today. The "
     "conversion did not make it worse.",
     "Repair the original before the conversion, or remove the line."},
    {"IC059", severity_t::error, "Traffic is in another qos-group",
     "The policy of type qos under \"system qos\" puts traffic together that was apart, or apart "
     "what was together. No policy of type queuing or network-qos names the group, but each group "
     "has a queue of its own.",
     "Let the classes set the qos-groups of the original."},
    {"IC060", severity_t::error, "Typed text where the older release writes none",
     "Releases before 4.1(3) write maps without a type. Typed maps in a configuration that is "
     "said to come from such a release are converted once more and come out damaged: probably "
     "the release is wrong, or the file was converted already.",
     "Check --from; do not convert a file a second time."},
    {"IC061", severity_t::error, "Untyped text where the release writes types",
     "Releases from 4.1(3) on write every map and attachment with a type. The converters of "
     "these releases pass over untyped class-maps, and stop at untyped policy-maps.",
     "Check --from, or write the types."},
    {"IC064", severity_t::warning, "Another release wrote the configuration",
     "The configuration names another release in its \"version\" line than the one that it is "
     "converted from. With the wrong release the wrong rules apply.",
     "Check --from."},
    {"IC065", severity_t::warning, "The last line has no end",
     "The configuration does not end with a newline, so it may be cut off. A rewrite at the last "
     "line may come out joined with what follows it.",
     "Compare the file with its source, and end it with a newline."},
    {"IC066", severity_t::error, "VLAN 0",
     "A list of VLANs that has a gap or an end without a number gives a stanza for VLAN 0, which "
     "does not exist.",
     "Correct the list of VLANs in the original."},
    {"IC067", severity_t::error, "A VLAN lost or gained fcoe",
     "The VLANs for which the result enables FCoE are not those of the original.",
     "Correct the list of VLANs in the original, or write the stanza by hand."},
    {"IC068", severity_t::error, "Fabric extender lines stay in the old order",
     "The release wants \"switchport mode fex-fabric\" ahead of \"fex associate\".",
     "Convert the service satmgr too, or put the two lines in order by hand."},
    {"IC069", severity_t::error, "fcoe of a VLAN stands where the release does not read it",
     "Releases 5, for a configuration that comes from 4.1, read \"fcoe\" in a stanza of one VLAN "
     "with nothing else.",
     "Convert the service assoc too, or write a stanza for each VLAN."},
    {"IC090", severity_t::error, "The conversion failed",
     "A converter could not convert the configuration and nothing would be written.",
     "Change what the reason names, and convert again."},
    {"IC091", severity_t::error, "The target has no form for this",
     "Releases before 4.1(3) let an interface have network-qos actions (pause, mtu and others), "
     "and number only four classes of your own under \"system qos\" on the way up; releases "
     "before 4.1(3) take one policy at a place and direction. What goes beyond cannot be "
     "converted.",
     "Change it in the original before the conversion."},
};

// Codes of former findings, which keep their meaning but are not found any more. Commands that name
// them go on working.
struct retired_kind_t {
    const char *code, *title, *reason;
};

inline constexpr retired_kind_t retired_kind_table[] = {
    {"IC022", "A map stands twice",
     "The release reads stanzas of one name as one map, and the effects are compared."},
    {"IC031", "A qos-group changed",
     "Numbers are means: IC037 to IC039 tell when traffic meets another effect."},
    {"IC033", "A class disappeared from its policy-map", "A class without actions has no effect."},
    {"IC042", "An attachment changed its direction",
     "Marking takes place on input in every form; IC036 tells of effects in another direction."},
    {"IC045", "A command keeps its older spelling", "The release reads it, or IC044 tells."},
    {"IC050", "An MTU was converted",
     "It is the same size; infraconvert effects shows the values."},
    {"IC062", "Maps stand behind what attaches them", "What comes of it is told as an effect."},
    {"IC063", "A keyword inside another line", "What comes of it is told as an effect."},
    {"IC070", "A second conversion would change the result again",
     "IC060 refuses text that was converted already; plans refuse a second run."},
    {"IC080", "Lines that no rule looked at", "Every line is compared."},
};

// A code of the table; one that is not in it does not compile.
void this_code_has_no_row_in_finding_kind_table(); // a name for the compiler to quote
class finding_code_t {
  public:
    consteval finding_code_t(const char *code) {
        bool known = false; // not asked of the row: under sanitizers its address is no constant
        for (const finding_kind_t &kind : finding_kind_table) {
            if (std::string_view(kind.code) != code)
                continue;
            row = &kind;
            known = true;
        }
        if (!known)
            this_code_has_no_row_in_finding_kind_table();
    }
    const finding_kind_t &kind() const { return *row; }
    const char *name() const { return row->code; }            // "IC041"
    auto operator<=>(const finding_code_t &) const = default; // in the order of the table

  private:
    const finding_kind_t *row = nullptr;
};

} // namespace infraconvert
