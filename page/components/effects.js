// The table of effects before and after, with what changed marked.

function effectsTable(effects) {
  const rows = [...effects.rows].sort((a, b) => (a.change === "same") - (b.change === "same"));
  const words = { same: "", lost: "lost", gained: "new" };
  const body = table("effects", ["Change", "Place", "Direction", "Traffic", "Effect"],
    rows.map(row => [words[row.change] ?? row.change, row.place, row.direction, row.traffic, row.effect]));
  [...body.tBodies[0].rows].forEach((element, i) => element.classList.add(rows[i].change));
  return body;
}
