// The lines that mend a finding, and a button that copies them.

const placeOf = { before: "before the conversion", after: "after the conversion", after_rollback: "after the rollback" };

// A fix of a finding: where its lines belong, the lines, and what else they restore.
function fixBox(fix, detail, name = "Fix") {
  const text = fix.lines.join("\n") + "\n";
  const box = make("div", "fix"), head = make("div", "head", make("span", "", name + ", " + (placeOf[fix.place] || fix.place)));
  head.append(copyButton("copy", text, "copy the lines of this fix"));
  box.append(head, make("pre", "", text));
  const others = (fix.restores || []).filter(words => words !== detail);
  if (others.length) box.append(make("div", "soft", "Also ends: " + others.join("; ")));
  return box;
}

function copyButton(name, text, label) {
  const copier = button(name, "copy", () => copy(text, copier));
  if (label) copier.setAttribute("aria-label", label);
  return copier;
}

// The lines of several findings at once, where each has one fix that is typed after the conversion.
function copyAll(findings) {
  const fixes = findings.map(finding => finding.fixes || []);
  if (!fixes.every(list => list.length === 1 && list[0].place !== "before")) return "";
  const texts = [...new Set(fixes.map(([fix]) => fix.lines.join("\n") + "\n"))];
  return texts.length < 2 ? "" : make("p", "", copyButton("copy all " + texts.length + " fixes", texts.join("")));
}

function fixesOf(finding) {
  const fixes = finding.fixes || [];
  const rest = finding.by_hand ? [make("p", "soft", "By hand: " + finding.by_hand)] : [];
  const choices = (finding.choices || []).map((choice, i) => fixBox(choice, finding.detail, i ? "Or" : "Either"));
  return [...fixes.map(fix => fixBox(fix, finding.detail)), ...rest, ...choices];
}
