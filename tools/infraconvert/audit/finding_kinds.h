// The table of what an audit can find. The codes are part of the interface: a code keeps its
// meaning for good, and new findings take new codes.
#pragma once

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
    {"IC001", severity_t::error, "A line that no rule covers is missing or changed",
     "Every line outside the features that this pair of releases converts must come out as it "
     "went in. This one did not. Usually a converter took a text in it for a command, or removed "
     "a range of lines in which it stood.",
     "Compare the line in the difference, and restore it after the conversion."},
    {"IC002", severity_t::error, "A line that no rule covers appeared",
     "The result holds a line outside the converted features that the original does not have.",
     "Remove the line after the conversion, or find out in the difference where it comes from."},
    {"IC003", severity_t::error, "A line stands under the wrong stanza",
     "A line that belonged to one stanza now stands under another, because the first line of its "
     "own stanza was removed and the line itself was not. The switch would take it for a part of "
     "the stanza above it.",
     "Remove the line from the result."},
    {"IC004", severity_t::warning, "A text inside a line was rewritten",
     "The converters of features replace their keywords wherever they stand, so also in "
     "descriptions, banners, and commands of other features.",
     "Check the line; restore the original text where it is not a command of the feature."},
    {"IC010", severity_t::error, "A class without its class-map",
     "A policy-map of the result names a class for which the result has no class-map of that "
     "type, although the original had one. The switch refuses the class.",
     "Write the class-map, or take the class out of the policy-map."},
    {"IC011", severity_t::warning, "A class that has no class-map in the original either",
     "A policy-map names a class for which neither the original nor the result has a class-map.",
     "Repair the original before the conversion, or remove the class."},
    {"IC012", severity_t::error, "An attachment without its policy-map",
     "The result attaches a policy-map of a type that the result does not define, although the "
     "original did. The switch refuses the attachment.",
     "Write the policy-map, or remove the attachment."},
    {"IC013", severity_t::warning, "An attachment that has no policy-map in the original either",
     "A policy-map is attached that neither the original nor the result defines.",
     "Repair the original before the conversion, or remove the attachment."},
    {"IC014", severity_t::warning, "A class-map that matches nothing",
     "A typed class-map came out without a match line. Queuing and network-qos class-maps match "
     "qos-groups, and only classes of the policy attached under \"system qos\" get one. The class "
     "exists, but no traffic reaches it.",
     "Give the class a qos-group: add \"match qos-group\" to the class-map and \"set qos-group\" "
     "to the class in the type qos policy-map."},
    {"IC020", severity_t::error, "A class-map vanished",
     "The original defines a class-map whose name no class-map of the result has.",
     "Write the class-map again in the form of the new release."},
    {"IC021", severity_t::error, "A policy-map vanished",
     "The original defines a policy-map whose name no policy-map of the result has.",
     "Write the policy-map again in the form of the new release."},
    {"IC022", severity_t::note, "A map stands twice",
     "The result has more stanzas of this type and name than the original. The switch reads them "
     "one after the other into one map, and later values replace earlier ones.",
     "Nothing to do when the later stanza is complete; it shows once only after the next save."},
    {"IC023", severity_t::error, "A class-map changed its match lines",
     "The match lines of a class-map differ between original and result, so it selects other "
     "traffic. A qos-group is not counted where only one of the two forms has it.",
     "Restore the match lines."},
    {"IC024", severity_t::error, "A class-map has contradicting match criteria",
     "The conversion puts \"match-any\" in front of every name of a type qos class-map, also "
     "where one of \"match-any\" and \"match-all\" stands already. The switch refuses the line.",
     "Leave one of the two words."},
    {"IC025", severity_t::note, "A description is gone",
     "The conversion removes descriptions that stand right below the first line of a class-map or "
     "a policy-map.",
     "Keep the text elsewhere if it matters."},
    {"IC026", severity_t::warning, "A class-map without match lines of its own is gone",
     "It matched a qos-group or nothing. The older form has no qos-groups to match, so nothing "
     "was left of it.",
     "Nothing, if the policies say what they should; see the class in the policy-map."},
    {"IC027", severity_t::warning, "A control-plane map is gone",
     "The older release has no control-plane policies, so the conversion removes the first lines "
     "of their maps, the classes named copp and the police actions.",
     "Nothing, if the rest of these maps is gone too; look for the findings next to this one."},
    {"IC030", severity_t::error, "An action disappeared",
     "A class of the original has an action that it has in no policy-map of that name in the "
     "result. Actions are lost when they belong to no type (qos, queuing, network-qos), and \"set "
     "qos-group\" is lost in policies that are not attached under \"system qos\" and hold actions "
     "of other types too.",
     "Add the action to the policy-map of the right type."},
    {"IC031", severity_t::warning, "A qos-group changed",
     "The conversion numbers the classes of the policy under \"system qos\" anew, from 2 on. What "
     "else refers to the old number no longer meets this class.",
     "Check everything that names the qos-group, on this switch and in the policies around it."},
    {"IC032", severity_t::error, "Marking is gone",
     "The older form is written without \"set qos-group\". Classes of the policy under \"system "
     "qos\" number themselves; elsewhere, and where that policy has no such class, nothing marks "
     "the traffic any more.",
     "Add the \"set qos-group\" actions again after the downgrade where they are needed."},
    {"IC033", severity_t::warning, "A class disappeared from its policy-map",
     "The original's policy-map has a class without actions that no policy-map of that name has "
     "in the result.",
     "Add the class to the policy-map of the right type."},
    {"IC034", severity_t::error, "An action or class appeared",
     "A class of the result has an action, or a policy-map a class, that the original has in no "
     "policy-map of that name. A line was taken for a part of a map to which it does not belong.",
     "Remove it from the policy-map."},
    {"IC040", severity_t::error, "An attachment disappeared",
     "A policy-map that is attached in the original, and still has actions of that kind in the "
     "result, is not attached there any more.",
     "Attach the policy-map again by its type. Before 4.1(3) a place takes one policy: put the "
     "actions into that."},
    {"IC041", severity_t::error, "A policy that only marks is not attached any more",
     "The conversion writes type qos attachments only for the policy under \"system qos\", and "
     "none for older releases. A policy-map that classifies and marks is kept, but where it was "
     "attached elsewhere the attachment is gone, and traffic there is no longer marked.",
     "Attach it again by hand: \"service-policy type qos input NAME\", before 4.1(3) without "
     "\"type qos\"."},
    {"IC042", severity_t::warning, "An attachment changed its direction",
     "A policy-map that was attached for output is attached for input only in the result.",
     "Check which direction is meant, and correct the attachment."},
    {"IC043", severity_t::error, "Text stayed in the form of the old release",
     "A map or an attachment came out without a type for a release that needs one, or with a type "
     "for a release that knows none. Attachments ahead of the first class-map or policy-map, and "
     "lines that are indented in another way than the switch writes, are passed over.",
     "Rewrite the line by hand, or put the configuration in the order in which the switch saves "
     "it and convert again."},
    {"IC044", severity_t::warning, "A command stays in the form of the other release",
     "The two releases spell this command differently, but no rule rewrites it here.",
     "Rewrite the command by hand after the conversion; see infraconvert explain for the rules."},
    {"IC045", severity_t::note, "A command keeps its older spelling",
     "The newer release writes this command differently, and no rule rewrites it on an upgrade. "
     "Whether the newer release still reads the older spelling is not known here.",
     "Look for the command after the upgrade."},
    {"IC046", severity_t::warning, "A match criterion that the older release does not write",
     "Releases from 5.0(2) on write \"match-any\" in type qos class-maps. The conversion takes it "
     "away for 4.1(3) only; for older releases it stays, and they may refuse the line or take the "
     "word for the name.",
     "Take \"match-any\" out of the line."},
    {"IC050", severity_t::note, "An MTU was converted",
     "Values of an MTU are 38 lower from one release on than before it. The value was converted "
     "by that rule.",
     "Nothing."},
    {"IC051", severity_t::warning, "An MTU was not converted",
     "An upgrade across these releases converts MTU values by 38 bytes. This conversion leaves "
     "the value as it is, so that after an upgrade and a rollback it is not what it was.",
     "Compare the value with the one from before the upgrade and correct it."},
    {"IC052", severity_t::warning, "An MTU met a limit",
     "The converted MTU was outside 1500 to 9216 and was set to the limit.",
     "Check that the value fits the traffic of the class."},
    {"IC053", severity_t::error, "An MTU is wrong",
     "The MTU of the result is neither the original's nor the one that the conversion between "
     "these releases gives.",
     "Correct the value."},
    {"IC060", severity_t::error, "Typed text where the older release writes none",
     "Releases before 4.1(3) write maps without a type. Typed maps in a configuration that is "
     "said to come from such a release are converted once more and come out damaged: probably the "
     "release is wrong, or the file was converted already.",
     "Check --from; do not convert a file a second time."},
    {"IC061", severity_t::warning, "Untyped text where the release writes types",
     "Releases from 4.1(3) on write every map and attachment with a type. The converters of these "
     "releases pass over untyped class-maps, and stop at untyped policy-maps.",
     "Check --from, or write the types."},
    {"IC062", severity_t::warning, "Maps stand behind what attaches them",
     "The switch saves class-maps and policy-maps ahead of \"system qos\" and the interfaces, and "
     "the converters count on it. In another order they pass over attachments, or remove what "
     "stands between the maps.",
     "Move the class-maps and policy-maps ahead of \"system qos\" and the interfaces."},
    {"IC063", severity_t::warning, "A keyword inside another line",
     "\"class-map\" or \"policy-map\" stands inside a line of another command, behind the start "
     "of the maps. The conversion to types reads maps wherever the word stands.",
     "Change the text, for example in a description, before the conversion."},
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
     "The VLANs for which the result enables FCoE are not those of the original. Lists that are "
     "not written as numbers and ranges between commas are read only in part.",
     "Correct the list of VLANs in the original, or write the stanza by hand."},
    {"IC068", severity_t::warning, "Fabric extender lines stay in the old order",
     "The new release wants \"switchport mode fex-fabric\" ahead of \"fex associate\".",
     "Convert the service satmgr too, or put the two lines in order by hand."},
    {"IC070", severity_t::note, "A second conversion would change the result again",
     "The converters do not see that a configuration is converted already. Run twice, this "
     "conversion damages it.",
     "Convert once. Keep the original, and a plan (preview --save-plan), which refuses a second "
     "run."},
    {"IC080", severity_t::note, "Lines that no rule looked at",
     "They came out as they went in. Whether the new release still takes them is not checked.",
     "Read the release notes for the commands of these stanzas."},
    {"IC090", severity_t::error, "The conversion failed",
     "A converter could not convert the configuration and nothing would be written.",
     "Change what the reason names, and convert again."},
};

// A code of the table; one that is not in it does not compile.
void this_code_has_no_row_in_finding_kind_table(); // a name for the compiler to quote
class finding_code_t {
  public:
    consteval finding_code_t(const char *code) {
        for (const finding_kind_t &kind : finding_kind_table) {
            if (std::string_view(kind.code) == code)
                row = &kind;
        }
        if (!row)
            this_code_has_no_row_in_finding_kind_table();
    }
    const finding_kind_t &kind() const { return *row; }

  private:
    const finding_kind_t *row = nullptr;
};

} // namespace infraconvert
