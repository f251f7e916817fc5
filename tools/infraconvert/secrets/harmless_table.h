// What is known to be harmless, written as a configuration of patterns (line_pattern.h). Whatever
// is not here does not show: a line shows as far as its first words are a whole line of a row, and
// what follows them does not. So a row ends in front of the first word that may be a secret
// ("snmp-server community"), and a row is written only when anybody may see every line that fits
// it.
//
// First lines that follow one another share the rows behind them as lines of their stanzas. The
// lines of an unknown stanza do not show.
#pragma once

#include <string_view>

namespace infraconvert {

// Lines that may stand in any stanza.
constexpr std::string_view harmless_everywhere = R"(
!
#
exit
end
)";

// A conversion may leave lines of maps behind under another stanza, which is worth seeing: whole
// lines of these show under every stanza whose first line is known.
constexpr std::string_view harmless_maps = R"(
class-map [type %type] {match-any|match-all} %map
    description
    match [not] any|all
    match [not] cos|qos-group|vlan %list
    match [not] [ip] dscp|precedence|tos {%points}
    match [not] ip rtp %list
    match [not] packet length %list
    match [not] access-group [name] %map
    match [not] access-list %map
    match [not] class-map %map
    match [not] protocol %name
    match [not] exception [ip|ipv6] %name
    match [not] redirect %name

policy-map [type %type] [match-first] %map
    description
    class [type %type] %map [insert-before %map]
    bandwidth [remaining] [percent] %number [%unit]
    priority [level %number]
    priority %number %unit
    pause [no-drop] [buffer-size %number] [pfc-cos %list]
    pause no-drop [buffer-size %number pause-threshold %number resume-threshold %number]
    pause pfc-cos %list
    mtu %number
    multicast-optimize
    queue-limit [percent] %number [%unit]
    congestion-control tail-drop
    congestion-control random-detect [ecn]
    random-detect [threshold]
    shape [average|min|max] [percent] %number [%unit]
    police [aggregate] [cir|pps|percent] %number [%unit] [bc|burst %number [%unit]] [pir %number [%unit]] [be %number [%unit]] {conform|exceed|violate|transmit|drop|set-qos-transmit}
    set cos|qos-group|discard-class|vlan %number
    set [ip] dscp|precedence %points
    service-policy [type %type] %map

system qos
control-plane
    service-policy [type %type] [input|output] %map
    scale-factor %decimal module %number
)";

constexpr std::string_view harmless_table = R"(
npiv enable
feature %name
port-security|fc-port-security enable
port-security|fc-port-security distribute
port-security|fc-port-security activate|commit|abort|auto-learn [vsan %list] [force] [no-auto-learn]
port-security|fc-port-security database [vsan %list]
    pwwn|nwwn|swwn|fwwn %wwn {pwwn|nwwn|swwn|fwwn %wwn} [interface %interface [- %interface]]
    any-wwn [interface %interface [- %interface]]
    any-wwn fwwn|swwn %wwn

mac-address-table aging-time %number [vlan %vlan]
mac address-table aging-time %number [vlan %vlan]
mac-address-table static|multicast %mac vlan %vlan [drop] [interface %interface]
mac address-table static|multicast %mac vlan %vlan [drop] [interface %interface]
mac-address-table notification|loop-detect|limit|learning|synchronize [mac-move|threshold|port-down]
mac address-table notification|loop-detect|limit|learning|synchronize [mac-move|threshold|port-down]

vlan [configuration] %list
vlan database
    name %map
    fcoe [vsan %vlan]
    state active|suspend
    shutdown
    mode ce|fabricpath
    remote-span
    private-vlan primary|isolated|community
    private-vlan association [add|remove] %list
    mtu %number
    vn-segment %number
    ip igmp snooping
    vlan %list [name %map] [state active|suspend]

vsan database
    vsan %list
    vsan %list name %map
    vsan %list interface %interface
fcdomain fcid database
    vsan %vlan wwn %wwn fcid %hex [dynamic|area]
fcdomain domain %number [static|preferred] vsan %list
fcdomain priority %number vsan %list
zone name %name vsan %list
    member pwwn|fwwn|nwwn %wwn
    member fcid %hex
    member device-alias|fcalias %name
    member interface %interface [swwn %wwn]
zoneset name %name vsan %list
    member %name
zoneset activate name %name vsan %list
zoneset distribute full vsan %list
zone mode enhanced vsan %list
zone default-zone permit vsan %list
device-alias database
    device-alias name %name pwwn %wwn
device-alias mode enhanced
device-alias commit
fcoe fcmap %hex
fcoe fka-adv-period %number
fcoe veloopback
fcns|fspf|fcs|rscn|fcc|fcsp|fcip|ivr|npv|san-port-channel

interface %interface [- %slot|%interface]
interface ethernet|port-channel|vlan|loopback|mgmt|vfc|fc|tunnel|range %slot [- %slot]
interface
description
    description
    shutdown
    switchport
    switchport mode access|trunk|fex-fabric|fabricpath|dot1q-tunnel|private-vlan|E|F|NP|SD|auto|vntag [host|promiscuous|trunk]
    switchport access|voice vlan %vlan
    switchport trunk native vlan %vlan
    switchport trunk allowed vlan|vsan [add|remove|except|all|none] [%list]
    switchport vsan %vlan
    switchport speed %number|auto
    switchport host|block|monitor|autostate|dot1q|nonegotiate
    switchport private-vlan host-association|mapping %list [%list]
    switchport port-security [maximum %vlan] [violation protect|restrict|shutdown]
    fex associate %number
    fcoe
    channel-group %number [force] [mode active|on|passive]
    vpc %number
    vpc peer-link
    bind interface %interface
    bind mac-address %mac
    service-policy [type %type] [input|output] %map
    mtu %number
    speed %number|auto
    duplex full|half|auto
    bandwidth %number
    delay %number
    medium p2p|broadcast
    carrier-delay %number
    load-interval [counter %number] %number
    lacp rate fast|normal
    lacp port-priority|min-links|max-bundle %number
    lacp suspend-individual|graceful-convergence
    cdp enable
    lldp transmit|receive|enable
    udld enable|disable|aggressive
    flowcontrol receive|send on|off
    priority-flow-control mode on|off|auto
    negotiate auto
    storm-control broadcast|multicast|unicast level %decimal
    spanning-tree port type edge|network|normal [trunk]
    spanning-tree port-priority %number
    spanning-tree bpduguard|bpdufilter enable|disable
    spanning-tree guard root|loop|none
    spanning-tree link-type auto|point-to-point|shared
    spanning-tree [vlan|mst %list] cost|port-priority %number
    ip|ipv6 address %address [%netmask] [secondary]
    ip address dhcp
    ip access-group %name in|out
    ip|mac port access-group %name in
    ip router ospf %name area %address|%vlan
    ip ospf cost|priority|hello-interval|dead-interval %number
    ip ospf network point-to-point|broadcast
    ip ospf passive-interface
    ip pim sparse-mode
    ip igmp version %number
    ip redirects|unreachables|directed-broadcast|proxy-arp
    ip port-unreachable
    ip arp timeout %number
    ip dhcp relay address %address
    ip dhcp snooping trust
    ip verify unicast source reachable-via any|rx
    ipv6 nd|redirects
    vrf member %name
    encapsulation dot1q %vlan
    hsrp version %number
    hsrp %number [ipv4|ipv6]
    vrrp|glbp|standby %number
    ip %address [secondary]
    priority %number
    preempt [delay minimum %number]
    timers %number %number
    track %number [decrement %number]
    management
    beacon
    logging event port link-status|trunk-status
    negotiation|rate-mode|fec auto|dedicated|shared|off
    tunnel source %address|%interface
    tunnel destination %address
    tunnel mode gre ip
    authentication
    snmp trap link-status
    ip|ipv6|isis|ospf|mpls|ptp|dot1x|bfd|ppp|tunnel|lisp|otv|mka|macsec|cts|fcsp|fcip|spanning-tree

fex %list
    description
    pinning max-links %number
    fcoe
    beacon
slot %number
    port %list type fc|ethernet
    provision model %name
port-profile [type ethernet|vethernet|interface-vlan|port-channel] %name
vpc domain %number
    role priority %number
    system-priority %number
    peer-keepalive destination %address [source %address] [vrf %name] [interval %number timeout %number]
    peer-gateway|peer-switch|auto-recovery|graceful
    delay restore %number
    ip arp synchronize
vrf context %name
    ip|ipv6 route %address [%netmask] %address|%interface
    ip name-server {%address}
    ip domain-name|domain-list %name
    address-family ipv4|ipv6 unicast
monitor session %number [type erspan-source|local]
    description
    source interface %interface [both|rx|tx]
    source vlan %list [both|rx|tx]
    destination interface %interface
    shut

ip|ipv6|mac access-list [extended|standard] %name
    statistics per-entry
    [%number] remark
    [%number] permit|deny %protocol [host] any|%address [%address] [eq|gt|lt|neq %port] [range %port %port] [host] any|%address [%address] [eq|gt|lt|neq %port] [range %port %port] [established|fragments|echo|echo-reply] [log]
    [%number] permit|deny any|%mac any|%mac
    [%number] permit|deny %mac %mac any|%mac [%mac]
ip|ipv6 prefix-list %name [seq %number] permit|deny %address [eq|ge|le %number]
route-map %name [permit|deny] [%number]
    description
    match ip|ipv6 address [prefix-list] %name
    match interface %interface
    match tag|metric %number
    set local-preference|metric|tag|weight %number
    set ip next-hop %address
object-group ip address|port %name
    host %address
    [%number] %address
time-range %name
key chain
router ospf|ospfv3|eigrp|isis|rip %id
router bgp %number
    description
    router-id %address
    log-neighbor-changes|log-adjacency-changes [detail]
    area %address|%vlan stub|nssa [no-summary]
    area %address|%vlan range %address [%netmask]
    area %address|%vlan authentication
    area %address|%vlan virtual-link %address
    network %address [area %address|%vlan]
    passive-interface default
    auto-cost reference-bandwidth %number
    default-information originate
    maximum-paths %number
    address-family ipv4|ipv6|vpnv4|l2vpn [unicast|multicast|evpn]
    neighbor %address [remote-as %number]
    neighbor %address shutdown|next-hop-self|send-community
    remote-as %number
    update-source %interface
    ebgp-multihop %number
    send-community [both|standard|extended]
    next-hop-self|soft-reconfiguration|route-reflector-client|shutdown
    template peer %name
    vrf %name
    redistribute direct|static|ospf|bgp [route-map %name]

version %release
hostname|switchname %name
clock timezone %name %slot %slot
clock protocol ntp
license grace-period
cfs ipv4|ipv6|eth distribute
cdp|lldp|udld enable|run|aggressive
lldp timer|holdtime|reinit %number
vtp mode transparent|server|client|off
errdisable recovery cause %name
errdisable recovery interval %number
spanning-tree mode rapid-pvst|pvst|mst
spanning-tree vlan %list [priority|root|hello-time|max-age|forward-time] [primary|secondary|%vlan] [%number]
spanning-tree mst %list priority %number
spanning-tree port type edge|network default
spanning-tree port type edge bpduguard|bpdufilter default
spanning-tree loopguard default
spanning-tree pathcost method long|short
spanning-tree mst configuration
    name %name
    revision %number
    instance %number vlan %list
system default switchport [shutdown]
system jumbomtu %number
system vlan %vlan reserve
hardware
lacp system-priority %number
port-channel load-balance
ip|ipv6 route %address [%netmask] %address|%interface
ip domain-lookup|routing
ip domain-name|domain-list %name
ip name-server {%address}
ip host %name %address
ip dhcp|igmp snooping [vlan %list]
ip pim rp-address %address [group-list %address]
ip msdp peer %address
ip http|ftp|tftp|ssh|scp|sla|nat|wccp|access-group|arp|tacacs|radius
ntp server|peer %address [prefer] [use-vrf %name]
ntp source %address
ntp source-interface %interface
ntp distribute|commit|master|logging|authenticate
ntp authentication-key|trusted-key|access-group
logging server %address
logging level %name %number
logging console|monitor|module %number
logging timestamp milliseconds|microseconds|seconds
logging logfile|event|host|source-interface
snmp-server host %address
snmp-server user %name [network-admin|network-operator|vdc-admin|vdc-operator]
snmp-server community|contact|location|enable|group|view|engineID|context
username %name
role name %name
ssh key|login-attempts
telnet server enable
radius-server|tacacs-server|ldap-server host %address
radius-server|tacacs-server|ldap-server timeout|deadtime|retransmit %number
radius-server|tacacs-server|ldap-server key|directed-request|test
radius|tacacs server
aaa group server radius|tacacs+|ldap %name
    server %address
    use-vrf %name
    source-interface %interface
    deadtime %number
aaa authentication|authorization|accounting [login|commands|config-commands|default|console] [default|console] [group %name] [local|none]
enable|crypto|callhome|scheduler|banner|alias|cli|track|event|mpls|telemetry|archive|kron|macro|menu
aaa|bfd|class-map|clock|copp|cts|dot1x|dot11|eap|fabricpath|fips|flow|guest|icmp|iscsi|isis|key|lisp
lldp|mac|macsec|mka|openflow|otv|password|policy-map|ptp|radius|rmon|rsvp|service-policy|sntp|snmp
spanning-tree|ssl|switchport|system|tacacs|tunnel|udld|vlan|vtp|wireless|wlan|zone|ip|ipv6|boot
line console|vty|com1|aux [%number] [%number]
    exec-timeout %number [%number]
    session-limit|speed|databits|stopbits %number
    access-class %name in|out
boot system|kickstart|manager|config|host|auto-copy [%file] [sup-1|sup-2]
)";

} // namespace infraconvert
