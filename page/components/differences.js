// The differences side by side. Rows come as [kind, line before, line after, text, rule, step]; kind is "=", "-",
// "+" or "." where unchanged lines are left out, and there is a step only where the route has several.

function differencesTable(lines, rules) {
  const element = make("table", "diff"), columns = make("colgroup");
  for (const name of ["at", "", "at", ""]) columns.append(make("col", name));
  const head = make("tr");
  for (const title of ["Original", "Result"]) {
    const cell = make("th", "", title);
    cell.colSpan = 2;
    cell.scope = "colgroup";
    head.append(cell);
  }
  element.append(columns, make("thead", "", head));
  const body = make("tbody");
  let rule = "";
  for (const block of blocksOf(lines)) {
    if (block.gap) { body.append(wideRow("gap", "\u22EE")); rule = ""; continue; }
    if (block.same) { body.append(sideBySide(block.same, block.same, "")); continue; }
    for (let i = 0; i < Math.max(block.removed.length, block.added.length); i++) {
      const removed = block.removed[i], added = block.added[i], [, , , , id, hop] = added || removed;
      const now = (hop ? stepText(hop) + ": " : "") + id;
      if (now !== rule) body.append(ruleRow(rule = now, rules?.[id]));
      body.append(sideBySide(removed, added, "changed"));
    }
  }
  element.append(body);
  return element;
}

// Runs of removed and added lines stand together.
function blocksOf(lines) {
  const blocks = [];
  let changed = null;
  for (const line of lines) {
    if (line[0] === "-" || line[0] === "+") {
      if (!changed) blocks.push(changed = { removed: [], added: [] });
      changed[line[0] === "-" ? "removed" : "added"].push(line);
    } else {
      changed = null;
      blocks.push(line[0] === "." ? { gap: true } : { same: line });
    }
  }
  return blocks;
}

function wideRow(name, ...content) {
  const cell = make("td", "", ...content);
  cell.colSpan = 4;
  return make("tr", name, cell);
}

// The rule behind what follows, with its explanation.
function ruleRow(name, explanation) {
  if (!explanation) return wideRow("rule", name === "-" ? "" : name);
  return wideRow("rule", make("details", "", make("summary", "", name), make("p", "", explanation)));
}

function sideBySide(before, after, kind) {
  const row = make("tr");
  const [left, right] = kind && before && after ? markedWords(before[3], after[3]) : [];
  addSide(row, before, 1, kind && "removed", left);
  addSide(row, after, 2, kind && "added", right);
  return row;
}

function addSide(row, line, number, kind, words) {
  const name = line ? kind : "";
  const text = make("td", name);
  if (words) text.append(...words.map(([word, marked]) => marked && word.trim() ? make("mark", "", word) : visible(word)));
  else text.append(line ? visible(line[3]) : "");
  const at = make("td", "at " + name, line ? line[number] : "");
  if (line) at.dataset[number === 1 ? "before" : "after"] = line[number];
  row.append(at, text);
}
