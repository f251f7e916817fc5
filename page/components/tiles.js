// The totals, each leading to the list that it counts.

function showTiles(report, place, choose) {
  const all = report.configurations, open = all.filter(needsHands), agreed = all.filter(hasAgreed);
  const tiles = [
    ["all", all.length, all.length === 1 ? "configuration" : "configurations", {}],
    ["hands", open.length, open.length === 1 ? "needs hands" : "need hands", { needs: "hands" }],
    ["clear", all.length - open.length, all.length - open.length === 1 ? "needs no hands" : "need no hands", { needs: "nothing" }],
    ...agreed.length ? [["agreed", agreed.length, "with agreed exceptions", { needs: "agreed" }]] : [],
    ...Object.entries(report.states).map(([state, number]) => [state, number, state, { state }]),
  ];
  place.replaceChildren(...tiles.map(([name, number, text, filter]) => {
    const tile = button("", "tile " + name + (number ? "" : " none"), () => choose(filter));
    tile.append(make("b", "", number), " ", text);
    return tile;
  }));
}
