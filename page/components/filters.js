// What is shown is told by the part of the address behind "#", so that Back works and a view can be sent on.

const filterNames = ["text", "code", "severity", "service", "state", "needs", "sort", "open"];

// What the tiles ask for.
const needs = {
  hands: { fits: needsHands, words: "those that need hands" },
  nothing: { fits: c => !needsHands(c), words: "those that need no hands" },
  agreed: { fits: hasAgreed, words: "those with agreed exceptions" },
};

const currentFilter = () => Object.fromEntries(new URLSearchParams(location.hash.slice(1)));

function goTo(filter) {
  const kept = Object.entries(filter).filter(([name, value]) => filterNames.includes(name) && value);
  location.hash = new URLSearchParams(kept).toString();
}

// Whether a configuration fits a filter.
function fits(report, c, wanted) {
  return (!wanted.code || c.codes.includes(wanted.code)) &&
    (!wanted.severity || c.codes.some(code => report.kinds[code].severity === wanted.severity)) &&
    (!wanted.service || c.services.includes(wanted.service)) && (!wanted.state || c.state === wanted.state) &&
    (!wanted.needs || needs[wanted.needs]?.fits(c)) &&
    (!wanted.text || searchText(report, c).includes(wanted.text.toLowerCase()));
}

// Names, codes, and everything that a finding says.
function searchText(report, c) {
  if (c.searched === undefined) {
    const findings = report.details(c.index)?.findings || [];
    const lines = findings.flatMap(f => [f.detail, ...f.before.map(l => l.text), ...f.after.map(l => l.text)]);
    c.searched = [c.path, c.problem || "", ...c.codes, ...c.codes.map(code => report.kinds[code].title), ...lines].join("\n").toLowerCase();
  }
  return c.searched;
}

// Fills the choices of the form with what the report has.
function fillChoices(report, form) {
  const services = new Set(report.configurations.flatMap(c => c.services));
  const choices = {
    code: report.codes.map(kind => [kind.code, kind.code + " " + kind.title]),
    service: [...services].map(service => [service, service]),
    state: Object.keys(report.states).map(state => [state, state]),
    sort: Object.keys(orders).map(order => [order, order]),
  };
  for (const [name, values] of Object.entries(choices)) {
    for (const [value, text] of values) {
      const option = make("option", "", text);
      option.value = value;
      form.elements[name].append(option);
    }
  }
}
