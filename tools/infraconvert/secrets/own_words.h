// The words in which findings, reasons and the converters' logs tell about a configuration. None of
// them tells anything about it by itself. A word that is missing here is masked where it is told.
#pragma once

#include <string_view>

namespace infraconvert {

constexpr std::string_view own_words = R"(
a aborting action actions added adding address address-table addresses again ahead all allocate allocating already always
alter altering an
an-infraconvert and another any are argument as ascii asks assign assigned associate association at attached
attachment attachments back bandwidth banner be becomes been before beginning begins behind belong belongs below
besides between blank block both breaks buf buffer but by byte bytes byteto c called calling can cannot carriage carried
carries case change changed changes character characters class class-all-flood class-default class-fcoe
class-ip-multicast class-map class-maps classes close cnv code come comes command commands completed
configuration contradicts control-plane conversion convert convert_startup converted converter converters
convertion copp copy cos could counted created creating criteria database default define defines
definition delete deleted deleting depth description descriptions did differ different differs dir
direction directions disk does done down downgrade drop drops dump duplicate dscp each effect effects eight
either else empty enable enabled end end_cp entered entering entry eq error every exactly exist existing
exit expand expected expects extender fabric failed failure failures fc-port-security fcoe fcportsec feature
features fewer fex fex-fabric file file_start_qossection fits fitting first five flag following for form
format found four freeing from from_major from_minor from_patch from_product from_subversion from_ver front
full function further fwm fwmcnv gained gave ge get given gives go goes gone got greater group groups gt
had half has have header headers here high higher hit holds however if ignoring in indentation indented input
insert inserted inserting install instead interchange interface interfaces interleaved into invalid invoked is it its
itself joins k keep keeps kept kesto keyword kind lack last later lead leads leaves left length less level like limit
line
lines list location log longer looking looks lost low lower lowered m mac mac-address-table make makes many map maps
mark marked marking match match-all match-any matched matches matching may mean means meet meets member memory met
missing mode more most moved mtu mts_q multicast-optimize must name named names neither network-qos new newer
next no none non-matching non-user nonvolatile nor not nothing now nowhere null number numbers of off offset old older
on once one ones only open opened or order original other others out outgrow outside output own packets parent part
pass passed
past path pause pkg_name place places platform pmap point police policies policy policy-map policy-maps
policymap policymaps port port-security position precedence print printing priority proc process processing qos
qos-group qos-groups qosgrp queue queue-limit queues queuing range raised reach read reading reads ready
refused refusing release releases removing repeats replaced requred required reset result results return
returned rewritten right room row rows rule s same satmgr save saved says schedule scheduling scratch search
second section security see seen service service-policies service-policy set sets several shared should shown single
size skip skipping so something source special spelling stands stanza stanzas start starting startup state stay stays step still
stood stop stopped str str1 success succesfully sucessfully switch switchport system table take taken takes
target testing text than that the their them then there these they thing things this those three through to
to_major to_minor to_patch to_product to_subversion to_ver together too total traffic train trust try turned
twice two type typed types unassigned unattached unchanged uncompress under undirected unexpected
unexpectedly unified-fabric unknown until untyped up updated updating upgrade use used user uses using uuid
value values ver vers version versions vlan vlans volatile vsan vsans was way were what when where which whole
whose will with within without word words would write writes writing written wrong wrote x zero
assoc fwm satmgr stand messages qosmgr infraconvertascii_startup libinfraconvertascii_init
infraconvertascii_mts_q satcnv_swap_switchport_mode ./ascii/system.cfg k0(0)to_major such may find section related
ver_same qos-related finding entering right lost log_init
invalid/unassigned unified-fabric/network-qos vlan-fcoe npiv feature infraconvert infraconvert_startup
--from alike blanks check converts do edit errors fc gets hold look mend much needs refuses restore say
mon tue wed thu fri sat sun jan feb mar apr may jun jul aug sep oct nov dec
)";

} // namespace infraconvert
