// What the report is about: the summary and, for each configuration, details that are read when they are
// looked at, so that thousands of configurations do not make the page slow.

const severities = ["error", "warning", "note"];

// A report from its summary and a function that gives the details of configuration `i`, or null.
function reportOf(summary, detailsOf) {
  const kinds = Object.fromEntries(summary.codes.map(kind => [kind.code, kind]));
  const known = new Map();
  summary.configurations.forEach((c, index) => { c.index = index; c.open ??= c.codes; });
  return {
    ...summary, kinds,
    details(i) {
      if (!known.has(i)) known.set(i, detailsOf(i));
      return known.get(i);
    },
  };
}

// Open findings first: what was agreed needs no hands.
const isOpen = finding => !finding.accepted;

const needsHands = c => c.tally[0] > 0 || ["failed", "unusable"].includes(c.state);
const hasAgreed = c => c.tally[3] > 0;

// Of [errors, warnings, notes, agreed].
const tallyText = tally => [...severities.map((severity, i) => tally[i] ? plural(tally[i], severity) : ""),
  tally[3] ? tally[3] + " agreed" : ""].filter(Boolean).join(", ") || "no findings";

// How much a configuration needs hands: what cannot be used or failed, then errors, then warnings.
function weight(configuration) {
  const trouble = { unusable: 2, failed: 1 }[configuration.state] || 0;
  const [errors, warnings, notes] = configuration.tally;
  return [trouble, errors, warnings, notes];
}

function byWeight(a, b) {
  const left = weight(a), right = weight(b);
  const i = left.findIndex((value, at) => value !== right[at]);
  return i < 0 ? a.index - b.index : right[i] - left[i];
}

const orders = {
  "worst first": byWeight,
  "by name": (a, b) => a.path < b.path ? -1 : a.path > b.path ? 1 : 0,
  "as given": (a, b) => a.index - b.index,
};

// Configurations that have the same said of them stand in one group, under the first of them.
function groupsOf(configurations) {
  const groups = new Map();
  for (const configuration of configurations) {
    const key = configuration.alike ?? "alone " + configuration.index;
    groups.set(key, [...(groups.get(key) || []), configuration]);
  }
  return [...groups.values()];
}

// The errors of the report by their cause, those of most configurations first.
function causesOf(report) {
  return report.codes.filter(kind => kind.severity === "error" && kind.open !== 0)
    .map(kind => ({ kind, configurations: report.configurations.filter(c => c.open.includes(kind.code)) }))
    .filter(cause => cause.configurations.length)
    .sort((a, b) => b.configurations.length - a.configurations.length);
}
