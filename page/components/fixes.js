// The lines that mend a finding, and a button that copies them.

const placeOf = { before: "before the conversion", after: "after the conversion" };

// A fix: where its lines belong, the lines, and what they restore.
function fixBox(fix) {
  const text = fix.lines.join("\n") + "\n";
  const box = make("div", "fix"), head = make("div", "head", make("span", "", "Fix, " + (placeOf[fix.place] || fix.place)));
  const copier = button("copy", "copy", () => copy(text, copier));
  copier.setAttribute("aria-label", "copy the lines of this fix");
  head.append(copier);
  box.append(head, make("pre", "", text));
  if (fix.restores?.length) box.append(make("div", "soft", "restores " + fix.restores.join("; ")));
  return box;
}

function fixesOf(finding) {
  const fixes = finding.fixes || [];
  if (!fixes.length) return finding.by_hand ? [make("p", "soft", "By hand: " + finding.by_hand)] : [];
  const boxes = fixes.map(fixBox);
  return fixes.length > 1 ? [make("p", "soft", "One of these, whichever is meant:"), ...boxes] : boxes;
}
