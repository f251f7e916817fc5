// The page needs no network and no other file. What it shows of a configuration is built when the
// configuration is opened, so that a thousand of them do not make it slow.

#include "reports/report_page.h"

namespace infraconvert {

const char *const page_style = R"css(
:root { color-scheme: light dark;
  --ground: #ffffff; --panel: #f5f6f8; --ink: #1c2128; --soft: #59636e; --line: #d5dae0;
  --accent: #0b5cad; --error: #b3261e; --warning: #8a5a00; --note: #3f5f7d;
  --removed: #fdecea; --removed-mark: #f6c9c4; --added: #e6f5ea; --added-mark: #b9e2c4; }
@media (prefers-color-scheme: dark) { :root {
  --ground: #14181d; --panel: #1d232a; --ink: #e3e8ee; --soft: #9aa6b2; --line: #353e48;
  --accent: #7cb7f2; --error: #ff9289; --warning: #eab95c; --note: #9fc3e6;
  --removed: #3a2020; --removed-mark: #6d2f2b; --added: #18301f; --added-mark: #2b5f3b; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 84rem; padding: 1.5rem; background: var(--ground);
  color: var(--ink); font: 15px/1.5 system-ui, sans-serif; }
h1 { font-size: 1.5rem; margin: 0; } h2 { font-size: 1.1rem; margin: 2rem 0 .5rem; }
h3 { font-size: .95rem; margin: 1.2rem 0 .4rem; }
.soft { color: var(--soft); } .error { color: var(--error); } .warning { color: var(--warning); }
.note { color: var(--note); } .severity { font-weight: 600; }
.tiles { display: flex; flex-wrap: wrap; gap: .75rem; margin: 1rem 0; }
.tile { background: var(--panel); border: 1px solid var(--line); border-radius: 8px;
  padding: .6rem 1rem; min-width: 7.5rem; }
.tile b { display: block; font-size: 1.5rem; line-height: 1.2; }
table { border-collapse: collapse; width: 100%; }
th { text-align: left; font-weight: 600; color: var(--soft); font-size: .85rem; }
th, td { padding: .3rem .75rem .3rem 0; vertical-align: top; border-bottom: 1px solid var(--line); }
td.number, th.number { text-align: right; }
code, .diff, .lines { font: 13px/1.45 ui-monospace, "DejaVu Sans Mono", Menlo, monospace; }
button, select, input { font: inherit; color: inherit; background: var(--ground);
  border: 1px solid var(--line); border-radius: 6px; padding: .3rem .6rem; }
button { cursor: pointer; } button.code { border: 0; padding: 0; color: var(--accent);
  background: none; text-decoration: underline; }
:focus-visible { outline: 2px solid var(--accent); outline-offset: 2px; }
.filters { position: sticky; top: 0; z-index: 1; display: flex; flex-wrap: wrap; gap: .75rem;
  align-items: end; background: var(--ground); padding: .75rem 0; border-bottom: 1px solid var(--line); }
.filters label { display: flex; flex-direction: column; font-size: .8rem; color: var(--soft); }
.filters select, .filters input { color: var(--ink); font-size: .95rem; }
.filters select { max-width: 22rem; }
#count { margin-left: auto; }
.configuration { border-bottom: 1px solid var(--line); content-visibility: auto;
  contain-intrinsic-size: auto 2.6rem; }
.configuration > summary { display: flex; gap: 1rem; padding: .45rem .25rem; cursor: pointer; list-style: none;
  scroll-margin-top: 6rem; }
.configuration > summary:focus-visible { outline-offset: -2px; } /* what is outside is not painted */
.configuration > summary::before { content: "\25B8"; color: var(--soft); }
.configuration[open] > summary::before { content: "\25BE"; }
.configuration > summary:hover { background: var(--panel); }
.name { flex: 1; overflow-wrap: anywhere; } .state { width: 6rem; } .tally { width: 15rem; text-align: right; }
.body { padding: 0 0 1.5rem 1.5rem; }
.finding { border-left: 3px solid currentColor; padding: .1rem 0 .1rem .75rem; margin: .6rem 0; }
.finding b, .finding .place, .finding .lines { color: var(--ink); } .finding .place { margin-top: .3rem; }
.lines { margin: .2rem 0; white-space: pre-wrap; overflow-wrap: anywhere; }
.diff { table-layout: fixed; border: 1px solid var(--line); }
.diff td { border: 0; padding: 0 .5rem; white-space: pre-wrap; overflow-wrap: anywhere; }
.diff td.at { width: 4rem; color: var(--soft); text-align: right; user-select: none; }
.diff th { width: auto; padding: .3rem .5rem; } .diff col.at { width: 4rem; }
.diff .removed { background: var(--removed); } .diff .added { background: var(--added); }
.diff .at.removed { background: var(--removed-mark); color: var(--ink); }
.diff .at.added { background: var(--added-mark); color: var(--ink); }
.diff .gap td { background: var(--panel); color: var(--soft); text-align: center; }
.diff tr.rule td { background: var(--panel); color: var(--soft); font-family: system-ui, sans-serif; }
@media (max-width: 75rem) { .filters { position: static; } }
@media print { .filters { display: none; } body { max-width: none; padding: 0; } }
)css";

const char *const page_body = R"html(
<header><h1>infraconvert audit</h1><div id="releases" class="soft"></div></header>
<div id="tiles" class="tiles"></div>
<section id="codes-section"><h2>Findings</h2>
<table><thead><tr><th>Code</th><th>Severity</th><th>Title</th><th class="number">Findings</th>
<th class="number">Configurations</th></tr></thead><tbody id="codes"></tbody></table></section>
<h2>Configurations</h2>
<form class="filters" id="filters">
<label>Name <input name="name" type="search" placeholder="press / to search"></label>
<label>Finding <select name="code"><option value="">any</option></select></label>
<label>Severity <select name="severity"><option value="">any</option><option>error</option>
<option>warning</option><option>note</option></select></label>
<label>Service <select name="service"><option value="">any</option></select></label>
<label>State <select name="state"><option value="">any</option></select></label>
<button type="reset">Show all</button><span id="count" class="soft" aria-live="polite"></span>
</form>
<main id="list"></main>
<p class="soft">Keys: / searches, j and k go to the next and the previous configuration, Enter opens it,
Escape shows all.</p>
<noscript><p>This page builds its content with a script; the same findings come from
infraconvert audit on the command line.</p></noscript>
)html";

const char *const page_script = R"js(
"use strict";
const read = id => JSON.parse(document.getElementById(id).textContent);
const make = (tag, name, text) => {
  const element = document.createElement(tag);
  if (name) element.className = name;
  if (text !== undefined) element.textContent = text;
  return element;
};
const page = read("summary"), kinds = {}, form = document.getElementById("filters"), rows = [];
const severities = ["error", "warning", "note"];
page.codes.sort((a, b) => severities.indexOf(a.severity) - severities.indexOf(b.severity));
for (const kind of page.codes) kinds[kind.code] = kind;

const tally = c => severities.map((severity, i) => c.tally[i] ?
  c.tally[i] + " " + severity + (c.tally[i] > 1 ? "s" : "") : "").filter(text => text).join(", ") || "no findings";

function choose(name, value) {
  form.elements[name].value = value;
  filter();
  form.scrollIntoView();
  form.elements[name].focus();
}

function showSummary() {
  document.getElementById("releases").textContent = "from " + page.from + " to " + page.to;
  const tiles = document.getElementById("tiles");
  const tile = (number, text) => {
    const box = make("div", "tile");
    box.append(make("b", "", number), text);
    tiles.append(box);
  };
  tile(page.configurations.length, "configurations");
  for (const [state, number] of Object.entries(page.states)) tile(number, state);
  const body = document.getElementById("codes");
  for (const kind of page.codes) {
    const row = make("tr"), code = make("td"), button = make("button", "code", kind.code);
    button.title = "show the configurations with " + kind.code;
    button.onclick = () => choose("code", kind.code);
    code.append(button);
    row.append(code, make("td", "severity " + kind.severity, kind.severity), make("td", "", kind.title),
      make("td", "number", kind.findings), make("td", "number", kind.files));
    body.append(row);
  }
  document.getElementById("codes-section").hidden = !page.codes.length;
}

function option(name, value, text) {
  const element = make("option", "", text || value);
  element.value = value;
  form.elements[name].append(element);
}

function showList() {
  const list = document.createDocumentFragment(), services = new Set();
  page.configurations.forEach((c, i) => {
    const box = make("details", "configuration"), head = make("summary");
    const worst = c.tally[0] ? "error" : c.tally[1] ? "warning" : "soft";
    head.append(make("span", "name", c.path), make("span", "state", c.state), make("span", "tally " + worst, tally(c)));
    box.append(head);
    box.addEventListener("toggle", () => { if (box.open && !box.lastChild.matches(".body")) box.append(content(c, i)); });
    list.append(box);
    rows.push({ box, c });
    c.services.forEach(service => services.add(service));
  });
  document.getElementById("list").append(list);
  for (const kind of page.codes) option("code", kind.code, kind.code + " " + kind.title);
  for (const service of services) option("service", service);
  for (const state of Object.keys(page.states)) option("state", state);
}

function filter() {
  const wanted = Object.fromEntries(new FormData(form)), name = wanted.name.toLowerCase();
  let shown = 0;
  for (const { box, c } of rows) {
    const fits = c.path.toLowerCase().includes(name) && (!wanted.code || c.codes.includes(wanted.code)) &&
      (!wanted.severity || c.codes.some(code => kinds[code].severity === wanted.severity)) &&
      (!wanted.service || c.services.includes(wanted.service)) && (!wanted.state || c.state === wanted.state);
    box.hidden = !fits;
    shown += fits;
  }
  document.getElementById("count").textContent = shown + " of " + rows.length;
  const set = new URLSearchParams(Object.entries(wanted).filter(([, value]) => value));
  try { history.replaceState(null, "", "#" + set); } catch { /* not every viewer allows it */ }
}

function content(c, i) {
  const body = make("div", "body");
  if (c.problem) body.append(make("p", "error", c.problem));
  const stored = document.getElementById("configuration-" + i);
  if (!stored) return body;
  const details = JSON.parse(stored.textContent);
  if (details.findings.length) body.append(make("h3", "", "Findings"));
  const codes = new Map();
  for (const finding of details.findings)
    codes.set(finding.code, [...(codes.get(finding.code) || []), finding]);
  for (const [code, findings] of codes) body.append(findingBox(kinds[code], findings));
  body.append(make("h3", "", "Services"), servicesTable(details.services));
  body.append(make("h3", "", details.rows.length ? "Differences" : "No differences"));
  if (details.rows.length) body.append(differences(details.rows));
  return body;
}

function findingBox(kind, findings) {
  const box = make("div", "finding " + kind.severity), head = make("div", "head");
  head.append(make("span", "severity", kind.severity + " " + kind.code + " "), make("b", "", kind.title));
  box.append(head, make("div", "soft", kind.explanation + " What to do: " + kind.advice));
  for (const finding of findings) {
    if (finding.detail) box.append(make("div", "place", finding.detail));
    const text = [...finding.before.map(l => "- " + l.number + "  " + l.text), ...finding.after.map(l => "+ " + l.number + "  " + l.text)];
    if (text.length) box.append(make("div", "lines", text.join("\n")));
  }
  return box;
}

function servicesTable(services) {
  const table = make("table"), head = make("tr");
  for (const title of ["Service", "Rule", "State", "Lines", "What the rule does, or the reason"]) head.append(make("th", "", title));
  table.append(head);
  for (const s of services) {
    const row = make("tr");
    for (const text of [s.name, s.rule, s.state, s.added + s.removed ? "+" + s.added + " \u2212" + s.removed : "", s.reason]) row.append(make("td", "", text));
    table.append(row);
  }
  return table;
}

// Rows come as [kind, line before, line after, text, rule]; kind is "=", "-", "+" or "." for a gap.
function differences(lines) {
  const table = make("table", "diff");
  const columns = make("colgroup");
  for (const name of ["at", "", "at", ""]) columns.append(make("col", name));
  const head = make("tr");
  for (const title of ["Original", "Result"]) { const cell = make("th", "", title); cell.colSpan = 2; head.append(cell); }
  table.append(columns, head);
  let removed = [], added = [], rule = "";
  const wide = (name, text) => { const row = make("tr", name), cell = make("td", "", text); cell.colSpan = 4; row.append(cell); table.append(row); };
  const cells = (row, line, number, kind) => row.append(make("td", "at " + kind, line ? line[number] : ""), make("td", kind, line ? line[3] : ""));
  const flush = () => {
    for (let i = 0; i < Math.max(removed.length, added.length); i++) {
      const now = (added[i] || removed[i])[4];
      if (now !== rule) wide("rule", rule = now);
      const row = make("tr");
      cells(row, removed[i], 1, removed[i] ? "removed" : "");
      cells(row, added[i], 2, added[i] ? "added" : "");
      table.append(row);
    }
    removed = []; added = [];
  };
  for (const line of lines) {
    if (line[0] === "-") { removed.push(line); continue; }
    if (line[0] === "+") { added.push(line); continue; }
    flush();
    if (line[0] === ".") { wide("gap", "\u22EE"); rule = ""; continue; }
    const row = make("tr");
    cells(row, line, 1, ""); cells(row, line, 2, "");
    table.append(row);
  }
  flush();
  return table;
}

function step(by) {
  const shown = rows.filter(({ box }) => !box.hidden).map(({ box }) => box.firstChild);
  if (shown.length) shown[Math.max(0, Math.min(shown.length - 1, shown.indexOf(document.activeElement) + by))].focus();
}

document.addEventListener("keydown", event => {
  if (event.ctrlKey || event.metaKey || event.altKey) return;
  if (event.key === "Escape") { form.reset(); return; }
  if (event.target.matches("input, select")) return;
  if (event.key === "/") { form.elements.name.focus(); event.preventDefault(); }
  if (event.key === "j") step(1);
  if (event.key === "k") step(-1);
});
form.addEventListener("input", filter);
form.addEventListener("submit", event => event.preventDefault());
form.addEventListener("reset", () => setTimeout(filter));

showSummary();
showList();
const asked = new URLSearchParams(location.hash.slice(1));
for (const [name, value] of asked) if (form.elements[name]) form.elements[name].value = value;
if (rows.length === 1 || asked.has("open")) (rows[Number(asked.get("open"))] || rows[0]).box.open = true;
filter();
)js";

} // namespace infraconvert
