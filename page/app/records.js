// The reports that the command wrote about batches of files, as one about them all.

const dataElements = /<script type="application\/json" id="([^"]+)">(.*?)<\/script>\n/gs;

// A report page taken apart: what stands in front of its data and behind them, the summary, and the details of each
// configuration as texts, for they are read only when they are looked at.
function partOfPage(bytes) {
  const page = new TextDecoder().decode(bytes), texts = {};
  let head, tail;
  for (const found of page.matchAll(dataElements)) {
    head ??= page.slice(0, found.index);
    tail = page.slice(found.index + found[0].length);
    texts[found[1]] = found[2];
  }
  const summary = JSON.parse(texts.summary);
  return { head, tail, summary, details: summary.configurations.map((_, i) => texts["configuration-" + i]) };
}

// A configuration on which the command itself failed.
const partOfTrouble = (path, problem) => ({
  summary: { codes: [], states: { unusable: 1 },
    configurations: [{ path, alike: path + problem, state: "unusable", problem, services: [], codes: [], open: [], tally: [0, 0, 0, 0] }] },
  details: [undefined],
});

const stateOrder = ["unusable", "failed", "changed", "unchanged", "checked"];

function addUp(sums, numbers) {
  for (const [name, value] of Object.entries(numbers)) if (typeof value === "number") sums[name] = (sums[name] || 0) + value;
}

function join(parts) {
  const first = parts.find(part => part.head);
  if (!first) throw new Error(parts[0].summary.configurations[0].problem);
  const states = {}, codes = {};
  // An exception is idle when no part has met it.
  const idle = first.summary.idle_exceptions.filter(said => parts.every(part => !part.head || part.summary.idle_exceptions.includes(said)));
  for (const { summary } of parts) {
    addUp(states, summary.states);
    for (const kind of summary.codes) {
      if (codes[kind.code]) addUp(codes[kind.code], kind);
      else codes[kind.code] = { ...kind };
    }
  }
  const summary = { ...first.summary,
    states: Object.fromEntries(stateOrder.filter(state => states[state]).map(state => [state, states[state]])),
    codes: Object.keys(codes).sort().map(code => codes[code]),
    idle_exceptions: idle,
    configurations: parts.flatMap(part => part.summary.configurations) };
  return { ...first, summary, text: JSON.stringify(summary), details: parts.flatMap(part => part.details) };
}

// The page as the command writes it, with the data of all. The summary stands by as a text, for showing it adds to it.
function pageOf({ head, tail, text: summary, details }) {
  const element = (id, text) => `<script type="application/json" id="${id}">${text}</script>\n`;
  return head + details.map((text, i) => text ? element("configuration-" + i, text) : "").join("") +
    element("summary", summary.replaceAll("<", "\\u003c")) + tail;
}
