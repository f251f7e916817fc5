// Everything about one configuration, built when it is opened.

function detailsOf(report, configuration) {
  const body = make("div", "body");
  if (configuration.problem) body.append(make("p", "trouble", configuration.problem));
  const details = report.details(configuration.index);
  if (!details) return body;
  if (report.actions) body.append(report.actions(configuration));
  if (details.findings.length) body.append(section("Findings", ...findingsSection(report, details.findings)));
  if (details.effects?.rows.length) body.append(section("Effects", effectsTable(details.effects)));
  body.append(section("Services", servicesTable(details.services)));
  body.append(details.rows.length ? section("Differences", differencesTable(details.rows, report.rules)) : section("No differences"));
  if (details.digests) body.append(section("Digests (SHA-256)", table("", ["Text", "Digest"], Object.entries(details.digests))));
  body.addEventListener("click", event => leadToLine(body, event.target.closest("[data-line]")));
  return body;
}

const section = (title, ...content) => make("section", "", make("h3", "", title), ...content);

function servicesTable(services) {
  const hasSteps = services.some(s => s.hop), step = hasSteps ? ["Step"] : [];
  return table("services" + (hasSteps ? " steps" : ""), [...step, "Service", "Rule", "State", "Lines", "What the rule does, or the reason"],
    services.map(s => [...step.map(() => routeText(s.hop)), s.name, s.rule, s.state,
      s.added + s.removed ? "+" + s.added + " \u2212" + s.removed : "", s.reason]));
}

// From a line of a finding to the same line in the differences.
function leadToLine(body, line) {
  if (!line) return;
  const side = line.dataset.side === "-" ? "before" : "after";
  const target = body.querySelector(`.diff [data-${side}="${line.dataset.line}"]`);
  if (!target) return;
  target.closest("tr").scrollIntoView({ block: "center" });
  target.closest("tr").classList.add("found");
  setTimeout(() => target.closest("tr").classList.remove("found"), 2000);
}
