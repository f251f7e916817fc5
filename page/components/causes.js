// What needs hands, by cause: the finding, how many configurations have it, one example with its fix.

function showCauses(report, place, choose, show) {
  const boxes = causesOf(report).map(cause => causeBox(report, cause, choose, show));
  const unusable = report.configurations.filter(c => c.state === "unusable");
  if (unusable.length) boxes.push(unusableBox(unusable, choose, show));
  const failed = report.configurations.some(needsHands) ? "The conversion failed; see the list below." : "";
  const agreed = report.configurations.some(hasAgreed) ? "Nothing but what was agreed on." : "Nothing: every configuration keeps what it does.";
  place.replaceChildren(...boxes.length ? boxes : [make("p", failed ? "trouble" : "all-clear", failed || agreed)]);
}

// What is wrong, without the path in front, which stands beside it.
const problemOf = ({ path, problem }) => problem.startsWith(path + ": ") ? problem.slice(path.length + 2) : problem;

// Those of which nothing else can be said, with what is wrong with the first.
function unusableBox(configurations, choose, show) {
  const [first] = configurations;
  return make("article", "cause", make("h3", "", button("unusable", "code", () => choose({ state: "unusable" })), " It cannot be looked at"),
    make("p", "", plural(configurations.length, "configuration") + ", for example ",
      button(first.path, "link", () => show(first.index)), ": ", problemOf(first)));
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
