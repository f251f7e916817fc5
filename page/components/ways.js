// The ways between two releases, as `plan` tells of them: what each loses and whether it comes back, the best first.

const stopsText = stops => stops.length ? "via " + stops.join(", ") : "directly";
const stopsOf = route => route.slice(1, -1);

// The ways of one configuration, or the choices for many. `choose` is called with the stops of the way that is taken;
// `taken` are those of the last one. Where secrets are hidden, what quotes a configuration is left out.
function waysOf(plan, { choose, taken, masked }) {
  const tried = plan.configurations.filter(c => c.ways.length), parts = [];
  const take = stops => takeButton(stops, taken, choose);
  if (plan.configurations.length === 1 && tried.length) parts.push(waysTable(tried[0].ways, take, masked));
  else if (tried.length) parts.push(choicesTable(plan.choices, tried.length, take));
  const left = plan.configurations.filter(c => c.problem);
  if (left.length) parts.push(folded(plural(left.length, "configuration") + " could not be tried",
    [make("ul", "", ...left.map(c => make("li", "", masked ? c.path : c.path + ": " + c.problem)))]));
  return parts;
}

function takeButton(stops, taken, choose) {
  const isTaken = Boolean(taken && taken.join() === stops.join()), said = isTaken ? "Taken" : "Take this way";
  const element = button(said, "", () => choose(stops));
  element.setAttribute("aria-pressed", String(isTaken));
  element.setAttribute("aria-label", said + ", " + stopsText(stops));
  return element;
}

// ---- one configuration

function waysTable(ways, take, masked) {
  return table("ways", ["Way", "What is lost", "The same way back", "Choice"],
    ways.map(way => [wayCell(way), lossesCell(way, masked), backCell(way, masked), take(stopsOf(way.routes[0]))]));
}

function wayCell({ routes: [first, ...others] }) {
  const cell = make("div", "", make("b", "", stopsText(stopsOf(first))));
  if (others.length) cell.append(alikeWays(others.map(stopsOf), " with the same result"));
  return cell;
}

const alikeWays = (others, words) => folded(plural(others.length, "other way") + words,
  [make("ul", "", ...others.map(stops => make("li", "", stopsText(stops))))]);

function lossesCell(way, masked) {
  if (way.failed_hop) return make("div", "error", "fails from " + routeText(way.failed_hop) + (masked ? "" : ": " + way.failure));
  const cell = make("div", "", make("span", way.lost ? "error" : "clear", lostText(way.lost)));
  const losses = lossesOf(way.findings);
  if (losses.length) cell.append(make("ul", "", ...losses.map(([finding, count]) => lossLine(finding, count))));
  if (!way.as_direct) cell.append(make("div", "soft", "The switch then does otherwise than after the direct way."));
  if (!masked) for (const words of way.unexplained) cell.append(make("div", "soft", "No finding tells: " + words));
  return cell;
}

const lostText = lost => !lost ? "nothing is lost" : lost === 1 ? "1 effect or line lost" : lost + " effects or lines lost";

function lossLine({ code, severity, title, hop }, count) {
  return make("li", "", make("span", "severity " + severity, severity + " " + code + " "), title,
    count > 1 ? " (" + count + " times)" : "", ...(hop ? [", ", make("span", "soft step", stepText(hop))] : []));
}

// Findings of one code at one step are one line; notes are left out.
function lossesOf(findings) {
  const losses = new Map();
  for (const finding of findings.filter(each => each.severity !== "note")) {
    const key = finding.code + (finding.hop || []).join("\n"), known = losses.get(key);
    losses.set(key, [finding, known ? known[1] + 1 : 1]);
  }
  return [...losses.values()];
}

function backCell({ back }, masked) {
  if (!back) return "";
  if (back.failure) return make("span", "error", "fails" + (masked ? "" : ": " + back.failure));
  if (back.restores) return "restores everything";
  const codes = [...new Set(back.left_behind.map(finding => finding.code))];
  return make("span", "error", "leaves " + plural(back.left_behind.length, "error") + " (" + codes.join(", ") + ")");
}

// ---- many configurations

const shownChoices = 12;

function choicesTable(choices, count, take) {
  const rows = choices.map(choice => [choiceCell(choice), number(choice.failing, "error"), number(choice.losing, "error"),
    number(choice.lost, "error"), choice.best + " of " + count, take(choice.via)]);
  const place = make("div", "", table("ways choices",
    ["Way", "Configurations that fail", "that lose something", "Effects or lines lost", "Configurations for which none loses less", "Choice"],
    rows.slice(0, shownChoices)));
  if (rows.length > shownChoices) {
    const more = button("Show " + plural(rows.length - shownChoices, "more way"), "", () => {
      place.querySelector("tbody").append(...table("", [], rows.slice(shownChoices)).tBodies[0].rows);
      more.remove();
    });
    place.append(more);
  }
  return place;
}

function choiceCell({ via, alike }) {
  const others = alike.filter(stops => stops.join() !== via.join());
  const cell = make("div", "", make("b", "", stopsText(via)));
  if (others.length) cell.append(alikeWays(others, " with the same outcome"));
  return cell;
}

const number = (value, name) => make("span", value ? name : "clear", value);
