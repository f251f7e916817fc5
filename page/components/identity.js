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

// The first release as asked for, or else as the configurations say, where they all say the same.
function releasesText({ from, to, route, configurations }) {
  const own = [...new Set(configurations.map(c => c.from).filter(Boolean))];
  const first = from || (own.length === 1 ? own[0] : "each its own");
  return to ? routeText([first, ...(route || []), to]) : first + ", as it is";
}

const hasOwnReleases = ({ from, configurations }) => !from && new Set(configurations.map(c => c.from)).size > 1;
