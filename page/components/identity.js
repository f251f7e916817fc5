// The head of the report: what it is about, made when and with what.

function showIdentity(report, place) {
  const facts = [
    ["Releases", releasesText(report)],
    ["Configurations", report.configurations.length],
    ["Made", report.date ? new Date(report.date).toLocaleString() : ""],
    ["With", "infraconvert " + (report.tool_version || "")],
    ["Secrets", report.masked ? "hidden" : "shown: keep this page as you keep the configurations"],
  ];
  const list = make("dl", "facts");
  for (const [name, value] of facts) if (value !== "") list.append(make("div", "", make("dt", "", name), make("dd", "", value)));
  place.replaceChildren(list);
}

const releasesText = ({ from, to, route }) => !to ? (from || "each its own") + ", as it is"
  : [from || "each its own", ...(route || []), to].join(" \u2192 ");
