// The configurations, worst first; those of which the same is said stand in one row.

function showList(report, place, wanted) {
  const shown = report.configurations.filter(c => fits(report, c, wanted)).sort(orders[wanted.sort] || byWeight);
  const rows = document.createDocumentFragment();
  for (const group of groupsOf(shown)) rows.append(groupBox(report, group));
  place.replaceChildren(rows);
  if (shown.length === 1) place.firstElementChild.open = true;
  return shown.length;
}

function groupBox(report, group) {
  const [c] = group, box = make("details", "configuration");
  const worst = needsHands(c) ? "error" : c.tally[1] ? "warning" : "soft";
  box.dataset.index = c.index;
  box.group = group;
  const name = make("span", "name", c.path);
  name.append(make("span", "soft", ownRelease(report, c)));
  if (group.length > 1) name.append(" ", make("span", "alike", "and " + (group.length - 1) + " alike"));
  box.append(make("summary", "", name, make("span", "state", c.state), make("span", "tally " + worst, tallyText(c.tally))));
  box.addEventListener("toggle", () => { if (box.open) fill(report, box); });
  return box;
}

// Where the configurations come from several releases, which one it is.
const ownRelease = (report, c) => report.hasOwnReleases && c.from ? ", from " + c.from : "";

function fill(report, box) {
  const { group } = box;
  if (box.querySelector(":scope > .body")) return;
  const body = detailsOf(report, group[0]);
  if (group.length > 1) body.prepend(folded(plural(group.length, "configuration") + " alike",
    [make("ul", "", ...group.map(c => make("li", "", c.path + ownRelease(report, c))))]));
  box.append(body);
}

// Opens a configuration, also one that stands behind another that is alike.
function openConfiguration(place, index) {
  const box = place.querySelector(`[data-index="${Number(index)}"]`);
  if (!box) return;
  box.open = true;
  box.scrollIntoView();
  box.firstElementChild.focus();
}
