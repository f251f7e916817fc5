// From what the command prints about batches of files to one report about them all.

// The data in a report page that the command wrote: the summary, and the details of each configuration.
function partOfPage(bytes) {
  const page = new TextDecoder().decode(bytes), texts = {};
  for (const [, id, text] of page.matchAll(/<script type="application\/json" id="([^"]+)">(.*?)<\/script>/gs)) texts[id] = text;
  const summary = JSON.parse(texts.summary);
  return { summary, details: summary.configurations.map((_, i) => texts["configuration-" + i]) };
}

// A configuration on which the command itself failed.
const partOfTrouble = (path, problem) => ({
  summary: { codes: [], states: { unusable: 1 }, configurations: [{ path, state: "unusable", problem, services: [], codes: [], tally: [0, 0, 0] }] },
  details: [undefined],
});

function reportOfParts(parts) {
  const summary = { ...(parts.find(part => part.summary.date) || parts[0]).summary, states: {}, configurations: [] };
  const codes = new Map(), details = parts.flatMap(part => part.details), likeness = new Map();
  for (const part of parts) {
    for (const [state, number] of Object.entries(part.summary.states)) summary.states[state] = (summary.states[state] || 0) + number;
    for (const kind of part.summary.codes) {
      const sum = codes.get(kind.code);
      codes.set(kind.code, { ...kind, findings: kind.findings + (sum?.findings || 0), files: kind.files + (sum?.files || 0) });
    }
    const numbers = new Map();
    for (const c of part.summary.configurations) summary.configurations.push(c);
    void numbers;
  }
  summary.codes = [...codes.values()].sort((a, b) => a.code < b.code ? -1 : 1);
  summary.configurations.forEach((c, i) => {
    const said = c.state + c.problem + saidOf(details[i]);
    if (!likeness.has(said)) likeness.set(said, likeness.size);
    c.alike = likeness.get(said);
  });
  return reportOf(summary, i => details[i] && JSON.parse(details[i]));
}

// What the findings say, whatever the numbers of their lines.
const saidOf = text => text ? JSON.stringify(JSON.parse(text).findings, (key, value) => key === "number" ? undefined : value) : "";
