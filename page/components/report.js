// The report: one call shows it in the elements of report.html. The report that was shown before listens no more.

let listening = new AbortController();

function showReport(report) {
  const at = id => document.getElementById(id), form = at("filters"), list = at("list");
  listening.abort();
  listening = new AbortController();
  const { signal } = listening;
  report.hasOwnReleases = hasOwnReleases(report);
  const update = () => updateList(report, form, list, at("count"));
  showIdentity(report, at("identity"));
  showTiles(report, at("tiles"), filter => { goTo(filter); at("configurations").scrollIntoView(); });
  showCauses(report, at("causes"),
    filter => { goTo(filter); at("configurations").scrollIntoView(); }, index => goTo({ open: String(index) }));
  showIdleExceptions(report, at("exceptions"));
  showCodes(report, at("codes"), filter => { goTo(filter); at("configurations").scrollIntoView(); });
  fillChoices(report, form);
  form.addEventListener("input", () => goTo({ ...Object.fromEntries(new FormData(form)), needs: currentFilter().needs }));
  form.addEventListener("submit", event => event.preventDefault());
  form.addEventListener("reset", event => { event.preventDefault(); goTo({}); });
  window.addEventListener("hashchange", update, { signal });
  window.addEventListener("beforeprint", () => openAll(report, list), { signal });
  listenToKeys(list, form, signal);
  update();
}

function updateList(report, form, list, count) {
  const wanted = currentFilter();
  for (const field of filterNames.map(name => form.elements[name]).filter(Boolean)) {
    const value = wanted[field.name] || "";
    if (field.value !== value) field.value = value || field.options?.[0]?.value || "";
  }
  const shown = showList(report, list, wanted);
  count.textContent = shown + " of " + plural(report.configurations.length, "configuration") +
    (needs[wanted.needs] ? ", " + needs[wanted.needs].words : "");
  if (wanted.open) openConfiguration(list, wanted.open);
}

// On paper nothing can be opened.
function openAll(report, list) {
  for (const box of list.children) fill(report, box);
  for (const box of list.querySelectorAll("details")) box.open = true;
}

// Exceptions that met nothing, or have expired.
function showIdleExceptions({ idle_exceptions: idle = [] }, place) {
  place.hidden = !idle.length;
  place.lastElementChild.replaceChildren(...idle.map(said => make("li", "warning", said)));
}

// Every code that was found, with how often.
function showCodes(report, place, choose) {
  const kinds = [...report.codes].sort((a, b) => severities.indexOf(a.severity) - severities.indexOf(b.severity));
  if (!kinds.length) { place.replaceChildren(make("p", "soft", "None.")); return; }
  const agreed = kinds.some(kind => kind.open < kind.findings) ? ["Of these agreed"] : [];
  place.replaceChildren(table("codes", ["Code", "Severity", "Title", "Findings", ...agreed, "Configurations"], kinds.map(kind => {
    const code = button(kind.code, "code", () => choose({ code: kind.code }));
    code.setAttribute("aria-label", "show the configurations with " + kind.code);
    return [code, make("span", "severity " + kind.severity, kind.severity), kind.title, kind.findings,
      ...agreed.map(() => kind.findings - kind.open), kind.files];
  })));
}
