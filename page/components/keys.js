// The keyboard: / searches, j and k walk through the configurations, Escape shows all.

function walk(place, by) {
  const heads = [...place.querySelectorAll(":scope > .configuration > summary")];
  if (heads.length) heads[Math.max(0, Math.min(heads.length - 1, heads.indexOf(document.activeElement) + by))].focus();
}

function listenToKeys(place, form, signal) {
  document.addEventListener("keydown", event => {
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    if (event.key === "Escape") { goTo({}); return; }
    if (event.target.matches("input, select, textarea")) return;
    if (event.key === "/") { form.elements.text.focus(); event.preventDefault(); }
    if (event.key === "j") walk(place, 1);
    if (event.key === "k") walk(place, -1);
  }, { signal });
}
