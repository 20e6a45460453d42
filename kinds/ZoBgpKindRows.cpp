// The assigned kinds of extended communities, from the IANA registry "BGP Extended Communities" and
// the standards that the rows name. This is the one place that knows a kind: a further kind is a
// further row, and the compiler refuses one that overlaps another or leaves out bits.
//
//   extended(0x06, 0x00, "MAC Mobility", "RFC7432 7.7", "mac-mobility", macMobilityFields,
//            "0600010000000043")
//
// A row is type, subtype, registered name, reference, identifier, fields, an example. Behind it may
// stand `.draft()` for an identifier from the draft on textual representation (others are
// proposals of this library), `.known(...)` for a layout that was not read in the standard's text,
// `.reads(...)` for other identifiers that texts may have, and `.says(...)` for a note.
#include "kinds/internal/ZoBgpKindRows.h"

#include "kinds/ZoBgpKindCheck.h"

namespace Routing::Bgp {
namespace {

using enum KindForm;
using enum KindEvidence;

// A field is name, first bit, bits, form and, of enumerations and flags, the names.
consteval KindField admin(KindField field) {
  field.globalAdministrator = true;
  return field;
}
consteval KindField optional(KindField field, U16 first = 0) {
  field.optional = true;
  field.first = first;
  return field;
}

struct Row : Kind {
  consteval Row draft() const {
    Row row = *this;
    row.source = KindSource::draft;
    return row;
  }
  consteval Row known(KindEvidence by) const {
    Row row = *this;
    row.evidence = by;
    return row;
  }
  consteval Row reads(std::span<const std::string_view> words) const {
    Row row = *this;
    row.aliases = words;
    return row;
  }
  consteval Row says(std::string_view text) const {
    Row row = *this;
    row.note = text;
    return row;
  }
};

consteval Row extended(U8 type, U8 subtype, std::string_view name, std::string_view reference,
                       std::string_view identifier, std::span<const KindField> fields,
                       std::string_view example) {
  return {{.type = type,
           .subtype = subtype,
           .name = name,
           .reference = reference,
           .identifier = identifier,
           .fields = fields,
           .example = example}};
}
consteval Row extendedIp6(U8 type, U8 subtype, std::string_view name, std::string_view reference,
                          std::string_view identifier, std::span<const KindField> fields,
                          std::string_view example) {
  Row row = extended(type, subtype, name, reference, identifier, fields, example);
  row.attribute = BgpPathAttrType::extCommunityIp6;
  return row;
}

constexpr std::string_view l2VpnAs2Aliases[] = {"i2vpn-id-as2"};
constexpr std::string_view l2VpnIpv4Aliases[] = {"i2vpn-id-ipv4"};
constexpr std::string_view ospfDomainAs4Aliases[] = {"ospf-domain-ident-as4"};

constexpr std::string_view familyOnly =
    "sub-type text not read; RFC 4360/5668 family layout (global, local) used";
constexpr std::string_view costNote =
    "layout as two decoders and vendors' manuals agree; the draft itself not read";
constexpr std::string_view interfaceSetNote =
    "layout from a quotation of draft-ietf-idr-flowspec-interfaceset-03 Section 5, not from a "
    "standard";

constexpr KindField as2LocalFields[] = {admin({"global", 0, 16, as2}), {"local", 16, 32, integer}};
constexpr KindField as2RateFields[] = {admin({"global", 0, 16, as2}), {"rate", 16, 32, float32}};
constexpr KindField dataCollectionAs2Fields[] = {admin({"global", 0, 16, as2}),
                                                 {"reserved", 16, 16, reserved},
                                                 {"collection", 32, 16, dataCollection}};
constexpr KindField sixOctetsFields[] = {{"value", 0, 48, hex}};
constexpr KindField ipv4LocalFields[] = {admin({"global", 0, 32, ipv4}),
                                         {"local", 32, 16, integer}};
constexpr KindField dataCollectionIpv4Fields[] = {admin({"global", 0, 32, ipv4}),
                                                  {"collection", 32, 16, dataCollection}};
constexpr KindField as4LocalFields[] = {admin({"global", 0, 32, as4}), {"local", 32, 16, integer}};
constexpr KindField dataCollectionAs4Fields[] = {admin({"global", 0, 32, as4}),
                                                 {"collection", 32, 16, dataCollection}};
constexpr KindField costCommunityFields[] = {
    {"point-of-insertion", 0, 8, integer}, {"id", 8, 8, integer}, {"cost", 16, 32, integer}};
constexpr KindField noValueFields[] = {{"reserved", 0, 48, reserved}};
constexpr KindName ospfRouteTypes[] = {
    {1, "router"},       {2, "network"},          {3, "summary"},          {4, "summary-asbr"},
    {5, "as-external"},  {6, "group-membership"}, {7, "nssa-as-external"}, {9, "link-opaque"},
    {10, "area-opaque"}, {11, "as-opaque"}};
constexpr KindName ospfOptions[] = {{7, "TYPE-2-METRIC"}};
constexpr KindField ospfRouteTypeFields[] = {{"area", 0, 32, ipv4},
                                             {"route-type", 32, 8, enumeration, ospfRouteTypes},
                                             {"options", 40, 8, flags, ospfOptions}};
constexpr KindName pmsiTunnelFlags[] = {{47, "DCB"}};
constexpr KindField pmsiTunnelFlagsFields[] = {{"flags", 0, 48, flags, pmsiTunnelFlags}};
constexpr KindName labelSpaceIdTypes[] = {{0, "mpls-label"}};
constexpr KindField labelSpaceIdFields[] = {{"id-type", 0, 16, enumeration, labelSpaceIdTypes},
                                            {"id-value", 16, 32, integer}};
constexpr KindField colorFields[] = {{"color-only", 0, 2, integer},
                                     optional({"flags", 2, 14, flags}, 2),
                                     {"color", 16, 32, integer}};
constexpr KindName tunnelTypes[] = {{1, "l2tpv3"},       {2, "gre"},        {7, "ip-in-ip"},
                                    {8, "vxlan"},        {9, "nvgre"},      {10, "mpls"},
                                    {11, "mpls-in-gre"}, {12, "vxlan-gpe"}, {13, "mpls-in-udp"},
                                    {15, "sr-policy"},   {19, "geneve"}};
constexpr KindField encapsulationFields[] = {{"reserved", 0, 32, reserved},
                                             {"tunnel-type", 32, 16, enumeration, tunnelTypes}};
constexpr KindField localColorMappingFields[] = {{"reserved", 0, 16, reserved},
                                                 {"color", 16, 32, integer}};
constexpr KindName upaFlags[] = {{0, "D"}};
constexpr KindField upaFields[] = {
    {"flags", 0, 8, flags, upaFlags}, {"reserved", 8, 8, reserved}, {"router", 16, 32, ipv4}};
constexpr KindName validationStates[] = {{0, "valid"}, {1, "not-found"}, {2, "invalid"}};
constexpr KindField originValidationStateFields[] = {
    {"reserved", 0, 40, reserved}, {"state", 40, 8, enumeration, validationStates}};
constexpr KindName macMobilityFlags[] = {{7, "S"}};
constexpr KindField macMobilityFields[] = {{"flags", 0, 8, flags, macMobilityFlags},
                                           {"reserved", 8, 8, reserved},
                                           {"sequence", 16, 32, integer}};
constexpr KindName splitHorizons[] = {{1, "dcb"},
                                      {2, "local-bias"},
                                      {3, "local-bias-dcb"},
                                      {4, "esi-label-filtering"},
                                      {5, "esi-label-filtering-dcb"}};
constexpr KindName esiModes[] = {{0, "A"}, {1, "S"}};
constexpr KindField esiLabelFields[] = {
    optional({"split-horizon", 0, 3, enumeration, splitHorizons}),
    {"reserved", 3, 3, reserved},
    {"mode", 6, 2, enumeration, esiModes},
    {"reserved", 8, 16, reserved},
    {"label", 24, 24, label}};
constexpr KindField esImportTargetFields[] = {{"es-import", 0, 48, mac}};
constexpr KindField evpnRouterMacFields[] = {{"mac", 0, 48, mac}};
constexpr KindName evpnLayer2Controls[] = {{13, "C"}, {14, "P"}, {15, "B"}};
constexpr KindField evpnLayer2AttrsFields[] = {{"control", 0, 16, flags, evpnLayer2Controls},
                                               {"mtu", 16, 16, integer},
                                               {"reserved", 32, 16, reserved}};
constexpr KindName evpnEtreeFlags[] = {{7, "L"}};
constexpr KindField evpnEtreeFields[] = {{"flags", 0, 8, flags, evpnEtreeFlags},
                                         {"reserved", 8, 16, reserved},
                                         {"leaf-label", 24, 24, label}};
constexpr KindName dfAlgorithms[] = {{0, "default"},
                                     {1, "hrw"},
                                     {2, "highest-preference"},
                                     {3, "lowest-preference"},
                                     {31, "experimental"}};
constexpr KindName dfCapabilities[] = {
    {0, "DP"}, {1, "AC-DF"}, {3, "TIME-SYNC"}, {4, "BW"}, {5, "PORT"}};
constexpr KindField evpnDfElectionFields[] = {{"reserved", 0, 3, reserved},
                                              {"algorithm", 3, 5, enumeration, dfAlgorithms},
                                              {"capabilities", 8, 16, flags, dfCapabilities},
                                              {"reserved", 24, 8, reserved},
                                              {"preference", 32, 16, integer}};
constexpr KindName evpnArpNdFlags[] = {{4, "I"}, {6, "O"}, {7, "R"}};
constexpr KindField evpnArpNdFields[] = {{"flags", 0, 8, flags, evpnArpNdFlags},
                                         {"reserved", 8, 40, reserved}};
constexpr KindName multicastFlags[] = {
    {3, "EEG"},  {4, "SFG"},  {5, "SEMG"},  {6, "MVPN"},   {7, "SBD"}, {8, "SEG"}, {9, "IPMG"},
    {10, "MEG"}, {11, "PEG"}, {12, "OISM"}, {13, "EMHAR"}, {14, "M"},  {15, "I"}};
constexpr KindField evpnMcFlagsFields[] = {{"flags", 0, 16, flags, multicastFlags},
                                           {"reserved", 16, 32, reserved}};
constexpr KindField evpnSctFields[] = {{"seconds", 0, 32, integer}, {"fraction", 32, 16, integer}};
constexpr KindName directions[] = {{0, "OUTBOUND"}, {1, "INBOUND"}};
constexpr KindField interfaceSetFields[] = {admin({"global", 0, 32, as4}),
                                            {"direction", 32, 2, flags, directions},
                                            {"group", 34, 14, integer}};
constexpr KindField transportClassFields[] = {{"reserved", 0, 16, reserved},
                                              {"class", 16, 32, integer}};
constexpr KindField sfirPoolIdFields[] = {{"pool", 0, 48, integer}};
constexpr KindField sfcMplsLabelsFields[] = {{"context-label", 0, 20, integer},
                                             {"reserved", 20, 4, reserved},
                                             {"sf-label", 24, 20, integer},
                                             {"reserved", 44, 4, reserved}};
constexpr KindField mupDirectSegmentFields[] = {{"high", 0, 16, integer}, {"low", 16, 32, integer}};
constexpr KindName trafficActions[] = {{46, "SAMPLE"}, {47, "TERMINAL"}};
constexpr KindField trafficActionFields[] = {{"action", 0, 48, flags, trafficActions}};
constexpr KindField trafficMarkingFields[] = {{"reserved", 0, 42, reserved},
                                              {"dscp", 42, 6, integer}};
constexpr KindName layer2Controls[] = {{4, "T"}, {5, "R"}, {6, "C"}, {7, "S"}};
constexpr KindField layer2InfoFields[] = {{"encaps", 0, 8, integer},
                                          {"control", 8, 8, flags, layer2Controls},
                                          {"mtu", 16, 16, integer},
                                          {"preference", 32, 16, integer}};
constexpr KindName vplsEtreeFlags[] = {{0, "P"}, {1, "V"}};
constexpr KindField vplsEtreeInfoFields[] = {
    {"reserved", 0, 4, reserved},   {"root-vlan", 4, 12, integer},
    {"reserved", 16, 4, reserved},  {"leaf-vlan", 20, 12, integer},
    {"reserved", 32, 14, reserved}, {"flags", 46, 2, flags, vplsEtreeFlags}};
constexpr KindField sfcClassifierFields[] = {
    {"spi", 0, 24, integer}, {"si", 24, 8, integer}, {"sft", 32, 16, integer}};
constexpr KindField ipv6LocalFields[] = {admin({"global", 0, 128, ipv6}),
                                         {"local", 128, 16, integer}};

constexpr Kind rows[] = {
    // Transitive: a two-octet AS.
    extended(0x00, 0x02, "Route Target", "RFC4360 4", "route-target-as2", as2LocalFields,
             "0002fbf400000043")
        .draft(),
    extended(0x00, 0x03, "Route Origin", "RFC4360 5", "route-origin-as2", as2LocalFields,
             "0003fbf400000043")
        .draft(),
    extended(0x00, 0x04, "Link Bandwidth (transitive)", "RFC10005 2", "link-bandwidth-as2",
             as2RateFields, "0004fbf44e9502f9"),
    extended(0x00, 0x05, "OSPF Domain Identifier", "RFC4577 4.2.4, 4.2.6", "ospf-domain-id-as2",
             as2LocalFields, "0005fbf400000043")
        .draft(),
    extended(0x00, 0x06, "Route Aggregation Parameter", "(registry)",
             "route-aggregation-parameter-as2", as2LocalFields, "0006fbf400000043")
        .known(family),
    extended(0x00, 0x08, "BGP Data Collection", "RFC4384 4", "data-collection-as2",
             dataCollectionAs2Fields, "0008fbf400001a0c")
        .draft(),
    extended(0x00, 0x09, "Source AS", "RFC6514 6", "source-as2", as2LocalFields, "0009fbf400000043")
        .draft()
        .says("RFC 6514: local MUST be 0; shown as an integer, never malformed"),
    extended(0x00, 0x0a, "L2VPN Identifier", "RFC6074 3.2, 6; RFC4360 3.1", "l2vpn-id-as2",
             as2LocalFields, "000afbf400000043")
        .draft()
        .reads(l2VpnAs2Aliases),
    extended(0x00, 0x10, "VPN-Distinguisher", "(registry)", "vpn-distinguisher-as2", as2LocalFields,
             "0010fbf400000043")
        .known(family)
        .says(familyOnly),
    extended(0x00, 0x13, "Route-Target Record", "draft-ietf-bess-service-chaining",
             "route-target-record-as2", as2LocalFields, "0013fbf400000043")
        .known(family)
        .says(familyOnly),
    extended(0x00, 0x15, "RT-derived-EC", "draft-zzhang-idr-rt-derived-community-00",
             "rt-derived-as2", as2LocalFields, "0015fbf400000043")
        .known(family)
        .says(familyOnly),
    extended(0x00, 0x80, "Virtual-Network Identifier", "(registry)", "virtual-network-id",
             sixOctetsFields, "0080000102030405")
        .known(none),
    // Not transitive: a two-octet AS.
    extended(0x40, 0x04, "Link Bandwidth (non-transitive)", "RFC10005 2", "link-bandwidth-as2-nt",
             as2RateFields, "4004fbf44e9502f9"),
    extended(0x40, 0x80, "Virtual-Network Identifier",
             "draft-drao-bgp-l3vpn-virtual-network-overlays", "virtual-network-id-nt",
             sixOctetsFields, "4080000102030405")
        .known(none),
    // Transitive: an IPv4 address.
    extended(0x01, 0x02, "Route Target", "RFC4360 4", "route-target-ipv4", ipv4LocalFields,
             "0102c00002010043")
        .draft(),
    extended(0x01, 0x03, "Route Origin", "RFC4360 5", "route-origin-ipv4", ipv4LocalFields,
             "0103c00002010043")
        .draft(),
    extended(0x01, 0x04, "IPv4-Address-Specific IFIT Tail", "draft-wang-idr-bgp-ifit-capabilities",
             "ifit-ipv4", ipv4LocalFields, "0104c00002010043")
        .known(family)
        .says(familyOnly),
    extended(0x01, 0x05, "OSPF Domain Identifier", "RFC4577 4.2.4, 4.2.6", "ospf-domain-id-ipv4",
             ipv4LocalFields, "0105c00002010043")
        .draft(),
    extended(0x01, 0x07, "OSPF Router ID (registry: OSPF Route ID)", "RFC4577 4.2.6",
             "ospf-router-id-ipv4", ipv4LocalFields, "0107c00002010043")
        .draft()
        .says("router id is the first four octets; the last two are unspecified and shown as the "
              "integer"),
    extended(0x01, 0x08, "BGP Data Collection", "RFC4384 4; draft 0x0108", "data-collection-ipv4",
             dataCollectionIpv4Fields, "0108c00002431e0c")
        .draft()
        .says("formatted by the draft (0x0108) but absent from the IANA registry and from the "
              "draft's own table"),
    extended(0x01, 0x09, "Node Target", "draft-ietf-idr-node-target-ext-comm", "node-target",
             ipv4LocalFields, "0109c00002010043")
        .known(family)
        .says(familyOnly),
    extended(0x01, 0x0a, "L2VPN Identifier", "RFC6074 3.2, 6; RFC4360 3.2", "l2vpn-id-ipv4",
             ipv4LocalFields, "010ac00002010043")
        .draft()
        .reads(l2VpnIpv4Aliases),
    extended(0x01, 0x0b, "VRF Route Import", "RFC6514 7", "vrf-route-import-ipv4", ipv4LocalFields,
             "010bc00002010043")
        .draft(),
    extended(0x01, 0x0c, "Flow-spec Redirect to IPv4", "draft-ietf-idr-flowspec-redirect-ip",
             "flowspec-redirect-ipv4", ipv4LocalFields, "010cc00002010043")
        .known(family)
        .says("family layout; the draft uses the lowest bit of local as the Copy bit (draft text "
              "not read)"),
    extended(0x01, 0x10, "VPN-Distinguisher", "(registry)", "vpn-distinguisher-ipv4",
             ipv4LocalFields, "0110c00002010043")
        .known(family)
        .says(familyOnly),
    extended(0x01, 0x12, "Inter-Area P2MP Segmented Next-Hop", "RFC7524 4",
             "p2mp-inter-area-segmented-nh-ipv4", ipv4LocalFields, "0112c00002010043")
        .draft()
        .says("RFC 7524: local MUST be 0; shown as an integer"),
    extended(0x01, 0x13, "Route-Target Record", "draft-ietf-bess-service-chaining",
             "route-target-record-ipv4", ipv4LocalFields, "0113c00002010043")
        .known(family)
        .says(familyOnly),
    extended(0x01, 0x14, "VRF-Recursive-Next-Hop", "(registry)", "vrf-recursive-next-hop",
             ipv4LocalFields, "0114c00002010043")
        .known(family)
        .says(familyOnly),
    extended(0x01, 0x15, "RT-derived-EC", "draft-zzhang-idr-rt-derived-community-00",
             "rt-derived-ipv4", ipv4LocalFields, "0115c00002010043")
        .known(family)
        .says(familyOnly),
    extended(0x01, 0x20, "MVPN SA RP-address", "RFC9081 3", "mvpn-sa-rp-address-ipv4",
             ipv4LocalFields, "0120c00002010043")
        .draft()
        .says("RFC 9081: local set to zero; shown as an integer"),
    // Not transitive: an IPv4 address.
    extended(0x41, 0x09, "Node Target (non-transitive)", "draft-ietf-idr-node-target-ext-comm",
             "node-target-nt", ipv4LocalFields, "4109c00002010043")
        .known(family),
    // Transitive: a four-octet AS.
    extended(0x02, 0x02, "Route Target", "RFC5668 2", "route-target-as4", as4LocalFields,
             "0202000100040043")
        .draft(),
    extended(0x02, 0x03, "Route Origin", "RFC5668 2", "route-origin-as4", as4LocalFields,
             "0203000100040043")
        .draft(),
    extended(0x02, 0x04, "Generic (deprecated)", "draft-ietf-idr-as4octet-extcomm-generic-subtype",
             "generic-as4", as4LocalFields, "0204000100040043")
        .known(family)
        .says(familyOnly),
    extended(0x02, 0x05, "OSPF Domain Identifier", "RFC4577 4.2.4, 4.2.6", "ospf-domain-id-as4",
             as4LocalFields, "0205000100040043")
        .draft()
        .reads(ospfDomainAs4Aliases),
    extended(0x02, 0x06, "Route Aggregation Parameter", "(registry)",
             "route-aggregation-parameter-as4", as4LocalFields, "0206000100040043")
        .known(family),
    extended(0x02, 0x08, "BGP Data Collection", "RFC4384 4", "data-collection-as4",
             dataCollectionAs4Fields, "0208000100041a0c")
        .draft(),
    extended(0x02, 0x09, "Source AS", "RFC6514 6", "source-as4", as4LocalFields, "0209000100040043")
        .draft()
        .says("RFC 6514: local MUST be 0; shown as an integer"),
    extended(0x02, 0x10, "VPN Identifier", "(registry)", "vpn-distinguisher-as4", as4LocalFields,
             "0210000100040043")
        .known(family)
        .says(familyOnly),
    extended(0x02, 0x13, "Route-Target Record", "draft-ietf-bess-service-chaining",
             "route-target-record-as4", as4LocalFields, "0213000100040043")
        .known(family)
        .says(familyOnly),
    extended(0x02, 0x15, "RT-derived-EC", "draft-zzhang-idr-rt-derived-community-00",
             "rt-derived-as4", as4LocalFields, "0215000100040043")
        .known(family)
        .says(familyOnly),
    // Not transitive: a four-octet AS.
    extended(0x42, 0x04, "Generic (deprecated)", "draft-ietf-idr-as4octet-extcomm-generic-subtype",
             "generic-as4-nt", as4LocalFields, "4204000100040043")
        .known(family)
        .says(familyOnly),
    // Transitive, opaque.
    extended(0x03, 0x01, "Cost Community", "draft-ietf-idr-custom-decision-04", "cost-community",
             costCommunityFields, "0301000102030405")
        .known(decoders)
        .says(costNote),
    extended(0x03, 0x03, "CP-ORF", "RFC7543 3, 9", "cp-orf", noValueFields, "0303000000000000")
        .draft()
        .says("RFC 7543 gives no value; treated as reserved zero"),
    extended(0x03, 0x04, "Extranet Source", "RFC7900 4.4.1", "extranet-source", noValueFields,
             "0304000000000000")
        .draft(),
    extended(0x03, 0x05, "Extranet Separation", "RFC7900 4.5", "extranet-separation", noValueFields,
             "0305000000000000")
        .draft(),
    extended(0x03, 0x06, "OSPF Route Type", "RFC4577 4.2.6", "ospf-route-type", ospfRouteTypeFields,
             "0306000000020501")
        .draft(),
    extended(0x03, 0x07, "Additional PMSI Tunnel Attribute Flags", "RFC7902 2; RFC9573 4.1",
             "pmsi-tunnel-flags", pmsiTunnelFlagsFields, "0307000000000001")
        .draft(),
    extended(0x03, 0x08, "Context-Specific Label Space ID", "RFC9573 4.1", "label-space-id",
             labelSpaceIdFields, "0308000000043000")
        .draft()
        .says("for mpls-label the label is id-value >> 12; the whole 32-bit integer is shown, so "
              "the low 12 bits are never lost"),
    extended(0x03, 0x09, "UPA", "draft-krierhorn-idr-upa-02", "upa", upaFields, "03098000c0000201")
        .known(decoders)
        .says("two decoders agree"),
    extended(0x03, 0x0b, "Color", "RFC9012 4.3; RFC9830 3", "color", colorFields,
             "030b000000000064"),
    extended(0x03, 0x0c, "Encapsulation", "RFC9012 4.1", "encapsulation", encapsulationFields,
             "030c000000000008"),
    extended(0x03, 0x0d, "Default Gateway", "RFC7432 7.8", "evpn-default-gateway", noValueFields,
             "030d000000000000")
        .draft(),
    extended(0x03, 0x0e, "Point-to-Point-to-Multipoint (PPMP) Label", "(registry)", "ppmp-label",
             sixOctetsFields, "030e000102030405")
        .known(none),
    extended(0x03, 0x0f, "BGP Group Policy Class Tag", "(registry)", "group-policy-class-tag",
             sixOctetsFields, "030f000102030405")
        .known(none),
    extended(0x03, 0x10, "Site Identifier", "(registry)", "site-id", sixOctetsFields,
             "0310000102030405")
        .known(none),
    extended(0x03, 0x14, "Consistent Hash Sort Order", "draft-ietf-bess-service-chaining",
             "consistent-hash-sort-order", sixOctetsFields, "0314000102030405")
        .known(none),
    extended(0x03, 0x17, "Group Policy ID", "(registry; draft)", "group-policy-id", sixOctetsFields,
             "0317000102030405")
        .known(none),
    extended(0x03, 0x1b, "Local Color Mapping (LCM)", "RFC9871 2.9.5", "local-color-mapping",
             localColorMappingFields, "031b000000000064"),
    extended(0x03, 0xaa, "LoadBalance", "draft-ietf-bess-service-chaining", "load-balance",
             sixOctetsFields, "03aa000102030405")
        .known(none),
    // Not transitive, opaque.
    extended(0x43, 0x00, "BGP Origin Validation State", "RFC8097 2", "origin-validation-state",
             originValidationStateFields, "4300000000000001"),
    extended(0x43, 0x01, "Cost Community", "draft-ietf-idr-custom-decision-04", "cost-community-nt",
             costCommunityFields, "4301000102030405")
        .known(decoders)
        .says(costNote),
    extended(0x43, 0x02, "Route Target", "(registry)", "route-target-opaque-nt", sixOctetsFields,
             "4302000102030405")
        .known(none),
    extended(0x43, 0x15, "RT-derived-EC", "draft-zzhang-idr-rt-derived-community-00",
             "rt-derived-opaque-nt", sixOctetsFields, "4315000102030405")
        .known(none),
    // Ethernet VPN.
    extended(0x06, 0x00, "MAC Mobility", "RFC7432 7.7", "mac-mobility", macMobilityFields,
             "0600010000000043")
        .draft(),
    extended(0x06, 0x01, "ESI Label", "RFC7432 7.5; RFC9746 2.1; RFC9856 5.2", "esi-label",
             esiLabelFields, "0601000000000430")
        .draft()
        .says("bits 0-1 are the split-horizon type (RFC 9746), bit 2 is ESI-DCB (RFC 9856): one "
              "enumeration, so that a row has one part of variable presence"),
    extended(0x06, 0x02, "ES-Import Route Target", "RFC7432 7.6", "es-import-target",
             esImportTargetFields, "0602feed0db81ea9")
        .draft(),
    extended(0x06, 0x03, "EVPN Router's MAC", "RFC9135 8.1", "evpn-router-mac", evpnRouterMacFields,
             "0603feed0db81ea9")
        .draft(),
    extended(0x06, 0x04, "EVPN Layer 2 Attributes", "RFC8214 3.1", "evpn-layer2-attrs",
             evpnLayer2AttrsFields, "0604000605dc0000")
        .draft(),
    extended(0x06, 0x05, "E-Tree", "RFC8317 6.1", "evpn-etree", evpnEtreeFields, "0605010000000430")
        .draft(),
    extended(0x06, 0x06, "DF Election", "RFC8584 2.2; RFC9785 3; RFC9722 2.1; RFC9786 3.1",
             "evpn-df-election", evpnDfElectionFields, "0606024000007fff")
        .draft()
        .says("preference shown whatever the algorithm (RFC 8584 leaves the octets to the "
              "algorithm)"),
    extended(0x06, 0x08, "ARP/ND", "RFC9047 2", "evpn-arp-nd", evpnArpNdFields, "0608030000000000")
        .draft(),
    extended(0x06, 0x09, "Multicast Flags", "RFC9251 9.4; RFC9572; RFC9625; RFC9856",
             "evpn-mc-flags", evpnMcFlagsFields, "0609000300000000")
        .draft(),
    extended(0x06, 0x0a, "EVI-RT Type 0", "RFC9251 9.5", "evi-rt0", as2LocalFields,
             "060afbf400000043")
        .draft(),
    extended(0x06, 0x0b, "EVI-RT Type 1", "RFC9251 9.5", "evi-rt1", ipv4LocalFields,
             "060bc00002010043")
        .draft(),
    extended(0x06, 0x0c, "EVI-RT Type 2", "RFC9251 9.5", "evi-rt2", as4LocalFields,
             "060c000100040043")
        .draft(),
    extended(0x06, 0x0d, "EVI-RT Type 3", "RFC9251 9.5", "evi-rt3", sixOctetsFields,
             "060d000102030405")
        .draft()
        .known(family)
        .says("RFC 9251 says the value equals that of an IPv6 route target (18 octets), which "
              "cannot fit in six: shown as hex"),
    extended(0x06, 0x0e, "EVPN Attachment Circuit", "draft-sajassi-bess-evpn-ac-aware-bundling-00",
             "evpn-attachment-circuit", sixOctetsFields, "060e000102030405")
        .known(none),
    extended(0x06, 0x0f, "Service Carving Time", "RFC9722 2.1", "evpn-sct", evpnSctFields,
             "060fe8a1b2c38000")
        .draft(),
    extended(0x06, 0x10, "EVPN Link Bandwidth", "draft-ietf-bess-evpn-unequal-lb",
             "evpn-link-bandwidth", sixOctetsFields, "0610000102030405")
        .known(none),
    extended(0x06, 0x15, "RT-derived-EC", "draft-zzhang-idr-rt-derived-community-00",
             "rt-derived-evpn", sixOctetsFields, "0615000102030405")
        .known(none),
    // Flow specification, transitive.
    extended(0x07, 0x02, "FlowSpec interface-set", "draft-ietf-idr-flowspec-interfaceset-03 5",
             "flowspec-interface-set", interfaceSetFields, "0702000000fe80fe")
        .known(decoders)
        .says(interfaceSetNote),
    // Flow specification, not transitive.
    extended(0x47, 0x02, "FlowSpec interface-set", "draft-ietf-idr-flowspec-interfaceset-03 5",
             "flowspec-interface-set-nt", interfaceSetFields, "4702caffee014001")
        .known(decoders)
        .says(interfaceSetNote),
    // Flow specification, redirect or mirror.
    extended(0x08, 0x00, "Flow spec redirect/mirror to IP next-hop",
             "draft-simpson-idr-flowspec-redirect", "flowspec-redirect-nexthop", sixOctetsFields,
             "0800000102030405")
        .known(none),
    // Flow specification, indirection id.
    extended(0x09, 0x00, "FlowSpec Redirect to indirection-id",
             "draft-ietf-idr-flowspec-path-redirect", "flowspec-redirect-indirection-id",
             sixOctetsFields, "0900000102030405")
        .known(none)
        .says("probable layout: flags 8, id type 8, indirection id 32"),
    // Transport class, transitive.
    extended(0x0a, 0x02, "Transport Class Route Target", "RFC9832 4.3", "transport-target",
             transportClassFields, "0a02000000000064"),
    // Transport class, not transitive.
    extended(0x4a, 0x02, "Transport Class Route Target (non-transitive)", "RFC9832 4.3, 13.2.1.1.2",
             "transport-target-nt", transportClassFields, "4a02000000000064"),
    // Service function chains.
    extended(0x0b, 0x01, "SFIR Pool Identifier", "RFC9015 3.1.1", "sfir-pool-id", sfirPoolIdFields,
             "0b01000000000043"),
    extended(0x0b, 0x02, "MPLS Mixed Swapping/Stacking Labels", "RFC9015 3.1.2", "sfc-mpls-labels",
             sfcMplsLabelsFields, "0b02000430000440"),
    // Mobile user plane.
    extended(0x0c, 0x00, "MUP Direct-Type Segment Identifier", "draft-ietf-bess-mup-safi 3",
             "mup-direct-segment", mupDirectSegmentFields, "0c00000102030405")
        .known(decoders)
        .says("two decoders agree on 16 and 32 bits"),
    // Generic, transitive, three parts.
    extended(0x80, 0x00, "OSPF Route Type (deprecated)", "RFC4577 4.2.6",
             "ospf-route-type-deprecated", ospfRouteTypeFields, "8000000000020501"),
    extended(0x80, 0x01, "OSPF Router ID (deprecated)", "RFC4577 4.2.6",
             "ospf-router-id-deprecated", ipv4LocalFields, "8001c00002010043"),
    extended(0x80, 0x04, "SecurityGroup", "(registry)", "security-group-as2", sixOctetsFields,
             "8004000102030405")
        .known(none),
    extended(0x80, 0x05, "OSPF Domain Identifier (deprecated)", "RFC4577 4.2.6",
             "ospf-domain-id-deprecated", as2LocalFields, "8005fbf400000043"),
    extended(0x80, 0x06, "Flow spec traffic-rate-bytes", "RFC8955 7.1",
             "flowspec-traffic-rate-bytes", as2RateFields, "8006fbf400000000"),
    extended(0x80, 0x07, "Flow spec traffic-action", "RFC8955 7.3", "flowspec-traffic-action",
             trafficActionFields, "8007000000000003"),
    extended(0x80, 0x08, "Flow spec rt-redirect AS-2octet", "RFC8955 7.4",
             "flowspec-rt-redirect-as2", as2LocalFields, "8008fbf400000043"),
    extended(0x80, 0x09, "Flow spec traffic-remarking", "RFC8955 7.5", "flowspec-traffic-marking",
             trafficMarkingFields, "800900000000002e"),
    extended(0x80, 0x0a, "Layer2 Info", "RFC4761 3.2.4; RFC8395 2", "layer2-info", layer2InfoFields,
             "800a130205dc0064")
        .says("RFC 4761 calls the last two octets Reserved (no MUST be zero); deployed VPLS uses "
              "them as a preference: shown as an integer"),
    extended(0x80, 0x0b, "E-Tree Info", "RFC7796 6.2", "vpls-etree-info", vplsEtreeInfoFields,
             "800b006400c80003"),
    extended(0x80, 0x0c, "Flow spec traffic-rate-packets", "RFC8955 7.2",
             "flowspec-traffic-rate-packets", as2RateFields, "800cfbf447c35000"),
    extended(0x80, 0x0d, "Flow Specification for SFC Classifiers", "RFC9015 7.4",
             "flowspec-sfc-classifier", sfcClassifierFields, "800d00000aff0043"),
    extended(0x80, 0x84, "Tag", "(registry)", "tag", sixOctetsFields, "8084000102030405")
        .known(none),
    extended(0x80, 0x85, "Origin Sub-Cluster", "(registry)", "origin-sub-cluster-as2",
             sixOctetsFields, "8085000102030405")
        .known(none),
    extended(0x81, 0x08, "Flow spec rt-redirect IPv4", "RFC8955 7.4", "flowspec-rt-redirect-ipv4",
             ipv4LocalFields, "8108c00002010043"),
    extended(0x82, 0x04, "SecurityGroupAS4", "(registry)", "security-group-as4", sixOctetsFields,
             "8204000102030405")
        .known(none),
    extended(0x82, 0x08, "Flow spec rt-redirect AS-4octet", "RFC8955 7.4",
             "flowspec-rt-redirect-as4", as4LocalFields, "8208000100040043"),
    extended(0x82, 0x84, "Tag4", "(registry)", "tag-as4", sixOctetsFields, "8284000102030405")
        .known(none),
    extended(0x82, 0x85, "Origin Sub-Cluster4", "(registry)", "origin-sub-cluster-as4",
             sixOctetsFields, "8285000102030405")
        .known(none),
    // An IPv6 address (attribute 25).
    extendedIp6(0x00, 0x02, "Route Target", "RFC5701 2", "route-target-ipv6", ipv6LocalFields,
                "000220010db80000000000000000000000010043")
        .draft(),
    extendedIp6(0x00, 0x03, "Route Origin", "RFC5701 2", "route-origin-ipv6", ipv6LocalFields,
                "000320010db80000000000000000000000010043")
        .draft(),
    extendedIp6(0x00, 0x04, "OSPFv3 Route Attributes (deprecated)", "RFC6565 4.4",
                "ospfv3-route-attributes", ipv6LocalFields,
                "000420010db80000000000000000000000010043")
        .known(family),
    extendedIp6(0x00, 0x05, "IPv6-Address-Specific IFIT Tail",
                "draft-wang-idr-bgp-ifit-capabilities", "ifit-ipv6", ipv6LocalFields,
                "000520010db80000000000000000000000010043")
        .known(family)
        .says(familyOnly),
    extendedIp6(0x00, 0x06, "Extension of Link Bandwidth", "(registry)", "link-bandwidth-ipv6",
                ipv6LocalFields, "000620010db80000000000000000000000010043")
        .known(family)
        .says("one decoder reads a bandwidth of 64 bits and an AS instead; the family's layout is "
              "kept"),
    extendedIp6(0x00, 0x0b, "VRF Route Import", "RFC6515; RFC6514 7", "vrf-route-import-ipv6",
                ipv6LocalFields, "000b20010db80000000000000000000000010043")
        .draft(),
    extendedIp6(0x00, 0x0c, "Flow-spec Redirect to IPv6", "draft-ietf-idr-flowspec-redirect-ip",
                "flowspec-redirect-ipv6", ipv6LocalFields,
                "000c20010db80000000000000000000000010043")
        .known(family)
        .says(familyOnly),
    extendedIp6(0x00, 0x0d, "Flow-spec rt-redirect-ipv6", "RFC8956 6.1",
                "flowspec-rt-redirect-ipv6", ipv6LocalFields,
                "000d20010db80000000000000000000000010064"),
    extendedIp6(0x00, 0x10, "VPN-Distinguisher", "(registry)", "vpn-distinguisher-ipv6",
                ipv6LocalFields, "001020010db80000000000000000000000010043")
        .known(family)
        .says(familyOnly),
    extendedIp6(0x00, 0x11, "UUID-based Route Target", "(registry)", "route-target-uuid",
                ipv6LocalFields, "001120010db80000000000000000000000010043")
        .known(family),
    extendedIp6(0x00, 0x12, "Inter-Area P2MP Segmented Next-Hop", "RFC7524 4",
                "p2mp-inter-area-segmented-nh-ipv6", ipv6LocalFields,
                "001220010db80000000000000000000000010043")
        .draft(),
    extendedIp6(0x00, 0x14, "VRF-Recursive-Next-Hop", "(registry)", "vrf-recursive-next-hop-ipv6",
                ipv6LocalFields, "001420010db80000000000000000000000010043")
        .known(family),
    extendedIp6(0x00, 0x15, "RT-derived-EC", "draft-zzhang-idr-rt-derived-community-00",
                "rt-derived-ipv6", ipv6LocalFields, "001520010db80000000000000000000000010043")
        .known(family)
        .says(familyOnly),
};

static_assert(!checkKinds(rows));

}  // namespace

std::span<const Kind> assignedKinds() { return rows; }

}  // namespace Routing::Bgp
