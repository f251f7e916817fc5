// What needs hands, by cause: the finding, how many configurations have it, one example with its fix.

function showCauses(report, place, choose, show) {
  const causes = causesOf(report);
  if (!causes.length) {
    const trouble = report.configurations.filter(c => ["failed", "unusable"].includes(c.state)).length;
    const word = trouble ? plural(trouble, "configuration") + " could not be converted; see the list below."
      : "Nothing: every configuration keeps what it does.";
    place.replaceChildren(make("p", trouble ? "trouble" : "all-clear", word));
    return;
  }
  place.replaceChildren(...causes.map(cause => causeBox(report, cause, choose, show)));
}

function causeBox(report, { kind, configurations }, choose, show) {
  const box = make("article", "cause"), first = configurations[0];
  const code = button(kind.code, "code", () => choose({ code: kind.code }));
  code.setAttribute("aria-label", "show the configurations with " + kind.code);
  box.append(make("h3", "", code, " " + kind.title),
    make("p", "soft", kind.explanation),
    make("p", "", plural(configurations.length, "configuration") + ", for example ",
      button(first.path, "link", () => show(first.index))));
  const example = report.details(first.index)?.findings.find(finding => finding.code === kind.code && isOpen(finding));
  if (example) box.append(...findingParts(example));
  return box;
}
