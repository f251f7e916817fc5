// Findings of one configuration: by code, worst first; notes folded, agreed exceptions apart.

function findingsSection(report, findings) {
  const open = findings.filter(isOpen), agreed = findings.filter(finding => !isOpen(finding));
  const loud = open.filter(finding => finding.severity !== "note"), notes = open.filter(finding => finding.severity === "note");
  const parts = byCode(loud).map(([code, list]) => codeBox(report.kinds[code], list));
  if (notes.length) parts.push(folded(plural(notes.length, "note"), byCode(notes).map(([code, list]) => codeBox(report.kinds[code], list))));
  if (agreed.length) parts.push(folded(plural(agreed.length, "agreed exception"), agreed.map(finding => agreedBox(report.kinds[finding.code], finding))));
  return parts;
}

function byCode(findings) {
  const codes = new Map();
  for (const finding of findings) codes.set(finding.code, [...(codes.get(finding.code) || []), finding]);
  return [...codes];
}

function folded(title, content) {
  return make("details", "folded", make("summary", "", title), ...content);
}

function codeBox(kind, findings) {
  const severity = findings[0].severity;
  return make("section", "finding " + severity,
    make("h4", "", make("span", "severity", severity + " " + kind.code + " "), kind.title),
    make("p", "soft", kind.explanation + (kind.advice ? " What to do: " + kind.advice : "")),
    copyAll(findings), ...findings.map(finding => make("div", "occurrence", ...findingParts(finding))));
}

function agreedBox(kind, finding) {
  const { reason, until } = finding.accepted;
  return make("section", "finding agreed",
    make("h4", "", make("span", "severity", "agreed " + kind.code + " "), kind.title),
    make("p", "", "Reason: " + (reason || "none given") + (until ? ", until " + until : "")), ...findingParts(finding));
}

// What was found, its lines, and how it is mended.
function findingParts(finding) {
  const parts = [];
  if (finding.hop) parts.push(make("p", "step soft", stepText(finding.hop)));
  if (finding.detail) parts.push(make("p", "place", finding.detail));
  const lines = [...finding.before.map(line => ["-", line]), ...finding.after.map(line => ["+", line])];
  const width = Math.max(...lines.map(([, line]) => String(line.number).length));
  if (lines.length) parts.push(make("div", "lines", ...lines.map(([mark, line]) => lineLink(mark, line, width))));
  return [...parts, ...fixesOf(finding)];
}

// A line of a finding leads to its place in the differences.
function lineLink(mark, line, width) {
  const element = make("div", "", mark + " " + String(line.number).padStart(width) + "  " + line.text);
  element.dataset.side = mark;
  element.dataset.line = line.number;
  return element;
}
